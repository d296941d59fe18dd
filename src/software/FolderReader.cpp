#include "software/FolderReader.h"

#include <QDebug>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

// A path that leads to nothing (any more) is an ordinary case: a stick may be pulled at any time,
// and hold links of another machine.
void logUnreadable(const char* what, const QByteArray& path)
{
    const int reason = errno;
    if (reason != ENOENT && reason != ENOTDIR && reason != ELOOP)
        qDebug() << what << path << std::strerror(reason);
}

unsigned typeOf(const std::optional<struct stat>& status)
{
    return status ? IFTODT(status->st_mode) : unsigned {DT_UNKNOWN};
}

} // namespace

bool FolderReader::Entry::operator<(const Entry& other) const
{
    const int order = sortKey.compare(other.sortKey);
    return order != 0 ? order < 0 : name < other.name;
}

bool FolderReader::isText(const QByteArray& path)
{
    return QFile::encodeName(QFile::decodeName(path)) == path;
}

FolderReader::FolderReader(const QByteArray& path, const Background::Stop& stop)
    : m_path(path), m_stop(stop)
{
    if (m_stop)
        return;
    m_directory.reset(opendir(path.constData()));
    struct stat status
    {
    };
    if (!m_directory || fstat(dirfd(m_directory.get()), &status) != 0) {
        logUnreadable("cannot read folder: ", path);
        m_directory.reset();
        return;
    }
    m_identity = {status.st_dev, status.st_ino};
}

bool FolderReader::next()
{
    while (const dirent* entry = readEntry()) {
        if (entry->d_name[0] != '.' && examine(*entry))
            return true;
    }
    return false;
}

bool FolderReader::isReadable() const
{
    return faccessat(dirfd(m_directory.get()), m_name.constData(), R_OK, 0) == 0;
}

// A failing stick ends the listing as the folder's end does, but for the error that it leaves.
const dirent* FolderReader::readEntry() const
{
    errno = 0;
    const dirent* const entry = m_directory && !m_stop ? readdir(m_directory.get()) : nullptr;
    if (!entry && errno != 0)
        logUnreadable("cannot read folder: ", m_path);
    return entry;
}

// False for what is neither a file nor a folder, links followed.
bool FolderReader::examine(const dirent& entry)
{
    const char* const name = static_cast<const char*>(entry.d_name);
    unsigned type = entry.d_type;
    if (type == DT_UNKNOWN)
        type = typeOf(statusOf(name, AT_SYMLINK_NOFOLLOW));
    m_isLink = type == DT_LNK;
    if (m_isLink) {
        const auto target = statusOf(name, 0);
        type = typeOf(target);
        m_linkedDevice = target ? target->st_dev : 0;
    }
    m_name = name;
    m_isFolder = type == DT_DIR;
    return m_isFolder || type == DT_REG;
}

std::optional<struct stat> FolderReader::statusOf(const char* name, int flags) const
{
    struct stat status
    {
    };
    if (fstatat(dirfd(m_directory.get()), name, &status, flags) == 0)
        return status;
    logUnreadable("cannot read entry: ", m_path + '/' + name);
    return std::nullopt;
}
