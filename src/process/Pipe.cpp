#include "process/Pipe.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace {

void closeEnd(int& end)
{
    if (end >= 0)
        ::close(std::exchange(end, -1));
}

} // namespace

Pipe::Pipe()
{
    [[maybe_unused]] const int failure = ::pipe2(m_ends, O_CLOEXEC);
}

Pipe::~Pipe()
{
    closeReadEnd();
    closeWriteEnd();
}

void Pipe::closeReadEnd()
{
    closeEnd(m_ends[0]);
}

void Pipe::closeWriteEnd()
{
    closeEnd(m_ends[1]);
}
