#include "software/PackageSearch.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

namespace {

struct CloseDirectory
{
    void operator()(DIR* directory) const { closedir(directory); }
};

QRegularExpression ignoringCase(const QString& wildcard)
{
    return QRegularExpression(QRegularExpression::wildcardToRegularExpression(wildcard),
                              QRegularExpression::CaseInsensitiveOption);
}

bool isWanted(const QString& name)
{
    static const QRegularExpression package = ignoringCase(QStringLiteral("quillmark-*-*.tar.gz"));
    static const QRegularExpression firmware = ignoringCase(QStringLiteral("*MFV_V*.hex"));
    return package.match(name).hasMatch() || firmware.match(name).hasMatch();
}

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

QStringList PackageSearch::below(const QString& folder)
{
    m_path.clear();
    m_found.clear();
    if (!folder.isEmpty())
        walk(QFile::encodeName(QDir(folder).absolutePath()));
    return m_found;
}

void PackageSearch::walk(const QByteArray& folder)
{
    // The folder is closed again before its subfolders are entered: however deep a stick is, one
    // descriptor is enough.
    Listing listing;
    if (!read(folder, listing) || isOnPath(listing.identity))
        return;
    const QByteArray prefix = folder.endsWith('/') ? folder : folder + '/';
    appendFiles(prefix, std::move(listing.files));
    sort(listing.folders);
    m_path.push_back(listing.identity);
    for (const Entry& subfolder : listing.folders)
        walk(prefix + subfolder.name);
    m_path.pop_back();
}

// A link that leads back up the tree would otherwise be followed without end.
bool PackageSearch::isOnPath(const Identity& identity) const
{
    return std::any_of(m_path.begin(), m_path.end(), [&](const Identity& above) {
        return above.device == identity.device && above.inode == identity.inode;
    });
}

void PackageSearch::appendFiles(const QByteArray& prefix, std::vector<Entry> files)
{
    sort(files);
    for (const Entry& file : files) {
        const QByteArray path = prefix + file.name;
        const QString text = QFile::decodeName(path);
        if (QFile::encodeName(text) != path)
            qDebug() << "name is not UTF-8, the file cannot be opened: " << path;
        m_found.append(text);
    }
}

bool PackageSearch::read(const QByteArray& folder, Listing& listing)
{
    const std::unique_ptr<DIR, CloseDirectory> directory(opendir(folder.constData()));
    struct stat status
    {
    };
    if (!directory || fstat(dirfd(directory.get()), &status) != 0) {
        logUnreadable(folder);
        return false;
    }
    listing.identity = {status.st_dev, status.st_ino};
    while (const dirent* entry = readdir(directory.get())) {
        if (entry->d_name[0] == '.')
            continue;
        const QByteArray name(static_cast<const char*>(entry->d_name));
        const QString text = QFile::decodeName(name);
        const unsigned char type = typeOf(directory.get(), *entry);
        if (type == DT_DIR)
            listing.folders.push_back({text.toLower(), name});
        else if (type == DT_REG && isWanted(text))
            listing.files.push_back({text.toLower(), name});
    }
    return true;
}

// Names that differ in case only have no order of their own; the exact name then makes the result
// the same on every scan.
void PackageSearch::sort(std::vector<Entry>& entries)
{
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        const int order = a.sortKey.compare(b.sortKey);
        return order != 0 ? order < 0 : a.name < b.name;
    });
}
