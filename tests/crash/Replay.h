#pragma once

#include "Event.h"

#include <QByteArray>
#include <QMap>
#include <QString>

#include <memory>
#include <vector>

// The files of a folder: content by name.
using Files = QMap<QByteArray, QByteArray>;

Files readFolder(const QString& folder);
// Afterwards the folder, which is made when it is missing, holds these files and no others.
void writeFolder(const QString& folder, const Files& files);

// A recorded event and the bytes that follow it in the log.
struct Step
{
    Event event;
    QByteArray bytes;
};

// The events of a recorder's log, oldest first.
std::vector<Step> readLog(const QByteArray& log);

// Does again what was recorded, and knows what lies on the disk if it stops there.
//
// The disk loses no more than a journaling file system on a sound device may, which is what SQLite
// counts on too. What is written lasts from the file's next sync on, a name that comes or goes from
// the folder's. Before that each write may arrive or not, in any order, and what a file grew by
// without its data reads as zeros; names and truncations arrive in their order, which is the
// journal's. A sector is written whole or not at all, and the bytes beside a write stay as they
// are.
class Replay
{
public:
    // Starts from files that are on the disk.
    Replay(const QString& folder, const Files& files);

    void apply(const Step& step);

    // All that was done, as it is after the program was killed.
    Files afterKill() const;
    // What the disk holds after a power cut. The seed decides what arrived of all that was not
    // synced, from nothing (a multiple of 5) to most of it, and which sectors of each file's last
    // write did.
    Files afterPowerCut(unsigned seed) const;

private:
    struct Change // a write or a truncation
    {
        Step step;
        std::size_t namings; // done before it, of all
    };
    struct File
    {
        QByteArray content;
        QByteArray synced;
        std::vector<Change> unsynced; // since
    };
    using FilePointer = std::shared_ptr<File>;
    struct Naming
    {
        QByteArray name;
        FilePointer file; // none: the name goes
    };
    using Names = QMap<QByteArray, FilePointer>;

    void open(int descriptor, const QByteArray& path);
    void change(int descriptor, const Step& step);
    void sync(int descriptor);
    void rename(const Naming& naming);
    static void apply(const Naming& naming, Names& names);

    QString m_folder;
    Names m_names, m_before;
    std::vector<Naming> m_namings; // all since
    std::size_t m_syncedNamings = 0;
    QMap<int, FilePointer> m_opened; // by descriptor; none: the folder itself
};
