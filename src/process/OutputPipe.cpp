#include "process/OutputPipe.h"

#include <QProcess>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace {

void closeEnd(int& end)
{
    if (end >= 0)
        ::close(std::exchange(end, -1));
}

} // namespace

OutputPipe::OutputPipe()
{
    [[maybe_unused]] const int failure = ::pipe2(m_ends, O_CLOEXEC);
}

OutputPipe::~OutputPipe()
{
    closeEnd(m_ends[0]);
    closeEnd(m_ends[1]);
}

QString OutputPipe::path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(m_ends[1]);
}

void OutputPipe::closeWriteEnd()
{
    closeEnd(m_ends[1]);
}

QByteArray OutputPipe::readUntilClosed(QProcess& program)
{
    constexpr int waitMs = 10;
    QByteArray output;
    bool ended = false;
    bool open = true;
    while (open && !ended) {
        ended = program.waitForFinished(0) || program.state() == QProcess::NotRunning;
        open = read(output, ended ? 0 : waitMs);
    }
    return output;
}

bool OutputPipe::read(QByteArray& output, int milliseconds)
{
    pollfd source {m_ends[0], POLLIN, 0};
    if (::poll(&source, 1, milliseconds) <= 0)
        return true;
    std::array<char, 65536> bytes;
    const ssize_t size = ::read(m_ends[0], bytes.data(), bytes.size());
    if (size > 0)
        output.append(bytes.data(), static_cast<int>(size));
    return size > 0 || (size < 0 && errno == EINTR);
}
