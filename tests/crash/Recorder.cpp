#include "Recorder.h"

#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#define NEXT(function) reinterpret_cast<decltype(&(function))>(dlsym(RTLD_NEXT, #function))

namespace {

class Recording
{
public:
    Recording(const QString& folder, const Files& files) : m_folder(folder)
    {
        for (const QString& name : files.keys())
            m_names[name] = m_count++;
    }

    void open(int descriptor, const QString& path)
    {
        m_descriptors.remove(descriptor);
        if (path + '/' == m_folder)
            m_descriptors[descriptor] = Change::folderItself;
        if (!path.startsWith(m_folder))
            return;
        const QString name = path.mid(m_folder.size());
        if (!m_names.contains(name)) {
            m_names[name] = m_count++;
            changes.push_back({Change::Create, m_names[name], name, 0, {}});
        }
        m_descriptors[descriptor] = m_names[name];
    }

    void remove(const QString& path)
    {
        const QString name = path.mid(m_folder.size());
        if (path.startsWith(m_folder) && m_names.contains(name))
            changes.push_back({Change::Remove, m_names.take(name), name, 0, {}});
    }

    void change(Change::Kind kind, int descriptor, qint64 offset = 0, const QByteArray& bytes = {})
    {
        if (m_descriptors.contains(descriptor))
            changes.push_back({kind, m_descriptors[descriptor], {}, offset, bytes});
    }

    std::vector<Change> changes;

private:
    const QString m_folder;
    int m_count = 0; // of files
    QMap<QString, int> m_names; // and their files
    QMap<int, int> m_descriptors; // and their files
};

Recording* recording = nullptr;

} // namespace

std::vector<Change> record(const QString& folder, const Files& files, void (*operation)())
{
    Recording made(folder, files);
    recording = &made;
    operation();
    recording = nullptr;
    return made.changes;
}

// These stand in front of the C library's, in all of the program.
extern "C" {

int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const int descriptor = NEXT(open64)(path, flags, mode);
    if (recording != nullptr && descriptor >= 0)
        recording->open(descriptor, path);
    return descriptor;
}

ssize_t pwrite64(int descriptor, const void* data, std::size_t size, off64_t offset)
{
    const ssize_t written = NEXT(pwrite64)(descriptor, data, size, offset);
    if (recording != nullptr && written > 0)
        recording->change(Change::Write, descriptor, offset,
                          QByteArray(static_cast<const char*>(data), int(written)));
    return written;
}

int ftruncate64(int descriptor, off64_t length) noexcept
{
    const int result = NEXT(ftruncate64)(descriptor, length);
    if (recording != nullptr && result == 0)
        recording->change(Change::Truncate, descriptor, length);
    return result;
}

int fdatasync(int descriptor)
{
    const int result = NEXT(fdatasync)(descriptor);
    if (recording != nullptr && result == 0)
        recording->change(Change::Sync, descriptor);
    return result;
}

int unlink(const char* path) noexcept
{
    const int result = NEXT(unlink)(path);
    if (recording != nullptr && result == 0)
        recording->remove(path);
    return result;
}

} // extern "C"
