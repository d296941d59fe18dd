#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

// QVERIFY for SQL: a failure shows the engine's own words.
#define QVERIFY_SQL(object, expression)                                                            \
    QVERIFY2((expression), qPrintable((object).lastError().text()))

// Paths for new database files, gone with the object.
class TestFiles
{
public:
    QString next() { return m_folder.filePath(QString::number(++m_count)); }

private:
    QTemporaryDir m_folder;
    int m_count = 0;
};

// A connection of a name of its own through the updater's driver, keyed with a pass phrase unless
// that is empty, removed at the end of its scope.
class TestConnection
{
public:
    explicit TestConnection(const QString& file, const QString& passPhrase = "d8pantry%")
        : m_name(QUuid::createUuid().toString())
    {
        m_database = QSqlDatabase::addDatabase("QSQLCIPHER", m_name);
        m_database.setDatabaseName(file);
        m_database.open();
        if (!passPhrase.isEmpty())
            QSqlQuery(m_database).exec(QStringLiteral("PRAGMA key='%1'").arg(passPhrase));
    }

    ~TestConnection()
    {
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }

    Q_DISABLE_COPY_MOVE(TestConnection)

    operator QSqlDatabase&() { return m_database; }
    QSqlDatabase* operator->() { return &m_database; }

    // The first column of the first row as a text; the error's text when there is none.
    QString value(const QString& sql)
    {
        QSqlQuery query(m_database);
        if (query.exec(sql) && query.next())
            return query.value(0).toString();
        return query.lastError().databaseText();
    }

private:
    QString m_name;
    QSqlDatabase m_database;
};
