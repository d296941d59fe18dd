#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <vector>

// The files of a folder: content by name.
using Files = QMap<QString, QByteArray>;

// One change in a recorded folder.
struct Change
{
    enum Kind { Create, Remove, Write, Truncate, Sync };
    static constexpr int folderItself = -1;

    Kind kind;
    int file; // by number: those that were there first, in the order of names, then new ones
    QString name; // of a Create or Remove
    qint64 offset; // in bytes: of a Write, or the new length of a Truncate
    QByteArray bytes; // of a Write
};

// What an operation changes in a folder that holds these files; its path ends with a slash. Follows
// the calls by which SQLite's library changes files. A change made in another way, such as a write
// through a mapping, is missed: who replays the changes compares the end with the real files.
std::vector<Change> record(const QString& folder, const Files& files, void (*operation)());
