#pragma once

#include <QByteArray>
#include <QString>

class QProcess;

// A pipe that takes the standard output of a program, for a reader who has to know when that is
// closed: QProcess tells of it only when the program ends. Without descriptors for it, there is
// nothing at its path.
class OutputPipe
{
public:
    OutputPipe();
    ~OutputPipe();
    Q_DISABLE_COPY_MOVE(OutputPipe)

    // What this process opens to write to the pipe, until the call below.
    QString path() const;

    // To be called when the program has started: from then on only that holds the pipe open.
    void closeWriteEnd();

    // Gives what the program prints until it closes its output or ends; the latter, because a
    // process that it left behind may keep the output open for as long as it likes. Waits without
    // limit and pumps no events.
    QByteArray readUntilClosed(QProcess& program);

private:
    // Waits up to `milliseconds` for output and appends what there is, 64 KiB at most, which is all
    // that a pipe holds. False once the output is closed and read to its end.
    bool read(QByteArray& output, int milliseconds);

    int m_ends[2] = {-1, -1}; // to read from, to write to
};
