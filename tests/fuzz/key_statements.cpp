// A statement: what the driver takes it for, against what SQLite's own parser takes it for.

#include "Fuzz.h"
#include "sqlcipher/KeyStatements.h"

#include <QVector>

#include <sqlite3.h>

namespace {

struct Seen
{
    int action = 0;
    QByteArray name; // of a pragma, or the attached file
    QByteArray value;
    QByteArray schema;
};

// Passes over pragmas and attachments, so that nothing is done.
int note(void* seen, int action, const char* name, const char* value, const char* schema,
         const char*)
{
    if (action != SQLITE_PRAGMA && action != SQLITE_ATTACH)
        return SQLITE_OK;
    static_cast<QVector<Seen>*>(seen)->append({action, name, value, schema});
    return SQLITE_IGNORE;
}

// The pragmas and attachments of the statements up to the first that is none.
QVector<Seen> seenBySqlite(const QByteArray& sql)
{
    static sqlite3* database = nullptr;
    HOLDS(database || sqlite3_open(":memory:", &database) == SQLITE_OK, sql);
    QVector<Seen> seen;
    sqlite3_set_authorizer(database, note, &seen);
    const char* rest = sql.constData();
    int result = SQLITE_OK;
    while (*rest != '\0' && result == SQLITE_OK) {
        sqlite3_stmt* statement = nullptr;
        result = sqlite3_prepare_v2(database, rest, -1, &statement, &rest);
        sqlite3_finalize(statement);
    }
    return seen;
}

} // namespace

void tryInput(const QByteArray& input)
{
    const QString sql = textOf(input);
    if (sql.contains(QChar::Null))
        return; // refused before
    const QVector<Seen> seen = seenBySqlite(sql.toUtf8());
    const Seen first = seen.value(0);
    const QByteArray pragma = first.name.toLower();
    const bool ofMain
        = first.action == SQLITE_PRAGMA && (first.schema.isEmpty() || first.schema == "main");
    const bool givesKey = ofMain && !first.value.isNull()
        && QByteArrayList {"key", "rekey", "hexkey", "hexrekey"}.contains(pragma);
    HOLDS(!givesKey || KeyStatements::givesKey(sql), sql);
    const bool setsParameter = ofMain
        && (pragma.startsWith("cipher") || pragma.startsWith("kdf") || pragma.startsWith("fast"));
    HOLDS(!setsParameter || KeyStatements::setsParameter(sql), sql);
    if (const auto passPhrase = KeyStatements::passPhraseOf(sql))
        HOLDS(seen.size() == 1 && givesKey && pragma == "key" && first.value == *passPhrase,
              sql << *passPhrase << first.name << first.value);
    // A schema named by a keyword, which SQLite refuses, is taken up.
    if (const auto attachment = KeyStatements::attachmentOf(sql); attachment && !seen.isEmpty())
        HOLDS(seen.size() == 1 && first.action == SQLITE_ATTACH && first.name == attachment->file,
              sql << attachment->file << first.name);
}
