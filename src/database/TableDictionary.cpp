#include "database/TableDictionary.h"

#include <QDebug>

namespace {

QString tableName()
{
    return QStringLiteral("dictionary");
}

QString toText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

TableDictionary::TableDictionary(QObject* parent) : DatabaseBase(parent) { }

QString TableDictionary::getDictionaryValue(QString name)
{
    return genericGetColumn(
               QStringLiteral("SELECT value FROM %1 WHERE name = '%2'").arg(tableName(), name))
        .toString();
}

bool TableDictionary::setDictionaryValue(QString name, QString value)
{
    const int rows
        = genericGetColumn(
              QStringLiteral("SELECT count(*) FROM %1 WHERE name = '%2'").arg(tableName(), name))
              .toInt();
    const QString sql = rows != 0
        ? QStringLiteral("UPDATE %1 SET value='%2' WHERE name='%3'").arg(tableName(), value, name)
        : QStringLiteral("INSERT INTO %1 VALUES(null, '%2', '%3')").arg(tableName(), name, value);
    const bool stored = genericQuery(sql);
    if (!stored) {
        // "inserting" for an update as well: the service pages know these words.
        qDebug() << "Error:"
                 << "setDictionaryValue"
                 << QStringLiteral("error inserting '%1' in %2").arg(name, tableName());
    }
    return stored;
}

bool TableDictionary::setDictionaryValue(QString name, const char* value)
{
    return setDictionaryValue(name, QString(value));
}

bool TableDictionary::setDictionaryValue(QString name, bool value)
{
    return setDictionaryValue(name, toText(value));
}

bool TableDictionary::setDictionaryValue(QString name, int value)
{
    return setDictionaryValue(name, QString::number(value, 10));
}

QString TableDictionary::getDictionaryValue(QString name, QString defaultValue)
{
    const QVariantList values = genericGetColumnList(
        QStringLiteral("SELECT value FROM %1 WHERE name = '%2' LIMIT 1").arg(tableName(), name));
    if (!values.isEmpty())
        return values.first().toString();
    setDictionaryValue(name, defaultValue);
    return defaultValue;
}

QString TableDictionary::getDictionaryValue(QString name, const char* defaultValue)
{
    return getDictionaryValue(name, QString(defaultValue));
}

bool TableDictionary::getDictionaryValue(QString name, bool defaultValue)
{
    return getDictionaryValue(name, toText(defaultValue)).toLower() == QLatin1String("true");
}

int TableDictionary::getDictionaryValue(QString name, int defaultValue)
{
    return getDictionaryValue(name, QString::number(defaultValue, 10)).toInt(nullptr, 10);
}
