// What SoftwareManager finds on removable media.

#include "software/Background.h"
#include "software/FolderReader.h"
#include "software/MediaFolder.h"
#include "software/PackageSearch.h"
#include "software/SoftwareManager.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>

namespace {

using Background::Stop;

QStringList nameVersion(const QString& fileName)
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

void addDistinct(const QStringList& files, QMap<QString, QString>& pathOfName)
{
    for (const QString& path : files) {
        const QString name = QFileInfo(path).fileName();
        // Kept lopsided, as technicians know it: only the new name is lowered. So of a name in
        // lower case the first copy wins, of any other (each firmware image) the last.
        if (pathOfName.contains(name.toLower()))
            continue;
        // The next line is the same for each copy, and a thousand repeats reboot the device.
        qDebug() << "found: " << path;
        nameVersion(name); // for its log line
        pathOfName.insert(name, path);
    }
}

QStringList softwareOnMedia(const Stop& stop)
{
    QMap<QString, QString> pathOfName;
    const QByteArrayList devices = MediaFolder::subfolders(stop);
    for (const QByteArray& device : devices) {
        if (!FolderReader::isText(device)) {
            qDebug() << "left out, the medium's name is not UTF-8: " << device;
            continue;
        }
        qDebug() << "searching device: " << QFile::decodeName(device);
        const QStringList files = PackageSearch(stop).below(MediaFolder::pathOf(device));
        if (stop)
            return {};
        qDebug() << "filelist = " << files;
        addDistinct(files, pathOfName);
    }
    return pathOfName.values();
}

} // namespace

QStringList SoftwareManager::findMediaDevices()
{
    return Background::resultOf(
               [](const Stop& stop) { return MediaFolder::texts(MediaFolder::subfolders(stop)); })
        .value_or(QStringList());
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
    const QByteArray root = QFile::encodeName(QDir(path).absolutePath());
    return Background::resultOf(
               [root](const Stop& stop) { return PackageSearch(stop).below(root); })
        .value_or(QStringList());
}

QStringList SoftwareManager::getNameVersion(const QString& fileName)
{
    return nameVersion(fileName);
}

QStringList SoftwareManager::findAvailableSoftware()
{
    return Background::resultOf(softwareOnMedia).value_or(QStringList());
}
