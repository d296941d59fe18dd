// The name of an installed version: its removal's shell line, run by a shell, takes it and no more.

#include "Dispenser.h"
#include "Fuzz.h"
#include "process/ScriptLauncher.h"

#include <QFile>
#include <QQmlComponent>
#include <QQmlEngine>

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

QString ask(const char* function, const QString& version)
{
    static QQmlEngine engine;
    static QQmlComponent component(&engine);
    static QObject* const script = [] {
        component.setData("import QtQml 2.15\n"
                          "import 'qrc:/SoftwareUpdater/qml/versionRemoval.js' as Removal\n"
                          "QtObject { function command(v) { return Removal.command(v) }\n"
                          "           function refusal(v) { return Removal.refusal(v) } }",
                          {});
        return component.create();
    }();
    HOLDS(script != nullptr, component.errorString());
    QVariant answer;
    QMetaObject::invokeMethod(script, function, Q_RETURN_ARG(QVariant, answer),
                              Q_ARG(QVariant, version));
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
    for (const auto& entry : fs::directory_iterator("/tmp")) // the checkout may lie below it
        paths.insert(entry.path());
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

    const std::set<fs::path> after = everything();
    HOLDS(after == before, version << ask("command", version));
}
