// What SoftwareManager finds on removable media.

#include "software/MediaFolder.h"
#include "software/PackageSearch.h"
#include "software/SoftwareManager.h"

#include <QDebug>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>

QStringList SoftwareManager::findMediaDevices()
{
    return MediaFolder::subfolders();
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
    return PackageSearch().below(path);
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
    const QStringList devices = findMediaDevices();
    for (const QString& device : devices) {
        qDebug() << "searching device: " << device;
        const QStringList files = getDirRecursivly(MediaFolder::path() + '/' + device);
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
