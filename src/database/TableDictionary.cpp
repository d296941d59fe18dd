#include "database/TableDictionary.h"

#include "database/SqlText.h"

#include <QDebug>

#include <array>

namespace {

struct Setting
{
    const char* name;
    const char* value;
};

// Some flags say "false" and others "0": each reader of a flag expects its own spelling.
constexpr std::array<Setting, 30> defaultSettings {{
    {"flavorSelectColor", "#bb88bbff"},
    {"flavorSelectBorderColor", "#bb6699dd"},
    {"setupCustomized", "false"},
    {"sleepModeEnabled", "false"},
    {"sleepStartTime", "00:00 AM"},
    {"sleepEndTime", "00:00 AM"},
    {"valveWaterPreTime", "150"},
    {"valveWaterPostTime", "300"},
    {"valveCarbWaterPostTime", "300"},
    {"waterEnabled", "1"},
    {"iceStyleImage", ""},
    {"iceStyleText", ""},
    {"slideShowDelay", "15"},
    {"iotErrorTime", "01-01-00 00:00:00"},
    {"soldOutLeft", "0"},
    {"soldOutRight", "0"},
    {"useSoldOutText", "1"},
    {"flavorComboLevel", "3"},
    {"plexoUrl", "http://"},
    {"plexoEnabled", "0"},
    {"showCalories", "false"},
    {"caloriesCupSize", "16"},
    {"SSID", "SSID"},
    {"wifiKey", "KEY"},
    {"wifiEnabled", "0"},
    {"config", "Generic"},
    {"brandButtonStyle", "coverflow"},
    {"rebootHour", "2"},
    {"lastRebootDay", "0"},
    {"oneTimeDatabaseUpdateLevel", "0"},
}};

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
    return genericGetColumn(SqlText::fill(QStringLiteral("SELECT value FROM %1 WHERE name = '%2'"),
                                          tableName(), name))
        .toString();
}

bool TableDictionary::contains(const QString& name)
{
    return genericGetColumn(
               SqlText::fill(QStringLiteral("SELECT count(*) FROM %1 WHERE name = '%2'"),
                             tableName(), name))
               .toInt()
        != 0;
}

bool TableDictionary::setDictionaryValue(QString name, QString value)
{
    const QString sql = contains(name)
        ? SqlText::fill(QStringLiteral("UPDATE %1 SET value='%2' WHERE name='%3'"), tableName(),
                        value, name)
        : SqlText::fill(QStringLiteral("INSERT INTO %1 VALUES(null, '%2', '%3')"), tableName(),
                        name, value);
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

bool TableDictionary::restoreTableDefaults()
{
    return genericRestoreTable(tableName());
}

QString TableDictionary::getDictionaryValue(QString name, QString defaultValue)
{
    const QVariantList values = genericGetColumnList(SqlText::fill(
        QStringLiteral("SELECT value FROM %1 WHERE name = '%2' LIMIT 1"), tableName(), name));
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

bool TableDictionary::initializeTable()
{
    if (!genericTableExists(tableName()))
        return genericRestoreTable(tableName());
    for (const Setting& setting : defaultSettings)
        addIfMissing(QString::fromLatin1(setting.name), QString::fromLatin1(setting.value));
    return true;
}

void TableDictionary::addIfMissing(const QString& name, const QString& value)
{
    const QString count = SqlText::fill(
        QStringLiteral("SELECT count(*) value FROM dictionary WHERE name='%1'"), name);
    if (genericGetColumn(count).toInt() != 0)
        return;
    qDebug() << name << "was missing from database, attempting to add during initialization";
    genericQuery(SqlText::fill(QStringLiteral("INSERT INTO dictionary VALUES(null, '%1', '%2')"),
                               name, value));
}
