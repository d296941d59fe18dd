// Preloaded into a program, writes down what it does to the files of one folder ($RECORDED_FOLDER,
// without a slash at its end) in the log $RECORDED_LOG. Wraps the calls by which SQLite changes
// files, as the library's symbols list them. A change made in another way, such as a write through
// a mapping, is missed: who replays the log compares the end with the real files.

#include "Event.h"

#include <array>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

std::array<bool, 1024> recorded {}; // by descriptor

template <typename Function> Function* next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool isRecorded(const char* path)
{
    static const char* const folder = std::getenv("RECORDED_FOLDER");
    const std::size_t length = std::strlen(folder);
    return std::strncmp(path, folder, length) == 0 && (path[length] == '/' || path[length] == 0);
}

bool isRecorded(int descriptor)
{
    return descriptor >= 0 && static_cast<std::size_t>(descriptor) < recorded.size()
        && recorded[static_cast<std::size_t>(descriptor)];
}

void append(Event event, const void* bytes = nullptr)
{
    static const int log
        = open(std::getenv("RECORDED_LOG"), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const std::array<iovec, 2> parts {
        {{&event, sizeof event}, {const_cast<void*>(bytes), static_cast<std::size_t>(event.size)}}};
    if (writev(log, parts.data(), parts.size()) < 0)
        std::abort(); // half a record is worse than none
}

} // namespace

extern "C" {

int open64(const char* path, int flags, ...)
{
    static auto* const real = next<decltype(open64)>("open64");
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const int descriptor = real(path, flags, mode);
    if (descriptor >= 0 && isRecorded(path)) {
        recorded.at(static_cast<std::size_t>(descriptor)) = true;
        append({Event::Open, descriptor, 0, static_cast<std::int64_t>(std::strlen(path))}, path);
    }
    return descriptor;
}

ssize_t pwrite64(int descriptor, const void* data, std::size_t size, off64_t offset)
{
    static auto* const real = next<decltype(pwrite64)>("pwrite64");
    const ssize_t written = real(descriptor, data, size, offset);
    if (written > 0 && isRecorded(descriptor))
        append({Event::Write, descriptor, offset, written}, data);
    return written;
}

int ftruncate64(int descriptor, off64_t length) noexcept
{
    static auto* const real = next<decltype(ftruncate64)>("ftruncate64");
    const int result = real(descriptor, length);
    if (result == 0 && isRecorded(descriptor))
        append({Event::Truncate, descriptor, length, 0});
    return result;
}

int fdatasync(int descriptor)
{
    static auto* const real = next<decltype(fdatasync)>("fdatasync");
    const int result = real(descriptor);
    if (result == 0 && isRecorded(descriptor))
        append({Event::Sync, descriptor, 0, 0});
    return result;
}

int close(int descriptor)
{
    static auto* const real = next<decltype(close)>("close");
    if (isRecorded(descriptor)) {
        recorded[static_cast<std::size_t>(descriptor)] = false;
        append({Event::Close, descriptor, 0, 0});
    }
    return real(descriptor);
}

int unlink(const char* path) noexcept
{
    static auto* const real = next<decltype(unlink)>("unlink");
    const int result = real(path);
    if (result == 0 && isRecorded(path))
        append({Event::Unlink, -1, 0, static_cast<std::int64_t>(std::strlen(path))}, path);
    return result;
}

} // extern "C"
