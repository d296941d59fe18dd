#include "software/MediaFolder.h"

#include "software/FolderReader.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace MediaFolder {

QString path()
{
    return QStringLiteral("/media/") + QDir::home().dirName();
}

QByteArrayList subfolders(const Background::Stop& stop)
{
    FolderReader reader(QFile::encodeName(path()), stop);
    FolderReader::Entries folders;
    while (reader.next()) {
        if (reader.isFolder())
            folders.emplace_back(QFile::decodeName(reader.name()), reader);
    }
    std::sort(folders.begin(), folders.end());
    QByteArrayList names;
    for (const FolderReader::Entry& folder : folders)
        names.append(folder.name);
    return names;
}

QStringList texts(const QByteArrayList& names)
{
    QStringList result;
    for (const QByteArray& name : names) {
        if (FolderReader::isText(name))
            result.append(QFile::decodeName(name));
    }
    return result;
}

QByteArray pathOf(const QByteArray& subfolder)
{
    return QFile::encodeName(QDir::cleanPath(path())) + '/' + subfolder;
}

} // namespace MediaFolder
