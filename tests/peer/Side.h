#pragma once

#include <QDebug>
#include <QSqlDatabase>
#include <QSqlQuery>

// Values as Qt's debug stream writes them, on one line, with one kind of quotation marks.
template <typename... Values> QString toText(const Values&... values)
{
    QString text;
    (QDebug(&text) << qSetRealNumberPrecision(17) << ... << values);
    return text.simplified().replace('"', '\'');
}

// One of the two drivers that are compared: two connections to a new database, two queries on each.
struct Side
{
    // One Side of a driver at a time.
    Side(const QString& driver, const QString& file);

    // Puts new queries in the places of the old ones.
    void clear();

    // Makes one call on a query or its connection: the same for the same number, on every machine.
    // Gives the call in words, its answer, and all that the queries tell of themselves then.
    QStringList call(unsigned random);

    QSqlDatabase databases[2];
    QSqlQuery queries[4]; // of the connections in turn

private:
    QStringList state() const;
};
