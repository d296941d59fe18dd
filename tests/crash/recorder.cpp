// Preloaded into a program, writes down what it does to the files of the folder $RECORDED_FOLDER in
// the log $RECORDED_LOG. Wraps the calls by which SQLite's library changes files, as its symbols
// list them. A change made in another way, such as a write through a mapping, is missed: who
// replays the log compares the end with the real files.

#include "Event.h"

#include <bitset>
#include <cstdarg>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/uio.h>
#include <unistd.h>

#define NEXT(function) reinterpret_cast<decltype(&(function))>(dlsym(RTLD_NEXT, #function))

namespace {

std::bitset<1024> recorded; // by descriptor

bool isRecorded(int descriptor)
{
    return descriptor >= 0 && recorded.test(static_cast<std::size_t>(descriptor));
}

bool isRecorded(const std::string& path)
{
    const std::string folder = std::getenv("RECORDED_FOLDER");
    return path == folder || path.compare(0, folder.size() + 1, folder + '/') == 0;
}

void append(Event event, const void* bytes = nullptr)
{
    static const int log
        = open(std::getenv("RECORDED_LOG"), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const iovec parts[] = {{&event, sizeof event},
                           {const_cast<void*>(bytes), static_cast<std::size_t>(event.size)}};
    if (writev(log, parts, 2) < 0)
        std::abort(); // half a record is worse than none
}

void appendPath(Event::Kind kind, int descriptor, const std::string& path)
{
    append({kind, descriptor, 0, static_cast<std::int64_t>(path.size())}, path.data());
}

} // namespace

extern "C" {

int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const int descriptor = NEXT(open64)(path, flags, mode);
    if (descriptor >= 0 && isRecorded(std::string(path))) {
        recorded.set(static_cast<std::size_t>(descriptor));
        appendPath(Event::Open, descriptor, path);
    }
    return descriptor;
}

ssize_t pwrite64(int descriptor, const void* data, std::size_t size, off64_t offset)
{
    const ssize_t written = NEXT(pwrite64)(descriptor, data, size, offset);
    if (written > 0 && isRecorded(descriptor))
        append({Event::Write, descriptor, offset, written}, data);
    return written;
}

int ftruncate64(int descriptor, off64_t length) noexcept
{
    const int result = NEXT(ftruncate64)(descriptor, length);
    if (result == 0 && isRecorded(descriptor))
        append({Event::Truncate, descriptor, length, 0});
    return result;
}

int fdatasync(int descriptor)
{
    const int result = NEXT(fdatasync)(descriptor);
    if (result == 0 && isRecorded(descriptor))
        append({Event::Sync, descriptor, 0, 0});
    return result;
}

int close(int descriptor)
{
    if (isRecorded(descriptor))
        recorded.reset(static_cast<std::size_t>(descriptor));
    return NEXT(close)(descriptor);
}

int unlink(const char* path) noexcept
{
    const int result = NEXT(unlink)(path);
    if (result == 0 && isRecorded(std::string(path)))
        appendPath(Event::Unlink, -1, path);
    return result;
}

} // extern "C"
