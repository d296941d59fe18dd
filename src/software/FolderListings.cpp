// The listings of FileHelper for the service pages.

#include "software/FileHelper.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <limits>

namespace {

enum Mode : signed char {
    All,
    Images,
    Videos,
    Folders,
    ConfigFiles,
    VideosAndImages,
    IoTConfigFiles,
    FlavorCombos
};

struct Selection
{
    QDir::Filters kinds;
    QStringList names; // wildcards, ignoring case; empty for any name
};

Selection selectionOf(signed char mode)
{
    static const QStringList images {QStringLiteral("*.png"), QStringLiteral("*.jpg"),
                                     QStringLiteral("*.jpeg")};
    static const QStringList videos {QStringLiteral("*.mp4"), QStringLiteral("*.wmv")};
    switch (mode) {
    case Images:
        return {QDir::Files, images};
    case Videos:
        return {QDir::Files, videos};
    case Folders:
        return {QDir::Dirs, {}};
    case ConfigFiles:
        return {QDir::Files, {QStringLiteral("*-config*.tar.gz")}};
    case VideosAndImages:
        return {QDir::Files, videos + images};
    case IoTConfigFiles:
        // Not "*-iot-config*.tar.gz" as well, kept: the pages that list these were made with this
        // one pattern, and would offer archives that they cannot take.
        return {QDir::Files, {QStringLiteral("device-config*.tar.gz")}};
    case FlavorCombos:
        return {QDir::Files, {QStringLiteral("flavorCombos.csv")}};
    default:
        return {QDir::Dirs | QDir::Files, {}};
    }
}

} // namespace

QStringList FileHelper::getDirContents(const QString& path, signed char mode)
{
    // QDir would take it for the working directory, and removeOldUpdates would delete from there.
    if (path.isEmpty())
        return {};
    const Selection selection = selectionOf(mode);
    return QDir(path).entryList(selection.names,
                                selection.kinds | QDir::NoSymLinks | QDir::NoDotAndDotDot,
                                QDir::Name | QDir::IgnoreCase);
}

QStringList FileHelper::getImagesInFolder(const QString& path)
{
    return getDirContents(path, Images);
}

QStringList FileHelper::getVideosInFolder(const QString& path)
{
    return getDirContents(path, Videos);
}

QStringList FileHelper::getFolders(const QString& path)
{
    return getDirContents(path, Folders);
}

QStringList FileHelper::getVideosAndImagesInFolder(const QString& path)
{
    return getDirContents(path, VideosAndImages);
}

QStringList FileHelper::getAllManuals(const QString& path)
{
    return getDirContents(path, All);
}

QStringList FileHelper::getAllInFolder(const QString& path)
{
    return getDirContents(path, All);
}

QStringList FileHelper::getImagesAndFolders(const QString& path)
{
    return getFolders(path) + getDirContents(path, Images);
}

QStringList FileHelper::getVideosAndFolders(const QString& path)
{
    return getFolders(path) + getDirContents(path, Videos);
}

QStringList FileHelper::getVideosAndImagesAndFolders(const QString& path)
{
    return getFolders(path) + getDirContents(path, VideosAndImages);
}

QStringList FileHelper::getConfigFilesAndFolders(const QString& path)
{
    return getFolders(path) + getDirContents(path, ConfigFiles);
}

QStringList FileHelper::getIoTConfigFilesAndFolders(const QString& path)
{
    return getFolders(path) + getDirContents(path, IoTConfigFiles);
}

QStringList FileHelper::getFlavorComboFilesAndFolders(const QString& path)
{
    return getFolders(path) + getDirContents(path, FlavorCombos);
}

quint32 FileHelper::getFileTime(const QString& fileName)
{
    constexpr quint32 none = std::numeric_limits<quint32>::max();
    const QDateTime time = QFileInfo(fileName).lastModified();
    const qint64 seconds = time.toSecsSinceEpoch();
    return time.isValid() && seconds >= 0 && seconds < none ? static_cast<quint32>(seconds) : none;
}

bool FileHelper::isPathFile(const QString& path)
{
    return QFileInfo(path).isFile();
}

bool FileHelper::isDir(const QString& path)
{
    return QFileInfo(path).isDir();
}

QString FileHelper::getFileName(const QString& filePath)
{
    return QFileInfo(filePath).fileName();
}
