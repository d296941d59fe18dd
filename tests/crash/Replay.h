#pragma once

#include "Recorder.h"

#include <algorithm>
#include <cstring>
#include <random>

// Does again what was recorded in a folder, and knows what lies on the disk if it stops half-way.
//
// The disk loses no more than a journaling file system on a sound device may, which is what SQLite
// counts on too. What is written lasts from the file's next sync on, a name that comes or goes from
// the folder's. Before that each sector of a write may arrive or not, in any order, and what a file
// grew by without its data reads as zeros; names and truncations arrive in their order, which is
// the journal's. A sector is written whole or not at all, and the bytes beside a write stay as they
// are.
class Replay
{
public:
    // What was recorded in a folder that held these files.
    Replay(const Files& files, const std::vector<Change>& changes) : m_changes(changes)
    {
        for (auto it = files.cbegin(); it != files.cend(); ++it)
            m_names[it.key()] = m_names.size();
        m_files = files.values();
        for (const Change& change : changes) {
            if (change.file == m_files.size())
                m_files.append(QByteArray());
        }
        findSyncs();
    }

    int changes() const { return int(m_changes.size()); }

    // The files after so many changes. Seed 0: all that was done, as after a kill. Any other: what
    // a power cut leaves, by chances of all that was not synced that go from none (a multiple of 5)
    // to four in five.
    Files state(int changes, unsigned seed) const
    {
        std::mt19937 random(100 * unsigned(changes) + seed);
        const auto arrives = [&] { return random() % 5 < seed % 5; };
        Names names = m_names;
        QByteArrayList files = m_files;
        bool inOrder = true; // no name or truncation was lost
        for (int i = 0; i < changes; ++i) {
            const bool lasts = seed == 0 || m_synced[i] < changes;
            if (m_changes[i].kind == Change::Write)
                write(files, m_changes[i], [&] { return lasts || arrives(); });
            else if (lasts || (inOrder && arrives()))
                apply(m_changes[i], names, files);
            else
                inOrder = false;
        }
        Files state;
        for (auto it = names.cbegin(); it != names.cend(); ++it)
            state[it.key()] = files[it.value()];
        return state;
    }

private:
    using Names = QMap<QString, int>; // and their files

    void findSyncs()
    {
        QMap<int, int> next; // syncs by file
        m_synced.resize(m_changes.size());
        for (int i = changes() - 1; i >= 0; --i) {
            const Change& change = m_changes[i];
            if (change.kind == Change::Sync)
                next[change.file] = i;
            const bool ofName = change.kind == Change::Create || change.kind == Change::Remove;
            m_synced[i] = next.value(ofName ? Change::folderItself : change.file, changes());
        }
    }

    static void apply(const Change& change, Names& names, QByteArrayList& files)
    {
        if (change.kind == Change::Create)
            names[change.name] = change.file;
        else if (change.kind == Change::Remove)
            names.remove(change.name);
        else if (change.kind == Change::Truncate)
            files[change.file].resize(int(change.offset)); // SQLite only ever shortens files
    }

    template <typename Arrives>
    static void write(QByteArrayList& files, const Change& change, Arrives arrives)
    {
        constexpr qint64 sector = 512; // bytes
        const qint64 end = change.offset + change.bytes.size();
        qint64 next = 0;
        for (qint64 from = change.offset; from < end; from = next) {
            next = std::min(end, (from / sector + 1) * sector);
            if (!arrives())
                continue;
            QByteArray& file = files[change.file];
            file.append(std::max(0, int(next) - file.size()), '\0');
            std::memcpy(file.data() + from, change.bytes.data() + (from - change.offset),
                        std::size_t(next - from));
        }
    }

    Names m_names; // at the start
    QByteArrayList m_files; // at the start; those that come later are empty
    const std::vector<Change> m_changes;
    std::vector<int> m_synced; // at which change each lasts
};
