#pragma once

#include <QByteArray>
#include <QDebug>
#include <QString>
#include <QStringList>

// A fuzz target is a program that a fuzzer gives inputs to, again and again, each varied from those
// that reached new code. A target makes of an input what may come from outside, hands it to one
// operation and says what must hold afterwards, whatever the input.

// Tries one input; each target defines it. It begins by clearing away what the last one left, so
// that a faulty input shows its fault alone.
void tryInput(const QByteArray& input);

// Bytes as a text, whatever they are; Qt's own overload would end it at a NUL.
inline QString textOf(const QByteArray& bytes)
{
    return QString::fromUtf8(bytes.constData(), bytes.size());
}

// The input's lines as texts, as many as are looked at.
inline QStringList linesOf(const QByteArray& input, int most)
{
    return textOf(input).split('\n').mid(0, most);
}

// Ends the program, upon which the fuzzer keeps the input; prints what did not hold.
[[noreturn]] void endWith(const char* condition, const QString& shown);

// What must hold, and what to print, of any type that QDebug takes, when it does not.
#define HOLDS(condition, ...)                                                                      \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            QString fuzzFault;                                                                     \
            QDebug(&fuzzFault) << __VA_ARGS__;                                                     \
            endWith(#condition, fuzzFault);                                                        \
        }                                                                                          \
    } while (false)
