// The file operations and storage queries of FileHelper.

#include "database/PlatformFolders.h"
#include "process/ScriptLauncher.h"
#include "software/FileHelper.h"
#include "software/MediaFolder.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <sys/sendfile.h>
#include <sys/stat.h>

namespace {

constexpr qint64 sharedMediaQuota = 10LL << 30;
constexpr qint64 chunkSize = 1LL << 20;

// Empty when the copy can begin, with both files open; otherwise why it cannot. The order of the
// checks decides which reason a user reads. A source that is no regular file (a pipe on a foreign
// stick) is refused before an open that could wait for ever.
QString openForCopy(QFile& source, QFile& destination, const QString& destinationFolder)
{
    const QString sourceName = source.fileName();
    // Not QFile's own, which says of a link that it exists wherever it leads.
    if (!QFileInfo::exists(sourceName))
        return QStringLiteral("Error: File '%1' doesn't exist.").arg(sourceName);
    if (!QFileInfo(sourceName).isFile() || !source.open(QFile::ReadOnly | QFile::Unbuffered))
        return QStringLiteral("Error: Can't access file '%1'.").arg(sourceName);
    if (!QFileInfo(destinationFolder).isDir())
        return QStringLiteral("Error: Destination folder doesn't exist.");
    // No separator in between, kept: every page passes a folder that ends in "/".
    destination.setFileName(destinationFolder + QFileInfo(sourceName).fileName());
    if (destination.exists())
        return QStringLiteral("Warning: File already exists.");
    if (!destination.open(QFile::WriteOnly | QFile::Unbuffered))
        return QStringLiteral("Error: Permission denied");
    return {};
}

// From where both files are, in the kernel, which need not hand the bytes to us and take them back;
// through memory of ours where a file system does not offer that or a signal came in between. Gives
// how many it were, less than one at the source's end and on an error.
qint64 copyBytes(qint64 count, QFile& source, QFile& destination)
{
    const ssize_t sent
        = sendfile(destination.handle(), source.handle(), nullptr, static_cast<std::size_t>(count));
    if (sent >= 0 || (errno != EINVAL && errno != EINTR))
        return sent;
    const QByteArray bytes = source.read(count);
    return bytes.isEmpty() ? 0 : destination.write(bytes);
}

// The seek is for a chunk that was read or written only in part: the next one still goes to its
// place, and a source that has vanished is left behind after as many rounds as it had chunks.
void copyChunk(qint64 begin, QFile& source, QFile& destination)
{
    const qint64 end = begin + chunkSize;
    qint64 copied = 1;
    for (qint64 position = begin; position < end && copied > 0; position += copied)
        copied = copyBytes(end - position, source, destination);
    source.seek(end);
    destination.seek(end);
}

// Of a path, following links; 0, which no file system has, when there is none.
dev_t deviceOf(const QByteArray& path)
{
    struct stat status
    {
    };
    return stat(path.constData(), &status) == 0 ? status.st_dev : 0;
}

} // namespace

bool FileHelper::refuseCopy(const QString& reason)
{
    emit error(reason);
    return false;
}

bool FileHelper::copyFile(const QString& sourceFilename, const QString& destinationFolder)
{
    QFile source(sourceFilename);
    QFile destination;
    const QString reason = openForCopy(source, destination, destinationFolder);
    if (!reason.isEmpty())
        return refuseCopy(reason);
    // A slot, or an event that is served meanwhile, may destroy this item.
    const QPointer<FileHelper> self(this);
    emit copyBegun();
    QCoreApplication::processEvents();

    // Asked for once: a file that grows while it is read still comes to an end.
    const qint64 size = source.size();
    qint64 reported = 0;
    for (qint64 position = 0; self && position < size; position += chunkSize) {
        copyChunk(position, source, destination);
        // The percent of the chunks before this one, kept: the pages' progress bars are timed to
        // it.
        const qint64 percent = 100 * position / size;
        if (percent != reported) {
            emit copyProgress(static_cast<int>(percent));
            QCoreApplication::processEvents();
            reported = percent;
        }
    }
    if (self)
        emit copyProgress(100);
    destination.close();
    source.close();
    if (!self)
        return false;
    emit copyCompleted();
    return true;
}

bool FileHelper::deleteFile(const QString& path)
{
    if (!QFile::exists(path))
        return false;
    qDebug() << "FileHelper::deleteFile : " << path;
    return QFile::remove(path);
}

void FileHelper::removeOldUpdates(const QString& filePath)
{
    // Without a current version this is the highest time there is, and every file is old.
    const quint32 reference = getFileTime(PlatformFolders::currentVersion);
    const QStringList names = getAllInFolder(filePath);
    for (const QString& name : names) {
        const QString path = filePath + name;
        if (getFileTime(path) >= reference)
            continue;
        deleteFile(path);
        qDebug() << "Delete old update file " << path;
    }
}

QString FileHelper::readOneLineFile(const QString& fname)
{
    constexpr qint64 longestLine = 1 << 16;
    QFile file(fname);
    if (!QFileInfo(fname).isFile() || !file.open(QFile::ReadOnly))
        return {};
    // Qt counts the NUL that it puts behind the line.
    return QString::fromUtf8(file.readLine(longestLine + 1).constData());
}

QStringList FileHelper::findMediaDevices()
{
    QByteArrayList names = MediaFolder::subfolders();
    const dev_t parent = deviceOf(QFile::encodeName(MediaFolder::path()));
    // The index moves on after a removal too, kept: the entry that follows a plain folder is not
    // examined, and stands in the list that the platform's pages know.
    for (int i = 0; i < names.size(); ++i) {
        const dev_t device = deviceOf(MediaFolder::pathOf(names.at(i)));
        if (device == parent || device == 0)
            names.removeAt(i);
    }
    return MediaFolder::texts(names);
}

QString FileHelper::availableDiskSize()
{
    return ScriptLauncher().launchProgram(QStringLiteral("getDiskSpace.sh"));
}

qint64 FileHelper::storageSpaceSize()
{
    qint64 total = 0;
    for (const QString& folder : {QStringLiteral("/opt/Merivon/Pictures/Shared/"),
                                  QStringLiteral("/opt/Merivon/Videos/Shared/")}) {
        const QStringList names = getDirContents(folder, 0);
        for (const QString& name : names) {
            const QFileInfo entry(folder + name);
            total += entry.isFile() ? entry.size() : 0;
        }
    }
    return total;
}

bool FileHelper::canCopyMediaFile(const QString& path)
{
    return storageSpaceSize() + QFileInfo(path).size() < sharedMediaQuota;
}

QString FileHelper::availableStorageMediaSize()
{
    return sizeFormat(sharedMediaQuota - storageSpaceSize());
}

QString FileHelper::sizeFormat(qlonglong size)
{
    static const QStringList units {QStringLiteral(" B"), QStringLiteral(" KB"),
                                    QStringLiteral(" MB"), QStringLiteral(" GB"),
                                    QStringLiteral(" TB")};
    int unit = 0;
    for (; size > 1023 && unit < units.size() - 1; ++unit)
        size >>= 10;
    // The half matters for a negative count only, which comes out one closer to zero; kept. A count
    // too low for 32 bits stays at the lowest that they hold.
    const double rounded = std::max(static_cast<double>(size) + 0.5,
                                    static_cast<double>(std::numeric_limits<qint32>::min()));
    return QString::number(static_cast<qint32>(rounded)) + units.at(unit);
}
