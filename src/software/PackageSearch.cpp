#include "software/PackageSearch.h"

#include <QDebug>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <cstring>

namespace {

QRegularExpression ignoringCase(const QString& wildcard)
{
    return QRegularExpression(QRegularExpression::wildcardToRegularExpression(wildcard),
                              QRegularExpression::CaseInsensitiveOption);
}

bool endsWith(const QByteArray& name, const char* suffix)
{
    const int length = static_cast<int>(std::strlen(suffix));
    return name.size() >= length && qstricmp(name.constEnd() - length, suffix) == 0;
}

// Asked first: of a stick full of pictures no name needs to become a text and be matched.
bool mayBeWanted(const QByteArray& name)
{
    return endsWith(name, ".tar.gz") || endsWith(name, ".hex");
}

bool isWanted(const QString& name)
{
    static const QRegularExpression package = ignoringCase(QStringLiteral("quillmark-*-*.tar.gz"));
    static const QRegularExpression firmware = ignoringCase(QStringLiteral("*MFV_V*.hex"));
    return package.match(name).hasMatch() || firmware.match(name).hasMatch();
}

} // namespace

QStringList PackageSearch::below(const QByteArray& root)
{
    m_device.reset();
    m_entered.clear();
    m_found.clear();
    walk(root, false);
    return m_found;
}

void PackageSearch::walk(const QByteArray& folder, bool throughLink)
{
    // Its reader is gone before the subfolders are entered: however deep a stick is, one descriptor
    // is enough.
    const QByteArray prefix = folder.endsWith('/') ? folder : folder + '/';
    Listing listing;
    if (!read(prefix, throughLink, listing))
        return;
    std::sort(listing.files.begin(), listing.files.end());
    for (const FolderReader::Entry& file : listing.files)
        m_found.append(QFile::decodeName(prefix + file.name));
    std::sort(listing.folders.begin(), listing.folders.end());
    for (const FolderReader::Entry& subfolder : listing.folders)
        walk(prefix + subfolder.name, throughLink || subfolder.isLink);
}

// False when the folder is not to be walked.
bool PackageSearch::read(const QByteArray& folder, bool throughLink, Listing& listing)
{
    FolderReader reader(folder, m_stop);
    if (!reader.isOpen() || !enter(reader.identity(), throughLink))
        return false;
    while (reader.next()) {
        if (!reader.isFolder() && !mayBeWanted(reader.name()))
            continue;
        const QString text = QFile::decodeName(reader.name());
        const bool wanted = reader.isFolder() || isWanted(text);
        if (wanted && isReachable(reader, folder + reader.name()))
            (reader.isFolder() ? listing.folders : listing.files).emplace_back(text, reader);
    }
    return true;
}

// A real folder has one path from the root and is always entered by it, so that its files are
// listed under that path too.
bool PackageSearch::enter(const FolderReader::Identity& folder, bool throughLink)
{
    if (!m_device)
        m_device = folder.device;
    const bool first = m_entered.insert(folder).second;
    return !throughLink || (first && folder.device == m_device);
}

bool PackageSearch::isReachable(const FolderReader& entry, const QByteArray& path) const
{
    const bool isOnMedium = !entry.isLink() || entry.linkedDevice() == m_device;
    const bool isText = FolderReader::isText(path);
    if (!isOnMedium)
        qDebug() << "left out, the link leads off the medium: " << path;
    else if (!isText)
        qDebug() << "left out, the name is not UTF-8: " << path;
    return isOnMedium && isText;
}
