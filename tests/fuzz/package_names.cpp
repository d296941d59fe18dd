// A tree of media: what is found there, and what a name tells.

#include "Dispenser.h"
#include "Fuzz.h"
#include "software/SoftwareManager.h"

#include <QRegularExpression>

#include <algorithm>
#include <filesystem>

namespace {

// What no hidden folder holds and no link leads to, and whose path is a text.
QStringList toBeFound()
{
    static const QRegularExpression wanted(
        R"(\A/media/\w+(/[^/.][^/]*)+/(quillmark-[^/]*-[^/]*\.tar\.gz|(?!\.)[^/]*mfv_v[^/]*\.hex)\z)",
        QRegularExpression::CaseInsensitiveOption);
    QStringList paths;
    const std::string media = Dispenser::mediaFolder().toStdString();
    for (const auto& entry : std::filesystem::recursive_directory_iterator(media)) {
        const QString path = QString::fromStdString(entry.path());
        if (path.toStdString() == entry.path() && entry.is_regular_file()
            && wanted.match(path).hasMatch())
            paths.append(path);
    }
    return paths;
}

void checkNameVersion(const QString& name)
{
    const QStringList parts = SoftwareManager().getNameVersion(name);
    const QString spelled = "quillmark-" + parts.join('-') + ".tar.gz";
    HOLDS(parts.isEmpty() || name.contains(spelled), name << parts);
    HOLDS(!parts.value(0).contains("quillmark-") && !parts.value(1).contains('-'), name << parts);
}

} // namespace

void tryInput(const QByteArray& input)
{
    checkNameVersion(textOf(input));
    makeTree(Dispenser::mediaFolder(), input.split('\n').mid(0, 12));
    const QStringList wanted = toBeFound();
    const QStringList found = SoftwareManager().findAvailableSoftware();
    QStringList names;
    for (const QString& path : found) {
        HOLDS(wanted.contains(path), path << wanted);
        names.append(path.section('/', -1));
    }
    HOLDS(std::is_sorted(names.cbegin(), names.cend()) && names.removeDuplicates() == 0, found);
    for (const QString& path : wanted) {
        const QString name = path.section('/', -1);
        HOLDS(names.contains(name) || names.contains(name.toLower()), path << found);
    }
}
