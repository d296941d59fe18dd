#include "software/MediaFolder.h"

#include <QDir>

namespace MediaFolder {

QString path()
{
    return QStringLiteral("/media/") + QDir::home().dirName();
}

QStringList subfolders()
{
    return QDir(path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
}

} // namespace MediaFolder
