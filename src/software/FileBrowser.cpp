// The file chooser of FileHelper: its listing and the ways through it.

#include "software/FileHelper.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QVector>

namespace {

// Made once a listing, not once an entry: a folder of a stick may hold ten thousand.
QVector<QRegularExpression> matchers(const QStringList& wildcards)
{
    QVector<QRegularExpression> result;
    for (const QString& wildcard : wildcards) {
        const QRegularExpression matcher(QRegularExpression::wildcardToRegularExpression(wildcard));
        if (matcher.isValid())
            result.append(matcher);
    }
    return result;
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
    const QFileInfoList entries = QDir(path).entryInfoList(
        QDir::Dirs | QDir::Files | QDir::Readable | QDir::NoSymLinks | QDir::NoDotAndDotDot,
        QDir::DirsFirst | QDir::Type);
    const QVector<QRegularExpression> filters = matchers(m_filterNames);
    for (const QFileInfo& entry : entries) {
        const QString name = entry.fileName();
        if (entry.isDir()) {
            m_folderEntries.append(name);
            continue;
        }
        // No break after a match, kept: a file that two filters match is listed twice, and a page
        // with overlapping filters counts on a row for each.
        for (const QRegularExpression& filter : filters) {
            if (filter.match(name).hasMatch())
                m_folderEntries.append(name);
        }
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
