#pragma once

#include "software/FolderReader.h"

#include <QByteArray>
#include <QStringList>

#include <vector>

// Finds software packages ("quillmark-*-*.tar.gz") and controller firmware images ("*MFV_V*.hex",
// both ignoring case) in a folder and everything below it.
//
// It reads folders through FolderReader: the scan of a full stick runs on the user-interface
// thread, and a status call for each of its files would freeze the screen three times as long.
class PackageSearch
{
public:
    // Absolute paths of all packages and images at or below a folder, which is an absolute path as
    // the file system spells it: the files of a folder by name ignoring case, then those of its
    // subfolders, depth first, in the same order. Links to files and folders are followed, hidden
    // entries are not listed. What cannot be read, or vanishes meanwhile, is not listed; the log
    // tells what could not be read, and which path is not UTF-8 and so cannot be opened as given.
    QStringList below(const QByteArray& folder);

private:
    struct Listing
    {
        FolderReader::Entries files;
        FolderReader::Entries folders;
    };

    void walk(const QByteArray& folder);
    bool read(const QByteArray& folder, Listing& listing);
    void appendFiles(const QByteArray& prefix, FolderReader::Entries files);
    bool isOnPath(const FolderReader::Identity& identity) const;

    std::vector<FolderReader::Identity> m_path;
    QStringList m_found;
};
