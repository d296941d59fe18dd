#pragma once

#include "database/DatabaseBase.h"

// The table "dictionary" of the shared database, columns id, name and value: the platform's
// settings, one text each. Booleans are stored as "true" and "false", integers as decimal text.
// Keeps nothing: make one on the stack for each use.
class TableDictionary : public DatabaseBase
{
    Q_OBJECT

public:
    explicit TableDictionary(QObject* parent = nullptr);

    // The value of a name; empty when the name or the database is not there.
    Q_INVOKABLE QString getDictionaryValue(QString name);

    // Whether the name is there; false also for a database that cannot be read.
    bool contains(const QString& name);

    // Stores a value under a name, in every row of that name or in a new row. False, with a line
    // in the log, when the statement fails: nothing is escaped, so an apostrophe that is not
    // doubled makes it fail, in the name or the value.
    Q_INVOKABLE bool setDictionaryValue(QString name, QString value);
    Q_INVOKABLE bool setDictionaryValue(QString name, const char* value);
    Q_INVOKABLE bool setDictionaryValue(QString name, bool value);
    Q_INVOKABLE bool setDictionaryValue(QString name, int value);

    // Replaces the table by the defaults'; false when it could not be made.
    Q_INVOKABLE bool restoreTableDefaults();

    // The value of a name. When the name is not there, stores the default and gives it. A boolean
    // is true for the text "true" in any letter case; an integer is 0 for a text that is none.
    Q_INVOKABLE QString getDictionaryValue(QString name, QString defaultValue);
    Q_INVOKABLE QString getDictionaryValue(QString name, const char* defaultValue);
    Q_INVOKABLE bool getDictionaryValue(QString name, bool defaultValue);
    Q_INVOKABLE int getDictionaryValue(QString name, int defaultValue);

    // Makes the table from the defaults database when it is missing; otherwise adds the settings
    // that it lacks, with built-in values, and changes no other. Whether the table is there.
    bool initializeTable();

private:
    void addIfMissing(const QString& name, const QString& value);
};
