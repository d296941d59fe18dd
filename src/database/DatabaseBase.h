#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

// Access to the platform's shared database, "/opt/Merivon/Database/merivon_database_enc.db", which
// other processes of the platform use at the same time. Base of every table class.
//
// Each thread has one connection, named after the thread, registered when the first object of this
// class is made on it. An object may be used from any thread, by one at a time; what it does goes
// through the calling thread's connection. Nothing throws: a failure is a neutral result and a line
// in the log. While another process holds the database locked, every operation waits, without
// limit.
class DatabaseBase : public QObject
{
    Q_OBJECT

public:
    // Makes sure that the database folder is there and the calling thread's connection registered.
    explicit DatabaseBase(QObject* parent = nullptr);
    // Closes the calling thread's connection, unless a statement or a maintenance operation
    // further up on this thread still needs it.
    ~DatabaseBase() override;

    // The calling thread's connection in Qt's registry: its native identifier cut to 32 bits, as a
    // signed decimal number.
    static QString connectionName();

    // Opens the connection if it is not open already, and gives it its key. True when it is open
    // afterwards. The key is given also after a failed opening; that it is the wrong one shows in
    // the statements that follow.
    bool openDatabase();
    // Closes the connection at once. True when it is still open afterwards, that is, on failure.
    bool closeDatabase();

    // The generic helpers run one SQL text on the open connection and close it afterwards, except
    // genericGetID, genericGetMapList and genericTableExists, which leave it open: the scene's
    // texts come through genericGetMapList, and it closes the connection itself, by looking up
    // "KeyCloseDatabase", before an installation replaces the database file. Nothing is bound or
    // escaped, here and in the tables: a text between apostrophes that holds a NUL or an apostrophe
    // that is not doubled makes its statement fail. A failed statement gives the neutral result and
    // two debug lines.

    // The first column of the first row, cut to 16 bits; -1 without a row.
    Q_INVOKABLE short genericGetID(QString sql = QString());
    // The first column of each row as an integer.
    Q_INVOKABLE QVariantList genericGetIDs(QString sql = QString());
    // The first column of the first row as a string; an invalid variant without a row.
    Q_INVOKABLE QVariant genericGetColumn(QString sql = QString());
    // The first column of each row, as the driver gives it.
    Q_INVOKABLE QVariantList genericGetColumnList(QString sql = QString());
    // Whether the statement was executed.
    Q_INVOKABLE bool genericQuery(QString sql = QString());
    // A QVariantList of rows, each row a QVariantList of its columns in column order, as the driver
    // gives them (no maps, whatever the name says). A failure is an empty list without debug lines.
    Q_INVOKABLE QVariant genericGetMapList(QString sql = QString());
    // The columns, as strings, of the table's first row of this id.
    Q_INVOKABLE QVariantList getRowAsList(QString table, ushort databaseID);
    // The columns, as strings, of all rows whose column keyName holds keyValue, or of all rows for
    // an empty keyName, one row after the other in one flat list.
    Q_INVOKABLE QVariantList getRowAsList(QString table, QString keyName,
                                          QString keyValue = QString());

    // The maintenance operations keep the shared database in line with the defaults database of the
    // current version, "/opt/Merivon/Versions/Merivon-current/Database/merivon_defaults.db". Each
    // holds the connection open from its first statement to its last, since closing it would end
    // the attachment, and closes it then; the two tests for existence leave it open.

    // Whether the shared database has the table; false also on failure.
    Q_INVOKABLE bool genericTableExists(QString table);
    // Whether the table has the column, by its exact name. Raises a warning message when not.
    Q_INVOKABLE bool genericColumnExists(QString table, QString column);
    // Adds one column; the definition is what follows its name, such as "INTEGER DEFAULT 0".
    Q_INVOKABLE bool genericAddColumn(QString table, QString column, QString definition);
    // Drops the table if it is there; false when the statement fails.
    Q_INVOKABLE bool genericDropTable(QString table);
    // Replaces the table by the defaults' definition and rows; its own rows are lost. False when
    // that failed: then the table is as it was, as also after the process died on the way. Only a
    // definition that cannot be carried out leaves no table.
    Q_INVOKABLE bool genericRestoreTable(QString table);
    // Adds the columns that the defaults have and the table lacks; restores a table that is missing
    // or cannot be aligned by adding alone. False when the defaults cannot be read, with the table
    // as it was, or when the restore or the last of the additions fails.
    Q_INVOKABLE bool genericUpdateTable(QString table);

    // When set, each opening, closing, preparing and executing writes its duration to the log.
    static bool _debug;

private:
    enum class Restored { Yes, No, Stopped };

    bool dropTable(const QString& table, const QString& qualifiedName);
    Restored restoreFromDefaults(const QString& table);
    Restored replaceTable(const QString& table, const QString& query, const QString& definition);
    bool alignTable(const QString& table, const QString& actual, const QString& expected);
};
