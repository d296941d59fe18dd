// The name of an installed version: its removal's shell line, run by a shell, takes it and no more.

#include "Dispenser.h"
#include "Fuzz.h"
#include "process/ScriptLauncher.h"

#include <QFile>
#include <QJSEngine>

#include <filesystem>
#include <set>

// The script engine keeps its values in memory that is not searched for what is still in use.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer calls it by this name
extern "C" const char* __asan_default_options()
{
    return "detect_leaks=0";
}

namespace {

namespace fs = std::filesystem;

// Calls a function of the scene's script, less its first line, which is for scenes only.
QString ask(const QString& function, const QString& version)
{
    static QJSEngine engine;
    static const bool isLoaded = [] {
        QFile script(":/SoftwareUpdater/qml/versionRemoval.js");
        return script.open(QIODevice::ReadOnly) && !script.readLine().isEmpty()
            && !engine.evaluate(script.readAll()).isError();
    }();
    const QJSValue answer = engine.globalObject().property(function).call({version});
    HOLDS(isLoaded && answer.isString(), answer.toString());
    return answer.toString();
}

// Where a shell line that does something else would show.
std::set<fs::path> everything()
{
    std::set<fs::path> paths;
    for (const char* folder : {"/opt/Merivon", "/media", "/home/technician"}) {
        for (const auto& entry : fs::recursive_directory_iterator(folder))
            paths.insert(entry.path());
    }
    return paths;
}

} // namespace

void tryInput(const QByteArray& input)
{
    const QString version = textOf(input);
    const bool isOneName
        = !version.isEmpty() && version != "." && version != ".." && !version.contains('/');
    HOLDS(ask("refusal", version).isEmpty() == isOneName, version);
    const fs::path folder((Dispenser::versionsStore + version).toStdString());
    if (!isOneName || version.contains(QChar::Null) || version.toUtf8().size() > 255
        || fs::exists(fs::symlink_status(folder)))
        return; // no version is named so
    const std::set<fs::path> before = everything();
    fs::create_directories(folder / "ServiceUI");

    ScriptLauncher().executeSystemCommand(ask("command", version));

    HOLDS(everything() == before, version << ask("command", version));
}
