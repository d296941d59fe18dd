#pragma once

#include <QByteArray>
#include <QString>

#include <dirent.h>
#include <memory>
#include <sys/types.h>
#include <vector>

// Reads the visible folders and regular files of one folder, straight from the file system through
// readdir(). Names are bytes: a stick that another system has written may hold names that are not
// UTF-8, which Qt's own listings leave out. A status is asked for only where a type cannot be told
// without it.
class FolderReader
{
public:
    // A folder whatever path led to it.
    struct Identity
    {
        dev_t device;
        ino_t inode;
    };

    // A name in the order that listings have: ignoring case, and by the exact name where two differ
    // in case only, so that every scan gives the same.
    struct Entry
    {
        QString sortKey;
        QByteArray name;

        Entry(const QString& text, const QByteArray& bytes) : sortKey(text.toLower()), name(bytes)
        {
        }
        bool operator<(const Entry& other) const;
    };
    using Entries = std::vector<Entry>;

    // `path` as the file system spells it. The log tells when it cannot be read, but not when there
    // is no such folder.
    explicit FolderReader(const QByteArray& path);

    bool isOpen() const { return m_directory != nullptr; }
    // Of an open folder.
    Identity identity() const { return m_identity; }

    // Goes on to the next entry; links count as what they lead to, and what leads nowhere is passed
    // over. False at the end, and at once when the folder is not open; the log tells when reading
    // ended in an error.
    bool next();
    // Of the entry that next() has gone on to.
    QByteArray name() const { return m_name; }
    bool isFolder() const { return m_isFolder; }

private:
    struct Close
    {
        void operator()(DIR* directory) const { closedir(directory); }
    };

    const dirent* readEntry() const;

    QByteArray m_path;
    std::unique_ptr<DIR, Close> m_directory;
    Identity m_identity {};
    QByteArray m_name;
    bool m_isFolder = false;
};
