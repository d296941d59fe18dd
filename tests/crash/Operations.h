#pragma once

#include "config/UiConfig.h"
#include "database/TableDictionary.h"
#include "database/TableMessages.h"

// An operation on the shared database whose crash points are tried.
struct Operation
{
    const char* name;
    QString preparation; // SQL, on a fresh shared database with ours of table t
    void (*run)();
    int transactions; // that it commits
    QString equal; // SQL of our own that comes to the same, if there is any
};
Q_DECLARE_METATYPE(const Operation*)

inline QString insert500(const QString& tableAndValuesOfI)
{
    return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 500) INSERT INTO "
        + tableAndValuesOfI + " FROM n;";
}

inline QString makeT(const QString& values)
{
    return "CREATE TABLE t (id INTEGER PRIMARY KEY, a TEXT, b TEXT DEFAULT 'x');"
        + insert500("t SELECT i, " + values);
}

inline const QString oursOfT = makeT("hex('our own row' || i * 7), i");
inline const QString defaultsOfT = makeT("hex('a default' || i * i), 'y'");

inline const Operation operations[] = {
    {"restore", "", [] { DatabaseBase().genericRestoreTable("t"); }, 1,
     "DROP TABLE t;" + defaultsOfT},
    {"update", "DROP TABLE t; CREATE TABLE t (id INTEGER PRIMARY KEY);" + insert500("t SELECT i"),
     [] { DatabaseBase().genericUpdateTable("t"); }, 2,
     "ALTER TABLE t ADD COLUMN a TEXT; ALTER TABLE t ADD COLUMN b TEXT DEFAULT 'x'"},
    {"update-missing", "DROP TABLE t", [] { DatabaseBase().genericUpdateTable("t"); }, 1,
     defaultsOfT},
    {"first-start", "DELETE FROM dictionary",
     [] {
         UiConfig::getInstance();
         TableDictionary().initializeTable();
     },
     46, // one for each setting
     ""},
    {"settings", "",
     [] {
         TableDictionary().setDictionaryValue("language", "german");
         TableDictionary().setDictionaryValue("newName", "newValue");
     },
     2,
     "UPDATE dictionary SET value = 'german' WHERE name = 'language';"
     "INSERT INTO dictionary(name, value) VALUES ('newName', 'newValue')"},
    // The vacuum that follows the removal moves every page and changes no content.
    {"clean", insert500("systemMessages SELECT i, 'IoT', 'Error', '', 'message ' || i"),
     [] { TableMessages().cleanEntries(350); }, 1, "DELETE FROM systemMessages WHERE id <= 350"},
};
