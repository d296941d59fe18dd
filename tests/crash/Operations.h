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
    // What it commits, one transaction after the other, as SQL of our own; none when it stores
    // settings one by one in an empty dictionary, whatever they are.
    QStringList transactions;
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
    {"restore",
     "",
     [] { DatabaseBase().genericRestoreTable("t"); },
     {"BEGIN; DROP TABLE t;" + defaultsOfT + "COMMIT"}},
    {"update",
     "DROP TABLE t; CREATE TABLE t (id INTEGER PRIMARY KEY);" + insert500("t SELECT i"),
     [] { DatabaseBase().genericUpdateTable("t"); },
     {"ALTER TABLE t ADD COLUMN a TEXT", "ALTER TABLE t ADD COLUMN b TEXT DEFAULT 'x'"}},
    {"update-missing",
     "DROP TABLE t",
     [] { DatabaseBase().genericUpdateTable("t"); },
     {"BEGIN;" + defaultsOfT + "COMMIT"}},
    {"first-start",
     "DELETE FROM dictionary",
     [] {
         UiConfig::getInstance();
         TableDictionary().initializeTable();
     },
     {}},
    {"settings",
     "",
     [] {
         TableDictionary().setDictionaryValue("language", "german");
         TableDictionary().setDictionaryValue("newName", "newValue");
     },
     {"UPDATE dictionary SET value = 'german' WHERE name = 'language'",
      "INSERT INTO dictionary(name, value) VALUES ('newName', 'newValue')"}},
    // The vacuum that follows the removal moves every page and changes no content.
    {"clean",
     insert500("systemMessages SELECT i, 'IoT', 'Error', '', 'message ' || i"),
     [] { TableMessages().cleanEntries(350); },
     {"DELETE FROM systemMessages WHERE id <= 350"}},
};
