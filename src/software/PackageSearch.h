#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <sys/types.h>
#include <vector>

// Finds software packages ("quillmark-*-*.tar.gz") and controller firmware images ("*MFV_V*.hex",
// both ignoring case) in a folder and everything below it.
//
// It reads folders through readdir() and asks for a file's status only where its type cannot be
// told without: the scan of a full stick runs on the user-interface thread, and a status call for
// each of its files would freeze the screen three times as long.
class PackageSearch
{
public:
    // Absolute paths of all packages and images at or below a folder: the files of a folder by name
    // ignoring case, then those of its subfolders, depth first, in the same order. Links to files
    // and folders are followed, hidden entries are not listed. What cannot be read, or vanishes
    // meanwhile, is not listed; the log tells what could not be read.
    QStringList below(const QString& folder);

private:
    // A folder whatever path led to it.
    struct Identity
    {
        dev_t device;
        ino_t inode;
    };

    struct Entry
    {
        QString sortKey;
        QByteArray name;
    };

    struct Listing
    {
        Identity identity {};
        std::vector<Entry> files;
        std::vector<Entry> folders;
    };

    void walk(const QByteArray& folder);
    void appendFiles(const QByteArray& prefix, std::vector<Entry> files);
    bool isOnPath(const Identity& identity) const;

    static bool read(const QByteArray& folder, Listing& listing);
    static void sort(std::vector<Entry>& entries);

    std::vector<Identity> m_path;
    QStringList m_found;
};
