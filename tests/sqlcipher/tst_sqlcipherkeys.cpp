#include "Dispenser.h"
#include "ExternalLock.h"
#include "SqlTest.h"

#include <QCoreApplication>
#include <QtPlugin>

#include <atomic>
#include <thread>
#include <vector>

Q_IMPORT_PLUGIN(SqlCipherPlugin)

// The driver's keys and locks, held against the `sqlcipher` program.
class TestSqlCipherKeys : public QObject
{
    Q_OBJECT

    TestFiles m_files;

    QString newDatabase(const QString& content)
    {
        const QString file = m_files.next();
        Dispenser::sql(QStringLiteral("CREATE TABLE t AS SELECT '%1' AS v").arg(content), file);
        return file;
    }

private slots:
    void aFileInAnothersPlaceIsReadThoughItsSaltIsAnother()
    {
        const QString file = newDatabase("old");
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), QString("old"));
        QVERIFY(QFile::remove(file) && QFile::rename(newDatabase("new"), file));
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), QString("new"));
    }

    void aKeyCanBeGivenAgainAfterALockAndNoOtherAfterARead()
    {
        const QString file = newDatabase("x");
        TestConnection database(file, "");
        QSqlQuery query(database);
        {
            const ExternalLock lock(file);
            QVERIFY(!query.exec("PRAGMA key='d8pantry%'"));
            QCOMPARE(query.lastError().databaseText(), QString("database is locked"));
        }
        QVERIFY_SQL(query, query.exec("PRAGMA key='d8pantry%'"));
        QCOMPARE(database.value("SELECT v FROM t"), QString("x"));

        // SQLCipher would write under the other key what it has read under this one.
        QVERIFY(!query.exec("PRAGMA key='other'"));
        QVERIFY_SQL(query, query.exec("UPDATE t SET v = 'y'"));
        QCOMPARE(Dispenser::sql("SELECT v FROM t", file), QStringList("y"));
    }

    void noLockIsLostWhileThreadsKeyAndClose()
    {
        // One thread holds a write transaction open while others open, key, attach, read and close
        // the same file; another program must be kept out of it all the time.
        const QString file = newDatabase("0");
        const QString attach = "ATTACH '" + newDatabase("0") + "' AS a";
        std::atomic<bool> stop {false};
        std::atomic<int> reads {0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                while (!stop) {
                    TestConnection database(file);
                    QSqlQuery(database).exec(attach);
                    reads += database.value("SELECT v FROM t") == "0" ? 1 : 0;
                }
            });
        }
        TestConnection writer(file);
        QSqlQuery query(writer);
        const bool began = query.exec("BEGIN IMMEDIATE") && query.exec("UPDATE t SET v = 'mine'");
        int keptOut = 0;
        for (int attempt = 0; attempt < 20; ++attempt) {
            QProcess intruder;
            intruder.start("sqlcipher", {file});
            intruder.write("PRAGMA key='d8pantry%'; UPDATE t SET v = 'theirs';\n");
            intruder.closeWriteChannel();
            intruder.waitForFinished();
            keptOut += intruder.readAllStandardError().contains("database is locked") ? 1 : 0;
        }
        stop = true;
        for (std::thread& thread : threads)
            thread.join();
        QVERIFY(began && reads > 20);
        QCOMPARE(keptOut, 20);
        QVERIFY_SQL(query, query.exec("ROLLBACK"));
        QCOMPARE(Dispenser::sql("PRAGMA integrity_check; SELECT v FROM t", file),
                 QStringList({"ok", "0"}));
    }
};

DISPENSER_TEST_MAIN(TestSqlCipherKeys, QCoreApplication)
#include "tst_sqlcipherkeys.moc"
