#pragma once

#include "Dispenser.h"
#include "Event.h"

#include <QDir>
#include <QFile>
#include <QMap>

#include <cstring>
#include <random>
#include <vector>

// The files of a folder: content by name.
using Files = QMap<QString, QByteArray>;

// Folders are given with a slash at their end.
inline Files readFolder(const QString& folder)
{
    Files files;
    const QStringList names = QDir(folder).entryList(QDir::Files);
    for (const QString& name : names) {
        QFile file(folder + name);
        if (file.open(QIODevice::ReadOnly))
            files[name] = file.readAll();
    }
    return files;
}

// Afterwards the folder holds these files and no others.
inline void writeFolder(const QString& folder, const Files& files)
{
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        Dispenser::writeFile(folder + it.key(), it.value());
}

// Does again what was recorded in a folder, and knows what lies on the disk if it stops half-way.
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
    // What a recorder's log says of a folder that held these files.
    Replay(const QString& folder, const Files& files, const QByteArray& log)
        : m_files(files.values())
    {
        for (const QString& name : files.keys())
            m_names[name] = m_names.size();
        Names names = m_names;
        QMap<int, int> opened; // files by descriptor
        for (int at = 0; at < log.size();) {
            Step step {};
            std::memcpy(&step.event, log.constData() + at, sizeof(Event));
            step.bytes = log.mid(at + int(sizeof(Event)), int(step.event.size));
            at += int(sizeof(Event)) + step.bytes.size();
            step.name = QString::fromUtf8(step.bytes.mid(folder.size()));
            if (take(step, names, opened))
                m_steps.push_back(step);
        }
        findSyncs();
    }

    int events() const { return int(m_steps.size()); }

    // The files after so many events. Seed 0: all that was done, as after a kill. Any other: what
    // a power cut leaves, by chances of all that was not synced that go from none (a multiple of 5)
    // to four in five; each sector of the last write has a chance of its own.
    Files state(int events, unsigned seed) const
    {
        std::mt19937 random(seed);
        const auto coin = [&] { return random() % 5 < seed % 5; };
        int last = events - 1;
        while (last >= 0 && m_steps[last].event.kind != Event::Write)
            --last;
        Names names = m_names;
        QByteArrayList files = m_files;
        bool inOrder = true; // no name or truncation was lost
        for (int i = 0; i < events; ++i) {
            const Step& step = m_steps[i];
            const bool lasts = seed == 0 || step.synced < events;
            if (step.event.kind == Event::Write) {
                if (i == last && !lasts)
                    tear(files[step.file], step, random);
                else if (lasts || coin())
                    write(files[step.file], step, step.event.offset, step.event.size);
            } else if (lasts || (inOrder && coin())) {
                apply(step, names, files);
            } else {
                inOrder = false;
            }
        }
        Files state;
        for (auto it = names.cbegin(); it != names.cend(); ++it)
            state[it.key()] = files[it.value()];
        return state;
    }

private:
    static constexpr int folderItself = -1;

    using Names = QMap<QString, int>; // of files, by their places in m_files

    struct Step
    {
        Event event;
        QByteArray bytes;
        QString name; // that comes or goes
        int file;
        int synced; // at which step
    };

    // Finds the file that an event is about. False when it changes nothing.
    bool take(Step& step, Names& names, QMap<int, int>& opened)
    {
        int& file = opened[step.event.descriptor];
        if (step.event.kind == Event::Unlink)
            return names.remove(step.name) > 0;
        if (step.event.kind == Event::Open) {
            file = step.name.isEmpty() ? folderItself : names.value(step.name, m_files.size());
            if (file != m_files.size())
                return false;
            names[step.name] = file;
            m_files.append(QByteArray());
        }
        step.file = file;
        return true;
    }

    void findSyncs()
    {
        QMap<int, int> next; // syncs by file
        for (int i = events() - 1; i >= 0; --i) {
            Step& step = m_steps[i];
            if (step.event.kind == Event::Sync)
                next[step.file] = i;
            const bool names = step.event.kind == Event::Open || step.event.kind == Event::Unlink;
            step.synced = next.value(names ? folderItself : step.file, events());
        }
    }

    static void apply(const Step& step, Names& names, QByteArrayList& files)
    {
        if (step.event.kind == Event::Open)
            names[step.name] = step.file;
        else if (step.event.kind == Event::Unlink)
            names.remove(step.name);
        else if (step.event.kind == Event::Truncate)
            files[step.file].resize(int(step.event.offset)); // SQLite only ever shortens files
    }

    // A part of a write: its offset in the file and its size.
    static void write(QByteArray& file, const Step& step, qint64 offset, qint64 size)
    {
        if (file.size() < offset + size)
            file.append(int(offset + size) - file.size(), '\0');
        std::memcpy(file.data() + offset, step.bytes.data() + (offset - step.event.offset),
                    std::size_t(size));
    }

    static void tear(QByteArray& file, const Step& step, std::mt19937& random)
    {
        constexpr qint64 sector = 512; // bytes
        const qint64 end = step.event.offset + step.event.size;
        qint64 next = 0;
        for (qint64 offset = step.event.offset; offset < end; offset = next) {
            next = std::min(end, (offset / sector + 1) * sector);
            if (random() % 2 != 0)
                write(file, step, offset, next - offset);
        }
    }

    Names m_names; // at the start
    QByteArrayList m_files; // at the start; those that come later are empty
    std::vector<Step> m_steps;
};
