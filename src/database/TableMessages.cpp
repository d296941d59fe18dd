#include "database/TableMessages.h"

#include "database/SqlText.h"
#include "database/SystemMessage.h"

#include <QDateTime>

namespace {

QString tableName()
{
    return QStringLiteral("systemMessages");
}

// The condition of a page and the word ORDER, each text put in once and as it is.
QString condition(const QString& name, const QString& type)
{
    const bool anyName = name == QLatin1String("All");
    const bool anyType = type == QLatin1String("All");
    if (anyName && anyType)
        return QStringLiteral(" ORDER");
    if (anyType)
        return SqlText::fill(QStringLiteral(" where name='%1' ORDER"), name);
    if (anyName)
        return SqlText::fill(QStringLiteral(" where type='%1' ORDER"), type);
    return SqlText::fill(QStringLiteral(" where (name='%1' and type='%2')ORDER"), name, type);
}

} // namespace

TableMessages::TableMessages(QObject* parent) : DatabaseBase(parent) { }

bool TableMessages::insertSystemMessage(const QString& name, const QString& type,
                                        const QString& msg)
{
    return insertSystemMessage(name, type, msg, QDateTime::currentDateTime());
}

bool TableMessages::insertSystemMessage(const QString& name, const QString& type,
                                        const QString& msg, const QDateTime& date)
{
    return TableMessages().genericQuery(SqlText::fill(
        QStringLiteral("INSERT INTO '%1' (name, type, date, msg) VALUES ('%2','%3','%4','%5')"),
        tableName(), name, type, SystemMessage::toText(date), msg));
}

QVariant TableMessages::getSystemMessages(const int& limit, const int& offset, const QString& type,
                                          const QString& name, const QString& orderColumn,
                                          const QString& orderDirection)
{
    return genericGetMapList(SqlText::fill(
        QStringLiteral("SELECT type, name, date, msg FROM '%1'%2 BY %3 %4 LIMIT %5 OFFSET %6"),
        tableName(), condition(name, type), orderColumn, orderDirection, QString::number(limit),
        QString::number(offset)));
}

bool TableMessages::clearSystemMessages()
{
    return genericQuery(SqlText::fill(QStringLiteral("DELETE FROM %1"), tableName()));
}

int TableMessages::getNumberOfEntries()
{
    return genericGetColumn(
               SqlText::fill(QStringLiteral("SELECT count(id) as number FROM %1"), tableName()))
        .toInt();
}

bool TableMessages::cleanEntries(const int& count)
{
    const bool deleted = genericQuery(SqlText::fill(
        QStringLiteral("DELETE FROM %1 WHERE id IN (SELECT id FROM %1 order BY id ASC limit %2)"),
        tableName(), QString::number(count)));
    genericQuery(QStringLiteral("vacuum"));
    return deleted;
}

bool TableMessages::initializeTable()
{
    return genericTableExists(tableName()) || restoreTableDefaults();
}

bool TableMessages::restoreTableDefaults()
{
    return genericRestoreTable(tableName());
}
