#include "software/FolderReader.h"

#include <QDebug>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>

namespace {

// DT_REG, DT_DIR or something that is of no interest here.
unsigned char typeOf(DIR* directory, const dirent& entry)
{
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type;
    struct stat status
    {
    };
    // A dangling link, or a file that has vanished since.
    if (fstatat(dirfd(directory), static_cast<const char*>(entry.d_name), &status, 0) != 0)
        return DT_UNKNOWN;
    return static_cast<unsigned char>(IFTODT(status.st_mode));
}

void logUnreadable(const QByteArray& folder)
{
    const int reason = errno;
    // A path that is no folder (any more) is an ordinary case: a stick may be pulled at any time.
    if (reason != ENOENT && reason != ENOTDIR)
        qDebug() << "cannot read folder: " << folder << std::strerror(reason);
}

} // namespace

bool FolderReader::Entry::operator<(const Entry& other) const
{
    const int order = sortKey.compare(other.sortKey);
    return order != 0 ? order < 0 : name < other.name;
}

FolderReader::FolderReader(const QByteArray& path)
    : m_path(path), m_directory(opendir(path.constData()))
{
    struct stat status
    {
    };
    if (!m_directory || fstat(dirfd(m_directory.get()), &status) != 0) {
        logUnreadable(path);
        m_directory.reset();
        return;
    }
    m_identity = {status.st_dev, status.st_ino};
}

bool FolderReader::next()
{
    while (const dirent* entry = readEntry()) {
        if (entry->d_name[0] == '.')
            continue;
        const unsigned char type = typeOf(m_directory.get(), *entry);
        if (type != DT_DIR && type != DT_REG)
            continue;
        m_name = static_cast<const char*>(entry->d_name);
        m_isFolder = type == DT_DIR;
        return true;
    }
    return false;
}

// A failing stick ends the listing as the folder's end does, but for the error that it leaves.
const dirent* FolderReader::readEntry() const
{
    errno = 0;
    const dirent* const entry = m_directory ? readdir(m_directory.get()) : nullptr;
    if (!entry && errno != 0)
        logUnreadable(m_path);
    return entry;
}
