#include "database/TableMessages.h"

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
        return QStringLiteral(" where name='%1' ORDER").arg(name);
    if (anyName)
        return QStringLiteral(" where type='%1' ORDER").arg(type);
    return QStringLiteral(" where (name='%1' and type='%2')ORDER").arg(name, type);
}

} // namespace

TableMessages::TableMessages(QObject* parent) : DatabaseBase(parent) { }

bool TableMessages::insertSystemMessage(const QString& name, const QString& type,
                                        const QString& msg)
{
    const QString date = QDateTime::currentDateTime().toString(QStringLiteral("dd-MM-yy hh:mm:ss"));
    return TableMessages().genericQuery(
        QStringLiteral("INSERT INTO '%1' (name, type, date, msg) VALUES ('%2','%3','%4','%5')")
            .arg(tableName(), name, type, date, msg));
}

QVariant TableMessages::getSystemMessages(const int& limit, const int& offset, const QString& type,
                                          const QString& name, const QString& orderColumn,
                                          const QString& orderDirection)
{
    return genericGetMapList(
        QStringLiteral("SELECT type, name, date, msg FROM '%1'").arg(tableName())
        + condition(name, type)
        + QStringLiteral(" BY %1 %2 LIMIT %3 OFFSET %4")
              .arg(orderColumn, orderDirection, QString::number(limit), QString::number(offset)));
}

bool TableMessages::clearSystemMessages()
{
    return genericQuery(QStringLiteral("DELETE FROM %1").arg(tableName()));
}

int TableMessages::getNumberOfEntries()
{
    return genericGetColumn(QStringLiteral("SELECT count(id) as number FROM %1").arg(tableName()))
        .toInt();
}

bool TableMessages::cleanEntries(const int& count)
{
    const bool deleted = genericQuery(
        QStringLiteral("DELETE FROM %1 WHERE id IN (SELECT id FROM %1 order BY id ASC limit %2)")
            .arg(tableName(), QString::number(count)));
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
