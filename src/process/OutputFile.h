#pragma once

#include <QByteArray>
#include <QFile>

// A file in memory that takes the standard output of a program. It is gone with the last process
// that has it open. The program can write to it when nobody reads any more, and what it writes
// costs its size once.
class OutputFile
{
public:
    // Throws std::system_error when there is no memory or no descriptor for it.
    OutputFile();

    // What this process opens to write to the file, as long as the object lives.
    QString path() const;

    // What was written so far, without a copy: valid as long as the object lives. Nobody can
    // shorten the file any more. Throws std::bad_alloc when the address space cannot hold it.
    QByteArray content();

private:
    QFile m_file;
};
