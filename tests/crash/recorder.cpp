// Preloaded into a program, writes down what it does to the files of the folder $RECORDED_FOLDER in
// the log $RECORDED_LOG. Wraps the calls by which SQLite's library changes files, as its symbols
// list them. A change made in another way, such as a write through a mapping, is missed: who
// replays the log compares the end with the real files.

#include "Event.h"

#include <bitset>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/uio.h>
#include <unistd.h>

#define NEXT(function) reinterpret_cast<decltype(&(function))>(dlsym(RTLD_NEXT, #function))

namespace {

std::bitset<1024> recorded; // by descriptor

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

bool isRecorded(int descriptor)
{
    return descriptor >= 0 && recorded.test(static_cast<std::size_t>(descriptor));
}

bool isRecorded(const char* path)
{
    const std::string folder = variable("RECORDED_FOLDER");
    return path == folder || std::string(path).compare(0, folder.size() + 1, folder + '/') == 0;
}

void append(Event::Kind kind, int descriptor, std::int64_t offset = 0, const void* bytes = nullptr,
            std::size_t size = 0)
{
    static const int log
        = open(variable("RECORDED_LOG").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    Event event {kind, descriptor, offset, static_cast<std::int64_t>(size)};
    const iovec parts[] = {{&event, sizeof event}, {const_cast<void*>(bytes), size}};
    if (writev(log, parts, 2) < 0)
        std::abort(); // half a record is worse than none
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
    if (descriptor >= 0)
        recorded.set(static_cast<std::size_t>(descriptor), isRecorded(path));
    if (isRecorded(descriptor))
        append(Event::Open, descriptor, 0, path, std::strlen(path));
    return descriptor;
}

ssize_t pwrite64(int descriptor, const void* data, std::size_t size, off64_t offset)
{
    const ssize_t written = NEXT(pwrite64)(descriptor, data, size, offset);
    if (written > 0 && isRecorded(descriptor))
        append(Event::Write, descriptor, offset, data, static_cast<std::size_t>(written));
    return written;
}

int ftruncate64(int descriptor, off64_t length) noexcept
{
    const int result = NEXT(ftruncate64)(descriptor, length);
    if (result == 0 && isRecorded(descriptor))
        append(Event::Truncate, descriptor, length);
    return result;
}

int fdatasync(int descriptor)
{
    const int result = NEXT(fdatasync)(descriptor);
    if (result == 0 && isRecorded(descriptor))
        append(Event::Sync, descriptor);
    return result;
}

int unlink(const char* path) noexcept
{
    const int result = NEXT(unlink)(path);
    if (result == 0 && isRecorded(path))
        append(Event::Unlink, -1, 0, path, std::strlen(path));
    return result;
}

} // extern "C"
