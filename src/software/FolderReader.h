#pragma once

#include "software/Background.h"

#include <QByteArray>
#include <QString>

#include <dirent.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <vector>

// Reads the visible folders and regular files of one folder, straight from the file system through
// readdir(). Names are bytes: a stick that another system has written may hold names that are not
// UTF-8, which Qt's own listings leave out without a word. A status is asked for only where a type
// cannot be told without it.
class FolderReader
{
public:
    // A folder whatever path led to it.
    struct Identity
    {
        dev_t device;
        ino_t inode;

        bool operator<(const Identity& other) const
        {
            return device != other.device ? device < other.device : inode < other.inode;
        }
    };

    // A name in the order that listings have: ignoring case, and by the exact name where two differ
    // in case only, so that every scan gives the same.
    struct Entry
    {
        QString sortKey;
        QByteArray name;
        bool isLink;

        Entry(const QString& text, const FolderReader& reader)
            : sortKey(text.toLower()), name(reader.name()), isLink(reader.isLink())
        {
        }
        bool operator<(const Entry& other) const;
    };
    using Entries = std::vector<Entry>;

    // `path` as the file system spells it. The log tells when it cannot be read, but not when there
    // is no such folder. Once `stop` is set the folder has no further entries, and a new one is not
    // opened.
    explicit FolderReader(const QByteArray& path, const Background::Stop& stop = Background::never);

    // Whether a name or path, as a text, still leads to the same: it does not when it is not UTF-8.
    static bool isText(const QByteArray& path);

    bool isOpen() const { return m_directory != nullptr; }
    // Of an open folder.
    Identity identity() const { return m_identity; }

    // Goes on to the next entry; links count as what they lead to, and what leads nowhere is passed
    // over. False at the end, and at once when the folder is not open; the log tells when reading
    // ended in an error, and which link could not be followed though it leads somewhere.
    bool next();
    // Of the entry that next() has gone on to.
    QByteArray name() const { return m_name; }
    bool isFolder() const { return m_isFolder; }
    bool isLink() const { return m_isLink; }
    // Whether this process may read it; asks the file system.
    bool isReadable() const;
    // The device that a link leads to.
    dev_t linkedDevice() const { return m_linkedDevice; }

private:
    struct Close
    {
        void operator()(DIR* directory) const { closedir(directory); }
    };

    const dirent* readEntry() const;
    bool examine(const dirent& entry);
    std::optional<struct stat> statusOf(const char* name, int flags) const;

    QByteArray m_path;
    const Background::Stop& m_stop;
    std::unique_ptr<DIR, Close> m_directory;
    Identity m_identity {};
    QByteArray m_name;
    bool m_isFolder = false;
    bool m_isLink = false;
    dev_t m_linkedDevice = 0;
};
