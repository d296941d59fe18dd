#pragma once

#include "database/DatabaseBase.h"

class QDateTime;

// The table "systemMessages" of the shared database, columns id, name (the service), type, date
// ("dd-MM-yy hh:mm:ss", local time of insertion) and msg: what the platform's service pages list.
class TableMessages : public DatabaseBase
{
    Q_OBJECT

public:
    explicit TableMessages(QObject* parent = nullptr);

    // Inserts one row, dated now or with a local time. False when the statement fails: nothing is
    // escaped, so a message with an apostrophe that is not doubled is not stored.
    static bool insertSystemMessage(const QString& name, const QString& type, const QString& msg);
    static bool insertSystemMessage(const QString& name, const QString& type, const QString& msg,
                                    const QDateTime& date);

    // A page of at most limit rows (all for a negative one) from row offset on, as a QVariantList,
    // each row a QVariantList of type, name, date and msg. The filter "All" takes every type or
    // name; the order column and direction ("ASC", "DESC") are put into the statement as they are.
    // An empty list on failure.
    QVariant getSystemMessages(const int& limit, const int& offset, const QString& type,
                               const QString& name, const QString& orderColumn,
                               const QString& orderDirection);

    // Deletes all rows; whether the statement succeeded.
    bool clearSystemMessages();
    // The number of rows; 0 on failure.
    int getNumberOfEntries();
    // Deletes the count oldest rows, all for a negative count, and gives their space back; whether
    // the deletion succeeded.
    bool cleanEntries(const int& count);

    // Makes the table from the defaults when it is missing; whether it is there afterwards.
    bool initializeTable();
    // Replaces the table by the defaults'; its rows are lost.
    Q_INVOKABLE bool restoreTableDefaults();
};
