#pragma once

#include "software/FolderReader.h"

#include <QByteArray>
#include <QStringList>

#include <optional>
#include <set>

// Finds software packages ("quillmark-*-*.tar.gz") and controller firmware images ("*MFV_V*.hex",
// both ignoring case) on a medium: in a folder, its root, and everything below it.
//
// It reads folders through FolderReader, since a status call for each file of a full stick would
// make the scan three times as long.
class PackageSearch
{
public:
    // Once `stop` is set, the search ends with what it has.
    explicit PackageSearch(const Background::Stop& stop = Background::never) : m_stop(stop) { }

    // Absolute paths of all packages and images at or below a folder, which is an absolute path as
    // the file system spells it: the files of a folder by name ignoring case, then those of its
    // subfolders, depth first, in the same order. Hidden entries are not listed.
    //
    // Links are followed on the device of the root only, since what they lead to elsewhere is not
    // on the medium; a folder that is reached through one is entered once in the search, so that
    // links cannot make it longer than twice what lies on the medium. Mount points below the root
    // belong to the medium. What cannot be read, or vanishes meanwhile, is not listed. What leads
    // off the medium, or cannot be opened by a text since its name is not UTF-8, is left out with a
    // line in the log.
    QStringList below(const QByteArray& root);

private:
    struct Listing
    {
        FolderReader::Entries files;
        FolderReader::Entries folders;
    };

    void walk(const QByteArray& folder, bool throughLink);
    bool read(const QByteArray& folder, bool throughLink, Listing& listing);
    bool enter(const FolderReader::Identity& folder, bool throughLink);
    bool isReachable(const FolderReader& entry, const QByteArray& path) const;

    const Background::Stop& m_stop;
    std::optional<dev_t> m_device; // of the root
    std::set<FolderReader::Identity> m_entered;
    QStringList m_found;
};
