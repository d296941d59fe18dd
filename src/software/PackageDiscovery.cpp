// What SoftwareManager finds on removable media.

#include "software/MediaFolder.h"
#include "software/PackageSearch.h"
#include "software/SoftwareManager.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>

QStringList SoftwareManager::findMediaDevices()
{
    return MediaFolder::texts(MediaFolder::subfolders());
}

bool SoftwareManager::mediaDeviceExist()
{
    return !findMediaDevices().isEmpty();
}

QString SoftwareManager::getFileName(const QString& filePath)
{
    return QFileInfo(filePath).fileName();
}

QStringList SoftwareManager::getDirRecursivly(const QString& path)
{
    if (path.isEmpty())
        return {};
    return PackageSearch().below(QFile::encodeName(QDir(path).absolutePath()));
}

QStringList SoftwareManager::getNameVersion(const QString& fileName)
{
    static const QRegularExpression package(
        QStringLiteral(R"(.*quillmark-(?<name>.*)-(?<version>[^-]*)\.tar\.gz$)"));
    const QRegularExpressionMatch match = package.match(fileName);
    QStringList result;
    if (match.hasMatch())
        result = QStringList {match.captured(QStringLiteral("name")),
                              match.captured(QStringLiteral("version"))};
    qDebug() << "file: " << fileName << ", name: " << result.value(0)
             << ", version: " << result.value(1);
    return result;
}

QStringList SoftwareManager::findAvailableSoftware()
{
    QMap<QString, QString> pathOfName;
    // The bytes of the names, since a text may not lead back to a name that is not UTF-8.
    const QByteArrayList devices = MediaFolder::subfolders();
    for (const QByteArray& device : devices) {
        qDebug() << "searching device: " << QFile::decodeName(device);
        const QStringList files = PackageSearch().below(MediaFolder::pathOf(device));
        qDebug() << "filelist = " << files;
        for (const QString& path : files) {
            const QString name = getFileName(path);
            // Kept lopsided, as technicians know it: only the new name is lowered. So of a name in
            // lower case the first copy wins, of any other (each firmware image) the last.
            if (pathOfName.contains(name.toLower()))
                continue;
            getNameVersion(name); // for its log line
            pathOfName.insert(name, path);
        }
    }
    return pathOfName.values();
}
