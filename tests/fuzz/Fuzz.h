#pragma once

#include <QByteArray>
#include <QDebug>
#include <QStringList>

#include <cstdlib>

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

// Fills a folder, emptied before, with an entry a line: "d" a folder, "l" a link that leads out,
// any other letter a file; then its path. What cannot be made is left out.
void makeTree(const QString& folder, const QByteArrayList& lines);

// What must hold, and what to print when it does not, of any type that qCritical() takes. The
// fuzzer keeps the input upon the program's end.
#define HOLDS(condition, ...)                                                                      \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            qCritical() << "NOT HELD:" << #condition << __VA_ARGS__;                               \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)
