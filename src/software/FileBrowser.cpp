// The file chooser of FileHelper: its listing and the ways through it.

#include "software/FileHelper.h"
#include "software/FolderReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QVector>

#include <algorithm>
#include <vector>

namespace {

using Filters = QVector<QRegularExpression>;

// Made once a listing, not once an entry: a folder of a stick may hold ten thousand.
Filters filtersOf(const QStringList& wildcards)
{
    Filters result;
    for (const QString& wildcard : wildcards) {
        const QRegularExpression matcher(QRegularExpression::wildcardToRegularExpression(wildcard));
        if (matcher.isValid())
            result.append(matcher);
    }
    return result;
}

// What stands in the chooser's list, in its order.
struct Row
{
    QString name;
    bool isFolder;
    int times; // that it stands there
    int suffixAt;

    Row(const QString& entry, bool folder, int count)
        : name(entry), isFolder(folder), times(count), suffixAt(entry.lastIndexOf('.') + 1)
    {
    }

    QStringView suffix() const
    {
        return QStringView(name).mid(suffixAt > 0 ? suffixAt : name.size());
    }

    bool operator<(const Row& other) const
    {
        if (isFolder != other.isFolder)
            return isFolder;
        const int order = suffix().compare(other.suffix());
        return order != 0 ? order < 0 : name < other.name;
    }
};

// No end after a match, kept: a file that two filters match is listed twice, and a page with
// overlapping filters counts on a row for each.
int timesListed(const QString& file, const Filters& filters)
{
    return static_cast<int>(
        std::count_if(filters.begin(), filters.end(), [&file](const QRegularExpression& filter) {
            return filter.match(file).hasMatch();
        }));
}

// Through the reader of the media: QDir would make an object of each entry, and ask the stick for
// those that no filter lets pass.
std::vector<Row> rowsOfFolder(const QString& path, const Filters& filters)
{
    std::vector<Row> rows;
    FolderReader reader(QFile::encodeName(path));
    while (reader.next()) {
        if (reader.isLink() || !FolderReader::isText(reader.name()))
            continue;
        const QString name = QFile::decodeName(reader.name());
        const int count = reader.isFolder() ? 1 : timesListed(name, filters);
        if (count > 0 && reader.isReadable())
            rows.emplace_back(name, reader.isFolder(), count);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

} // namespace

FileHelper::FileHelper(QQuickItem* parent) : QQuickItem(parent) { }

void FileHelper::setFilterNames(const QStringList& names)
{
    m_filterNames = names;
}

void FileHelper::setDisableChangingDirectory(bool disable)
{
    m_disableChangingDirectory = disable;
    emit disableChangingDirectoryChanged();
}

void FileHelper::setCurrentPath(const QString& path)
{
    if (m_currentPath.isEmpty())
        m_originalPath = path;
    m_currentPath = QDir(path).absolutePath();
    setFolderPath(m_currentPath);
}

void FileHelper::setFolderPath(const QString& path)
{
    m_folderEntries.clear();
    for (const Row& row : rowsOfFolder(QDir(path).absolutePath(), filtersOf(m_filterNames))) {
        for (int i = 0; i < row.times; ++i)
            m_folderEntries.append(row.name);
    }
    emit listChanged();
}

void FileHelper::enterFolder(const QString& folderName)
{
    const QString path = m_currentPath + '/' + folderName;
    m_isFile = isPathFile(path);
    if (isDir(path))
        setCurrentPath(path);
    else
        m_selectedPath = path;
    emit enteredChanged();
}

void FileHelper::leaveFolder()
{
    m_isFile = false;
    // Compared as given, kept: a top folder given with a trailing "/" (the updater's own is not)
    // never equals the current path, and its pages let the technician go further up.
    const bool stay = m_currentPath == m_originalPath || m_disableChangingDirectory;
    // The parent by name: a pulled stick has neither folder nor parent folder any more, and the
    // technician must still get out.
    const QString path = stay ? m_currentPath : QFileInfo(m_currentPath).path();
    // Made absolute here already, so that an item without a path gets a top folder it can be held
    // at: the working directory.
    setCurrentPath(QDir(path).absolutePath());
    emit enteredChanged();
}

void FileHelper::setOriginalPath()
{
    m_isFile = false;
    emit enteredChanged();
    setCurrentPath(m_originalPath);
}

void FileHelper::show()
{
    setOriginalPath();
    setVisible(true);
}

void FileHelper::choose()
{
    if (!isPathFile(m_selectedPath))
        return;
    setVisible(false);
    emit chooseFile(m_selectedPath);
}
