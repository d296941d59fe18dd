#include "database/TableTranslations.h"

#include "database/AttachedDefaults.h"
#include "database/OpenConnection.h"
#include "database/SqlText.h"
#include "database/SystemMessage.h"
#include "database/TableDictionary.h"

#include <QDebug>

namespace {

QString tableName()
{
    return QStringLiteral("translations");
}

} // namespace

TableTranslations::TableTranslations(QObject* parent) : DatabaseBase(parent)
{
    languageUpdate();
    // The text is not wanted: the look-up marks the version's row as used, or adds it.
    lookUp(QStringLiteral("_tableVersion"));
}

QString TableTranslations::lookUp(QString key)
{
    const QVariantList rows
        = genericGetMapList(SqlText::fill(QStringLiteral("SELECT %1,used FROM %2 WHERE key='%3'"),
                                          SqlText::column(m_language), tableName(), key))
              .toList();
    if (key == QLatin1String("KeyCloseDatabase")) {
        closeDatabase();
        return key;
    }
    if (rows.isEmpty()) {
        addKey(key);
        return key;
    }
    const QVariantList row = rows.first().toList();
    if (row.size() != 2) {
        qDebug() << "ERROR: translations query returned the wrong number of columns" << row;
        return key;
    }
    if (!row.at(1).toBool())
        markUsed(key);
    const QString text = row.at(0).toString();
    return text.isEmpty() ? key : text;
}

void TableTranslations::languageUpdate()
{
    m_language = TableDictionary().getDictionaryValue(QStringLiteral("language"));
    emit languageChanged();
}

void TableTranslations::addKey(const QString& key)
{
    qDebug() << "the translation for '" << key
             << "' was added automatically to the translations table";
    genericQuery(SqlText::fill(
        QStringLiteral("INSERT INTO %1 VALUES(NULL, '%2', '%3', '%4', '%5', '%6', 1)"), tableName(),
        key, key, QLatin1String("(F)") + key, QLatin1String("(G)") + key,
        QLatin1String("(S)") + key));
}

void TableTranslations::markUsed(const QString& key)
{
    qDebug() << "setting used for: " << key;
    if (!genericQuery(SqlText::fill(QStringLiteral("UPDATE %1 SET used='1' WHERE key='%2'"),
                                    tableName(), key)))
        qDebug() << "translations failed to set 'used'";
}

bool TableTranslations::restoreTableDefaults()
{
    return genericRestoreTable(tableName());
}

bool TableTranslations::initializeTable()
{
    const OpenConnection connection;
    if (!genericTableExists(tableName())) {
        qDebug() << "the translation table did not exist";
        return restoreTableDefaults();
    }
    const QString version = versionIn(QString());
    QString defaultsVersion;
    {
        const AttachedDefaults defaults(*this);
        if (!defaults.areThere()) {
            qDebug() << "unable to attach default database";
            qDebug() << AttachedDefaults::statement();
            return false;
        }
        defaultsVersion = versionIn(QStringLiteral("defaults."));
    }
    if (version == defaultsVersion)
        return true;
    qDebug() << "the translation version didn't match default database";
    SystemMessage::post(SystemMessage::Type::Warning,
                        QStringLiteral("Database translation version mismatch"));
    return restoreTableDefaults();
}

QString TableTranslations::versionIn(const QString& schema)
{
    return genericGetColumn(
               SqlText::fill(QStringLiteral("SELECT english FROM %1 WHERE key='_tableVersion'"),
                             schema + tableName()))
        .toString();
}
