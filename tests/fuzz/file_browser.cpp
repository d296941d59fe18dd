// A tree, and a walk through it in the first line: what the file chooser shows is there, can be
// entered, and never leads out.

#include "Fuzz.h"
#include "software/FileHelper.h"

#include <filesystem>

namespace {

const QString top = QStringLiteral("/tmp/tree");

QStringList toBeShown(const QString& folder)
{
    QStringList names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.toStdString())) {
        const std::string name = entry.path().filename();
        const QString text = QString::fromStdString(name);
        if (!entry.is_symlink() && (entry.is_directory() || entry.is_regular_file())
            && name.front() != '.' && text.toStdString() == name)
            names.append(text);
    }
    names.sort();
    return names;
}

void check(const FileHelper& browser)
{
    const QString path = browser.currentPath();
    HOLDS((path + '/').startsWith(top + '/'), path);
    QStringList shown = browser.folderEntries();
    shown.sort();
    HOLDS(shown == toBeShown(path), path << shown << toBeShown(path));
}

} // namespace

void tryInput(const QByteArray& input)
{
    const QByteArrayList lines = input.split('\n').mid(0, 12);
    makeTree(top, lines.mid(1));
    FileHelper browser;
    browser.setFilterNames({"*"});
    browser.setCurrentPath(top);
    check(browser);
    for (const char step : lines.constFirst().left(10)) {
        const QStringList entries = browser.folderEntries();
        if (step == '<')
            browser.leaveFolder();
        else if (!entries.isEmpty())
            browser.enterFolder(entries.at(static_cast<unsigned char>(step) % entries.size()));
        check(browser);
    }
}
