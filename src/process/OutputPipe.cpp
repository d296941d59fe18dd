#include "process/OutputPipe.h"

#include <QProcess>

#include <array>
#include <cerrno>
#include <new>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

OutputPipe::OutputPipe()
{
    if (m_pipe.readEnd() < 0)
        throw std::system_error(errno, std::generic_category(), "no pipe for the output");
}

QString OutputPipe::path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(m_pipe.writeEnd());
}

void OutputPipe::closeWriteEnd()
{
    m_pipe.closeWriteEnd();
}

bool OutputPipe::takeMore(QProcess& program)
{
    constexpr int waitMs = 10;
    if (m_pipe.readEnd() < 0)
        return false;
    const bool ended = program.waitForFinished(0) || program.state() == QProcess::NotRunning;
    if (ended)
        readRest();
    if (ended || !read(waitMs))
        m_pipe.closeReadEnd();
    return m_pipe.readEnd() >= 0;
}

const QByteArray& OutputPipe::output() const
{
    if (!m_fits)
        throw std::bad_alloc();
    return m_output;
}

// False once the output is closed and read to its end.
bool OutputPipe::read(int milliseconds)
{
    pollfd source {m_pipe.readEnd(), POLLIN, 0};
    if (::poll(&source, 1, milliseconds) <= 0)
        return true;
    return readOnce() != 0;
}

// What is in the pipe now and no more: a process that the program left behind may never pause.
void OutputPipe::readRest()
{
    int left = 0;
    ::ioctl(m_pipe.readEnd(), FIONREAD, &left);
    while (left > 0)
        left -= qMax(0, readOnce());
}

// Gives how much was read, 0 at the end of the output, -1 when a signal came in between.
int OutputPipe::readOnce()
{
    std::array<char, 65536> bytes;
    const ssize_t size = ::read(m_pipe.readEnd(), bytes.data(), bytes.size());
    if (size > 0)
        append(bytes.data(), static_cast<int>(size));
    return size < 0 && errno != EINTR ? 0 : static_cast<int>(size);
}

// The program is not to end for want of memory here, in the middle of an install: what it prints
// is taken on.
void OutputPipe::append(const char* bytes, int size)
{
    try {
        if (m_fits)
            m_output.append(bytes, size);
    } catch (const std::bad_alloc&) {
        m_fits = false;
        m_output.clear();
    }
}
