// A tree, a line each ("d" folder, "l" link, other letters a file, then its path), and a walk
// through it, the first line: what the file chooser shows is there, can be entered, and never leads
// out.

#include "Fuzz.h"
#include "software/FileHelper.h"

#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

const std::string top = "/tmp/tree";

void makeTree(const QByteArrayList& lines)
{
    fs::remove_all(top);
    fs::create_directory(top);
    for (const QByteArray& line : lines) {
        const fs::path path = top + '/' + line.mid(1).toStdString();
        std::error_code failed;
        if (line.contains("..") || line.contains('\0'))
            continue;
        fs::create_directories(path.parent_path(), failed);
        if (line.startsWith('d'))
            fs::create_directory(path, failed);
        else if (line.startsWith('l'))
            fs::create_symlink("/opt", path, failed);
        else
            std::ofstream {path};
    }
}

// Each folder once; each file by "*", and by "*.hex" again.
QStringList toBeShown(const QString& folder)
{
    QStringList names;
    for (const auto& entry : fs::directory_iterator(folder.toStdString())) {
        const std::string name = entry.path().filename();
        const QString text = QString::fromStdString(name);
        if (entry.is_symlink() || name.front() == '.' || text.toStdString() != name)
            continue;
        names.append(text);
        if (!entry.is_directory() && text.endsWith(QLatin1String(".hex")))
            names.append(text);
    }
    names.sort();
    return names;
}

void check(FileHelper& browser)
{
    const QString path = browser.currentPath();
    HOLDS((path + '/').startsWith(QString::fromStdString(top) + '/'), path);
    QStringList shown = browser.folderEntries();
    shown.sort();
    HOLDS(shown == toBeShown(path), path << shown << toBeShown(path));
    shown.removeDuplicates();
    QStringList listed = browser.getAllInFolder(path);
    listed.sort();
    HOLDS(listed == shown, path << listed << shown);
    for (signed char mode = 1; mode <= 7; ++mode) {
        for (const QString& name : browser.getDirContents(path, mode))
            HOLDS(shown.contains(name) && browser.isDir(path + '/' + name) == (mode == 3),
                  path << name << mode);
    }
}

void enter(FileHelper& browser, const QString& name)
{
    const QString path = browser.currentPath() + '/' + name;
    browser.enterFolder(name);
    HOLDS(browser.isFile() != browser.isDir(path), path);
    HOLDS((browser.isFile() ? browser.selectedPath() : browser.currentPath()) == path, path);
    HOLDS(browser.getFileName(path) == name, path);
}

} // namespace

void tryInput(const QByteArray& input)
{
    const QByteArrayList lines = input.split('\n').mid(0, 12);
    makeTree(lines.mid(1));
    FileHelper browser;
    browser.setFilterNames({"*", "*.hex"});
    browser.setCurrentPath(QString::fromStdString(top));
    check(browser);
    for (const char step : lines.constFirst().left(10)) {
        const QStringList entries = browser.folderEntries();
        if (step == '<')
            browser.leaveFolder();
        else if (step == '^')
            browser.setOriginalPath();
        else if (!entries.isEmpty())
            enter(browser, entries.at(static_cast<unsigned char>(step) % entries.size()));
        check(browser);
    }
    browser.setFilterNames({textOf(lines.constLast())});
    browser.setOriginalPath();
}
