// Paths on media, one a line, each beginning with the medium: what is found, and what a name tells.

#include "Fuzz.h"
#include "software/SoftwareManager.h"

#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

const std::string media = "/media/technician/";

// What the regular expression stands for; like that, it does not count a last line end.
QStringList nameAndVersion(QString file)
{
    const QString start = QStringLiteral("quillmark-");
    if (file.endsWith('\n'))
        file.chop(1);
    const int dash = file.endsWith(QLatin1String(".tar.gz")) ? file.lastIndexOf('-') : -1;
    const int from = dash < start.size() ? -1 : file.lastIndexOf(start, dash - start.size());
    if (from < 0 || file.mid(from, dash - from).contains('\n'))
        return {};
    const int name = from + start.size();
    return {file.mid(name, dash - name), file.mid(dash + 1).chopped(7)};
}

bool isWanted(const QString& path)
{
    const QString name = path.section('/', -1).toCaseFolded();
    const bool package = name.endsWith(QLatin1String(".tar.gz"))
        && name.startsWith(QLatin1String("quillmark-")) && name.chopped(7).count('-') > 1;
    const bool firmware = name.endsWith(QLatin1String(".hex")) && name.chopped(4).contains("mfv_v");
    return !path.contains(QLatin1String("/.")) && (package || firmware);
}

// The paths of the files that could be made and that are to be found.
QStringList makeFiles(const QByteArray& input)
{
    QStringList wanted;
    std::error_code failed; // a medium that is a mount point itself stays
    for (const auto& entry : fs::directory_iterator(media))
        fs::remove_all(entry, failed);
    for (const QByteArray& line : input.split('\n').mid(0, 12)) {
        const fs::path path = fs::path(media + line.toStdString()).lexically_normal();
        fs::create_directories(path.parent_path(), failed);
        // Kept: a name that begins with the mark of an encoding is told without it.
        const bool isMarked = line.contains("\xef\xbb\xbf");
        if (isMarked || path.parent_path() == fs::path(media).parent_path() || line.contains("..")
            || line.contains('\0') || !std::ofstream(path))
            continue;
        const QString text = QString::fromStdString(path);
        if (text.toStdString() == path && isWanted(text))
            wanted.append(text);
    }
    return wanted;
}

} // namespace

void tryInput(const QByteArray& input)
{
    SoftwareManager manager;
    for (const QString& line : {textOf(input), linesOf(input, 1).constFirst()})
        HOLDS(manager.getNameVersion(line) == nameAndVersion(line),
              line << manager.getNameVersion(line) << nameAndVersion(line));

    const QStringList wanted = makeFiles(input);
    const QStringList found = manager.findAvailableSoftware();
    QStringList names;
    for (const QString& path : found) {
        HOLDS(wanted.contains(path) && QFileInfo(path).isFile(), path << wanted);
        names.append(manager.getFileName(path));
    }
    HOLDS(std::is_sorted(names.cbegin(), names.cend()) && names.removeDuplicates() == 0, found);
    for (const QString& path : wanted) {
        const QString name = path.section('/', -1);
        HOLDS(names.contains(name) || names.contains(name.toLower()), path << found);
    }
}
