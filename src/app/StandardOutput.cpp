#include "app/StandardOutput.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr int patienceMs = 1000;

// The last line found no taker: the next ones wait for none.
std::atomic<bool> nobodyReads {false};

bool takesMore(const QDeadlineTimer& deadline)
{
    pollfd output {STDOUT_FILENO, POLLOUT, 0};
    int ready = 0;
    do
        ready = ::poll(&output, 1, static_cast<int>(deadline.remainingTime()));
    while (ready < 0 && errno == EINTR);
    return ready != 0;
}

} // namespace

namespace StandardOutput {

void prepare()
{
    // open() takes the lowest free descriptor: without this the next file opened, the database for
    // one, would become descriptor 1 and the log would be written into it.
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = ::open("/dev/null", O_RDWR);
    if (descriptor >= 0)
        ::close(descriptor);
    // A log reader that ends must not end an update half-way.
    std::signal(SIGPIPE, SIG_IGN);
}

void write(const QByteArray& bytes)
{
    const QDeadlineTimer deadline(nobodyReads ? 0 : patienceMs);
    const char* next = bytes.constData();
    auto left = static_cast<std::size_t>(bytes.size());
    while (left > 0) {
        if (!takesMore(deadline)) {
            nobodyReads = true;
            return;
        }
        // No more at once than what a pipe that takes anything takes without waiting.
        const ssize_t written = ::write(STDOUT_FILENO, next, std::min<std::size_t>(left, PIPE_BUF));
        if (written < 0 && errno != EINTR && (errno != EAGAIN || deadline.hasExpired()))
            return;
        if (written > 0) {
            next += written;
            left -= static_cast<std::size_t>(written);
        }
    }
    nobodyReads = false;
}

} // namespace StandardOutput
