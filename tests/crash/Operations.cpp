#include "Operations.h"

#include "Dispenser.h"
#include "RawDatabase.h"

#include "config/UiConfig.h"
#include "database/TableDictionary.h"
#include "database/TableMessages.h"

#include <QCoreApplication>
#include <QProcess>

namespace {

// To be filled with a table and a SELECT of i.
QString insert500(const QString& what)
{
    return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 500) INSERT INTO "
        + what + " FROM n;";
}

QString makeT(const QString& rows)
{
    return "CREATE TABLE t (id INTEGER PRIMARY KEY, a TEXT, b TEXT DEFAULT 'x');"
        + insert500("t SELECT i, " + rows);
}

void restore()
{
    DatabaseBase().genericRestoreTable("t");
}

void update()
{
    DatabaseBase().genericUpdateTable("t");
}

void startFirst()
{
    UiConfig::getInstance();
    TableDictionary().initializeTable();
}

void writeSettings()
{
    TableDictionary dictionary;
    dictionary.setDictionaryValue("language", "german");
    dictionary.setDictionaryValue("newName", "newValue");
}

void clean()
{
    TableMessages().cleanEntries(350);
}

QStringList insertionsOf(const Files& files)
{
    RawDatabase database(files, RawDatabase::keyOf(files.first()));
    const QByteArrayList rows = database.run("SELECT id, name, value FROM dictionary ORDER BY id");
    QStringList insertions;
    for (const QByteArray& row : rows)
        insertions.append("INSERT INTO dictionary VALUES(" + row + ')');
    return insertions;
}

void runRecorded(const QString& name, const QString& log)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_PRELOAD", CRASH_RECORDER);
    environment.insert("RECORDED_FOLDER", databaseFolder);
    environment.insert("RECORDED_LOG", log);
    // The sanitizer's own wrappers come after the recorder's.
    environment.insert("ASAN_OPTIONS",
                       environment.value("ASAN_OPTIONS") + ":verify_asan_link_order=0");
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QCoreApplication::applicationFilePath(), {"--run", name});
    if (!program.waitForFinished() || program.exitCode() != 0)
        qFatal("%s did not work", qPrintable(name));
}

} // namespace

QString defaultsOfT()
{
    return makeT("hex('a default' || i * i), 'y'");
}

const std::vector<Operation>& operations()
{
    static const std::vector<Operation> all {
        {"restore", "", restore, {"BEGIN; DROP TABLE t;" + defaultsOfT() + "COMMIT"}},
        {"update",
         "DROP TABLE t; CREATE TABLE t (id INTEGER PRIMARY KEY);" + insert500("t SELECT i"),
         update,
         {"ALTER TABLE t ADD COLUMN a TEXT", "ALTER TABLE t ADD COLUMN b TEXT DEFAULT 'x'"}},
        {"update-missing", "DROP TABLE t", update, {"BEGIN;" + defaultsOfT() + "COMMIT"}},
        {"first-start", "DELETE FROM dictionary", startFirst, {}},
        {"settings",
         "",
         writeSettings,
         {"UPDATE dictionary SET value = 'german' WHERE name = 'language'",
          "INSERT INTO dictionary(name, value) VALUES ('newName', 'newValue')"}},
        // The vacuum that follows the removal moves every page and changes no content.
        {"clean",
         insert500("systemMessages SELECT i, 'IoT', 'Error', '', 'message ' || i"),
         clean,
         {"DELETE FROM systemMessages WHERE id <= 350"}},
    };
    return all;
}

const Operation& operationNamed(const QString& name)
{
    const auto found = std::find_if(operations().begin(), operations().end(),
                                    [&](const Operation& each) { return each.name == name; });
    if (found == operations().end())
        qFatal("no operation %s", qPrintable(name));
    return *found;
}

Recording record(const Operation& operation)
{
    static const Files fresh = readFolder(databaseFolder);
    writeFolder(databaseFolder, fresh);
    Dispenser::sql("BEGIN;" + makeT("hex('our own row' || i * 7), i") + operation.preparation
                   + ";COMMIT");
    Recording recording {readFolder(databaseFolder), {}, {}, operation.transactions};
    const QString logs = QStringLiteral("/tmp/recorded");
    writeFolder(logs, {});
    runRecorded(operation.name, logs + "/log");
    recording.steps = readLog(readFolder(logs).value("log"));
    recording.after = readFolder(databaseFolder);
    if (recording.transactions.isEmpty())
        recording.transactions = insertionsOf(recording.after);
    return recording;
}
