#include "software/PackageSearch.h"

#include <QDebug>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace {

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

} // namespace

QStringList PackageSearch::below(const QByteArray& folder)
{
    m_path.clear();
    m_found.clear();
    walk(folder);
    return m_found;
}

void PackageSearch::walk(const QByteArray& folder)
{
    // Its reader is gone before the subfolders are entered: however deep a stick is, one descriptor
    // is enough.
    Listing listing;
    if (!read(folder, listing))
        return;
    const QByteArray prefix = folder.endsWith('/') ? folder : folder + '/';
    appendFiles(prefix, std::move(listing.files));
    std::sort(listing.folders.begin(), listing.folders.end());
    for (const FolderReader::Entry& subfolder : listing.folders)
        walk(prefix + subfolder.name);
    m_path.pop_back();
}

// Puts the folder on the path, unless it cannot be read or is on it already: a link that leads back
// up the tree would otherwise be followed without end.
bool PackageSearch::read(const QByteArray& folder, Listing& listing)
{
    FolderReader reader(folder);
    if (!reader.isOpen() || isOnPath(reader.identity()))
        return false;
    m_path.push_back(reader.identity());
    while (reader.next()) {
        const QString text = QFile::decodeName(reader.name());
        if (reader.isFolder())
            listing.folders.emplace_back(text, reader.name());
        else if (isWanted(text))
            listing.files.emplace_back(text, reader.name());
    }
    return true;
}

bool PackageSearch::isOnPath(const FolderReader::Identity& identity) const
{
    return std::any_of(m_path.begin(), m_path.end(), [&](const FolderReader::Identity& above) {
        return above.device == identity.device && above.inode == identity.inode;
    });
}

void PackageSearch::appendFiles(const QByteArray& prefix, FolderReader::Entries files)
{
    std::sort(files.begin(), files.end());
    for (const FolderReader::Entry& file : files) {
        const QByteArray path = prefix + file.name;
        const QString text = QFile::decodeName(path);
        if (QFile::encodeName(text) != path)
            qDebug() << "name is not UTF-8, the file cannot be opened: " << path;
        m_found.append(text);
    }
}
