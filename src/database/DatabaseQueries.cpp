#include "database/DatabaseBase.h"

#include "database/OpenConnection.h"
#include "database/SqlQuery.h"
#include "database/SqlText.h"

#include <QSqlRecord>

namespace {

bool run(SqlQuery& query, const QString& sql)
{
    query.prepare(sql);
    return query.exec();
}

void logFailure(const char* helper, const QString& what, SqlQuery& query)
{
    qDebug() << "Error:" << helper << SqlText::shown(what);
    qDebug() << "!!! query failed: " << query->lastError() << " !!!";
}

// Runs the SQL and hands every row to readRow.
template <typename ReadRow> void forEachRow(const char* helper, const QString& sql, ReadRow readRow)
{
    SqlQuery query;
    if (!run(query, sql)) {
        logFailure(helper, sql + QLatin1String(" resulted in error"), query);
        return;
    }
    while (query->next())
        readRow(query);
}

qint16 countRows(const char* helper, const QString& sql)
{
    qint16 rows = 0;
    forEachRow(helper, sql, [&](SqlQuery&) { ++rows; });
    return rows;
}

qint16 countColumns(const char* helper, const QString& table)
{
    return countRows(helper, QLatin1String("PRAGMA table_info(") + table + QLatin1Char(')'));
}

void appendAsStrings(QVariantList& list, SqlQuery& query, qint16 columns)
{
    for (qint16 column = 0; column < columns; ++column)
        list.append(query->value(column).toString());
}

} // namespace

short DatabaseBase::genericGetID(QString sql)
{
    openDatabase();
    short id = -1;
    bool first = true;
    forEachRow("genericGetID", sql, [&](SqlQuery& query) {
        if (first)
            id = static_cast<short>(query->value(0).toInt());
        first = false;
    });
    return id; // the connection stays open, see the header
}

QVariantList DatabaseBase::genericGetIDs(QString sql)
{
    const OpenConnection connection;
    QVariantList ids;
    forEachRow("genericGetIDs", sql, [&](SqlQuery& query) { ids.append(query->value(0).toInt()); });
    return ids;
}

QVariant DatabaseBase::genericGetColumn(QString sql)
{
    const OpenConnection connection;
    QVariant column;
    forEachRow("genericGetColumn", sql, [&](SqlQuery& query) {
        if (!column.isValid())
            column = query->value(0).toString();
    });
    return column;
}

QVariantList DatabaseBase::genericGetColumnList(QString sql)
{
    const OpenConnection connection;
    QVariantList columns;
    forEachRow("genericGetColumnList", sql,
               [&](SqlQuery& query) { columns.append(query->value(0)); });
    return columns;
}

bool DatabaseBase::genericQuery(QString sql)
{
    const OpenConnection connection;
    SqlQuery query;
    const bool executed = run(query, sql);
    if (!executed)
        logFailure("genericQuery", QLatin1String("while executing query: ") + sql, query);
    return executed;
}

QVariant DatabaseBase::genericGetMapList(QString sql)
{
    openDatabase();
    QVariantList rows;
    SqlQuery query;
    if (!run(query, sql) || query->lastError().isValid())
        return rows;
    const int columns = query->record().count();
    while (query->next()) {
        QVariantList row;
        for (int column = 0; column < columns; ++column)
            row.append(query->value(column));
        rows.append(QVariant(row));
    }
    return rows; // the connection stays open, see the header
}

QVariantList DatabaseBase::getRowAsList(QString table, ushort databaseID)
{
    const OpenConnection connection;
    const qint16 columns = countColumns("getRowAsList", table);
    QVariantList values;
    const QString sql = QLatin1String("SELECT * FROM ") + table + QLatin1String(" WHERE id='")
        + QString::number(databaseID) + QLatin1Char('\'');
    forEachRow("getRowAsList", sql, [&](SqlQuery& query) {
        if (values.isEmpty())
            appendAsStrings(values, query, columns);
    });
    return values;
}

QVariantList DatabaseBase::getRowAsList(QString table, QString keyName, QString keyValue)
{
    const OpenConnection connection;
    const qint16 columns = countColumns("getRowAsList", table);
    const QString sql = keyName.isEmpty()
        ? SqlText::fill(QStringLiteral("SELECT * FROM %1"), table)
        : SqlText::fill(QStringLiteral("SELECT * FROM %1 WHERE %2 = '%3'"), table, keyName,
                        keyValue);
    QVariantList values;
    forEachRow("getRowAsList", sql,
               [&](SqlQuery& query) { appendAsStrings(values, query, columns); });
    return values;
}
