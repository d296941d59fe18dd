#pragma once

#include "database/DatabaseBase.h"

#include <QString>

// The table "translations" of the shared database: the texts of the user interface by their English
// key, one column a language. The scene binds to lookUp(key) + languageBinder. Nothing is cached,
// so that a text edited in the database shows at the next look-up. Used on the GUI thread.
class TableTranslations : public DatabaseBase
{
    Q_OBJECT
    // Always empty. It announces every languageUpdate, so a binding that adds it to a text looks
    // the text up again.
    Q_PROPERTY(QString languageBinder READ languageBinder NOTIFY languageChanged)

public:
    // Reads the language and marks the row that holds the table's version as used.
    explicit TableTranslations(QObject* parent = nullptr);

    // The text of a key in the current language. The first look-up of a known key marks its row as
    // used; an unknown key is added, marked already, and so is, again and again, any key while the
    // language or the table is wrong. The key itself when there is no text for it or the database
    // cannot be read, as for a key with an apostrophe that is not doubled; never empty for a key
    // that is not. "KeyCloseDatabase" closes the connection, so that an installation can replace
    // the database file.
    Q_INVOKABLE QString lookUp(QString key);

    // Reads the setting "language" again, a column name of the table such as "english"; to be
    // called after the setting is stored. Anything but a plain name is an unknown language.
    Q_INVOKABLE void languageUpdate();

    // Replaces the table by the defaults'; false when it could not be made.
    Q_INVOKABLE bool restoreTableDefaults();
    // Restores the table when it is missing or its version is not the defaults'. False when the
    // defaults cannot be read; the table is then left as it is.
    bool initializeTable();

    QString languageBinder() const { return {}; }

signals:
    void languageChanged();

private:
    QString versionIn(const QString& schema);
    void addKey(const QString& key);
    void markUsed(const QString& key);

    QString m_language;
};
