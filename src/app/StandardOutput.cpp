#include "app/StandardOutput.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

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
    const char* next = bytes.constData();
    auto left = static_cast<std::size_t>(bytes.size());
    while (left > 0) {
        const ssize_t written = ::write(STDOUT_FILENO, next, left);
        if (written < 0 && errno != EINTR)
            return;
        if (written > 0) {
            next += written;
            left -= static_cast<std::size_t>(written);
        }
    }
}

} // namespace StandardOutput
