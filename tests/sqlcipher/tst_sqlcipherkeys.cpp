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
        Dispenser::sql(
            QStringLiteral("CREATE TABLE t (v TEXT); INSERT INTO t VALUES ('%1')").arg(content),
            file);
        return file;
    }

private slots:
    void filesAreReadByTheOtherProgramAndTheReverse()
    {
        const QString theirs = newDatabase("d\u00e9j\u00e0 \U0001F964");
        QCOMPARE(TestConnection(theirs).value("SELECT v FROM t"),
                 QString("d\u00e9j\u00e0 \U0001F964"));

        const QString ours = m_files.next();
        {
            TestConnection database(ours);
            QSqlQuery query(database);
            QVERIFY_SQL(query, query.exec("CREATE TABLE t (v)"));
            QVERIFY_SQL(query, query.exec("INSERT INTO t VALUES ('from here')"));
        }
        QCOMPARE(Dispenser::sql("SELECT v FROM t", ours), QStringList("from here"));
    }

    void whatCannotBeReadSaysSo()
    {
        const QString wrongKey = "file is encrypted or is not a database";
        const QString file = newDatabase("x");
        TestConnection database(file, "other");
        QCOMPARE(database.value("SELECT v FROM t"), wrongKey);
        QCOMPARE(TestConnection(file, "").value("SELECT v FROM t"), wrongKey);
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), QString("x"));

        QFile::resize(file, 700);
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), wrongKey);
        Dispenser::writeFile(file, QByteArray(5000, 'x'));
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), wrongKey);
        Dispenser::writeFile(file, "");
        QCOMPARE(TestConnection(file).value("SELECT count(*) FROM sqlite_master"), QString("0"));
    }

    void aFileReplacedUnderItsNameOpensWithItsOwnSalt()
    {
        const QString file = newDatabase("old");
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), QString("old"));
        const QString other = newDatabase("new");
        QFile::remove(file);
        QVERIFY(QFile::rename(other, file));
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), QString("new"));
    }

    void aFileOfOtherParametersStillTakesThePassPhrase()
    {
        const QString file = m_files.next();
        Dispenser::sql("PRAGMA kdf_iter=4000; CREATE TABLE t AS SELECT 'few rounds' AS v", file);
        TestConnection database(file);
        QSqlQuery(database).exec("PRAGMA kdf_iter=4000");
        QCOMPARE(database.value("SELECT v FROM t"), QString("few rounds"));
    }

    void anAttachedFileGetsTheConnectionsPassPhraseAndItsOwnSalt()
    {
        const QString file = newDatabase("main");
        const QString attached = newDatabase("attached");
        TestConnection database(file);
        QSqlQuery query(database);
        // The key statement right before, with nothing read since, is what breaks it elsewhere.
        QVERIFY_SQL(query, query.exec("PRAGMA key='d8pantry%'"));
        QVERIFY_SQL(query, query.exec(QStringLiteral("ATTACH DATABASE '%1' AS a").arg(attached)));
        QCOMPARE(database.value("SELECT v FROM a.t"), QString("attached"));
        QCOMPARE(database.value("SELECT v FROM main.t"), QString("main"));
        QVERIFY_SQL(query, query.exec("DETACH a"));

        Dispenser::writeFile(attached, QByteArray(5000, 'x'));
        QVERIFY(!query.exec(QStringLiteral("ATTACH DATABASE '%1' AS a").arg(attached)));
        QCOMPARE(database.value("SELECT v FROM t"), QString("main"));
    }

    void aLockIsToldAsOneAndTheKeyIsKept()
    {
        const QString file = newDatabase("x");
        ExternalLock lock(file);
        TestConnection database(file, "");
        QSqlQuery query(database);
        QVERIFY(!query.exec("PRAGMA key='d8pantry%'"));
        QCOMPARE(query.lastError().databaseText(), QString("database is locked"));
        lock.release();
        QVERIFY_SQL(query, query.exec("PRAGMA key='d8pantry%'"));
        QCOMPARE(database.value("SELECT v FROM t"), QString("x"));
    }

    void noLockIsLostWhileThreadsKeyAndClose()
    {
        // One thread holds a write transaction open while others open, key, attach, read and close
        // the same file; another program must be kept out of it all the time.
        const QString file = newDatabase("0");
        const QString attached = newDatabase("0");
        std::atomic<bool> stop {false};
        std::atomic<int> reads {0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                while (!stop) {
                    TestConnection database(file);
                    QSqlQuery query(database);
                    query.exec(QStringLiteral("ATTACH DATABASE '%1' AS a").arg(attached));
                    if (database.value("SELECT v FROM t") == "0")
                        ++reads;
                }
            });
        }
        {
            TestConnection writer(file);
            QSqlQuery query(writer);
            QVERIFY_SQL(query, query.exec("BEGIN IMMEDIATE"));
            QVERIFY_SQL(query, query.exec("UPDATE t SET v = 'mine'"));
            for (int attempt = 0; attempt < 20; ++attempt) {
                QProcess intruder;
                intruder.start("sqlcipher", {file});
                intruder.write("PRAGMA key='d8pantry%'; UPDATE t SET v = 'theirs';\n");
                intruder.closeWriteChannel();
                QVERIFY(intruder.waitForFinished());
                QVERIFY(intruder.readAllStandardError().contains("database is locked"));
            }
            QVERIFY_SQL(query, query.exec("ROLLBACK"));
        }
        stop = true;
        for (std::thread& thread : threads)
            thread.join();
        QVERIFY(reads > 20);
        QCOMPARE(Dispenser::sql("PRAGMA integrity_check; SELECT v FROM t", file),
                 QStringList({"ok", "0"}));
    }
};

DISPENSER_TEST_MAIN(TestSqlCipherKeys, QCoreApplication)
#include "tst_sqlcipherkeys.moc"
