#include "Replay.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cstring>
#include <random>

namespace {

constexpr int sector = 512; // bytes

void write(QByteArray& content, qint64 offset, const QByteArray& data)
{
    const int end = static_cast<int>(offset) + data.size();
    if (content.size() < end)
        content.append(end - content.size(), '\0');
    std::memcpy(content.data() + offset, data.constData(), static_cast<std::size_t>(data.size()));
}

void changeContent(QByteArray& content, const Step& step)
{
    if (step.event.kind == Event::Write)
        write(content, step.event.offset, step.bytes);
    else
        content.resize(static_cast<int>(step.event.offset)); // SQLite only ever shortens a file
}

// Half of the sectors, about.
void tear(QByteArray& content, const Step& step, std::mt19937& random)
{
    const qint64 end = step.event.offset + step.bytes.size();
    for (qint64 at = step.event.offset; at < end; at = (at / sector + 1) * sector) {
        if (random() % 2 == 0)
            continue;
        const qint64 length = std::min(end, (at / sector + 1) * sector) - at;
        const qint64 from = at - step.event.offset;
        write(content, at, step.bytes.mid(static_cast<int>(from), static_cast<int>(length)));
    }
}

// Empty for the folder itself.
QByteArray nameIn(const QString& folder, const QByteArray& path)
{
    return path.mid(folder.toUtf8().size() + 1);
}

} // namespace

Files readFolder(const QString& folder)
{
    Files files;
    const QStringList names = QDir(folder).entryList(QDir::Files);
    for (const QString& name : names) {
        QFile file(folder + '/' + name);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", qPrintable(file.fileName()));
        files[name.toUtf8()] = file.readAll();
    }
    return files;
}

void writeFolder(const QString& folder, const Files& files)
{
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        QFile file(folder + '/' + it.key());
        if (!file.open(QIODevice::WriteOnly) || file.write(it.value()) != it.value().size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
    }
}

std::vector<Step> readLog(const QByteArray& log)
{
    std::vector<Step> steps;
    for (int at = 0; at < log.size();) {
        Step step {};
        std::memcpy(&step.event, log.constData() + at, sizeof step.event);
        at += static_cast<int>(sizeof step.event);
        step.bytes = log.mid(at, static_cast<int>(step.event.size));
        at += step.bytes.size();
        steps.push_back(step);
    }
    return steps;
}

Replay::Replay(const QString& folder, const Files& files) : m_folder(folder)
{
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        m_names[it.key()] = std::make_shared<File>(File {it.value(), it.value(), {}});
    m_before = m_names;
}

void Replay::apply(const Step& step)
{
    const int descriptor = step.event.descriptor;
    switch (step.event.kind) {
    case Event::Open:
        return open(descriptor, step.bytes);
    case Event::Write:
    case Event::Truncate:
        return change(descriptor, step);
    case Event::Sync:
        return sync(descriptor);
    case Event::Close:
        m_opened.remove(descriptor);
        return;
    case Event::Unlink:
        return rename({nameIn(m_folder, step.bytes), nullptr});
    }
}

void Replay::open(int descriptor, const QByteArray& path)
{
    const QByteArray name = nameIn(m_folder, path);
    if (!name.isEmpty() && !m_names.contains(name))
        rename({name, std::make_shared<File>()});
    m_opened[descriptor] = m_names.value(name);
}

void Replay::change(int descriptor, const Step& step)
{
    File& file = *m_opened[descriptor];
    changeContent(file.content, step);
    file.unsynced.push_back({step, m_namings.size()});
}

void Replay::apply(const Naming& naming, Names& names)
{
    if (naming.file)
        names[naming.name] = naming.file;
    else
        names.remove(naming.name);
}

void Replay::rename(const Naming& naming)
{
    apply(naming, m_names);
    m_namings.push_back(naming);
}

void Replay::sync(int descriptor)
{
    if (const FilePointer& file = m_opened[descriptor]) {
        file->synced = file->content;
        file->unsynced.clear();
    } else {
        m_syncedNamings = m_namings.size();
    }
}

Files Replay::afterKill() const
{
    Files files;
    for (auto it = m_names.cbegin(); it != m_names.cend(); ++it)
        files[it.key()] = it.value()->content;
    return files;
}

Files Replay::afterPowerCut(unsigned seed) const
{
    std::mt19937 random(seed);
    const auto coin = [&] { return random() % 5 < seed % 5; };
    std::size_t namings = m_syncedNamings;
    while (namings < m_namings.size() && coin())
        ++namings;
    Names names = m_before;
    for (std::size_t i = 0; i < namings; ++i)
        apply(m_namings[i], names);

    Files files;
    for (auto it = names.cbegin(); it != names.cend(); ++it) {
        QByteArray& content = files[it.key()] = it.value()->synced;
        for (const Change& change : it.value()->unsynced) {
            const bool isLast = &change == &it.value()->unsynced.back();
            if (change.step.event.kind == Event::Truncate) {
                if (change.namings < namings || (change.namings == namings && coin()))
                    changeContent(content, change.step);
            } else if (isLast) {
                tear(content, change.step, random);
            } else if (coin()) {
                changeContent(content, change.step);
            }
        }
    }
    return files;
}
