#pragma once

#include "process/Pipe.h"

#include <QByteArray>
#include <QString>

class QProcess;

// A pipe that takes the standard output of a program, for a reader who has to know when that is
// closed, or for whom it may be large: QProcess tells of a closed output only when the program
// ends, and holds one twice while it is handed over.
class OutputPipe
{
public:
    // Throws std::system_error when there are no descriptors for it.
    OutputPipe();

    // What this process opens to write to the pipe, until the call below.
    QString path() const;

    // To be called when the program has started: from then on only that holds the pipe open.
    void closeWriteEnd();

    // Takes what the program prints: waits up to 10 ms for some and pumps no events. True as long
    // as more may come, which is until the program closes its output or ends; the latter, because a
    // process that it left behind may keep the output open for as long as it likes.
    bool takeMore(QProcess& program);

    // All that was taken. Throws std::bad_alloc when that did not fit into the memory.
    const QByteArray& output() const;

private:
    bool read(int milliseconds);
    void readRest();
    int readOnce();
    void append(const char* bytes, int size);

    Pipe m_pipe;
    QByteArray m_output;
    bool m_fits = true;
};
