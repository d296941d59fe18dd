#include "Dispenser.h"
#include "ExternalLock.h"
#include "LogCapture.h"

#include "app/Logger.h"
#include "app/MessageHandler.h"
#include "database/DatabaseBase.h"
#include "database/TableDictionary.h"
#include "database/TableMessages.h"
#include "database/TableTranslations.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <atomic>
#include <thread>

// Tables kept in line with the defaults database, made here as another program makes it.
class TestMaintenance : public QObject
{
    Q_OBJECT

    static void makeDefaults(const QString& sql)
    {
        QFile::remove(Dispenser::defaultsDatabase);
        Dispenser::sql(sql, Dispenser::defaultsDatabase);
    }

    static QString defaultsTable()
    {
        return "CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT, used INTEGER);"
               "INSERT INTO t VALUES (1, 'default', 0), (2, 'other', 1);";
    }

    static QString rows() { return Dispenser::sql("SELECT * FROM t").join(' '); }

private slots:
    void initTestCase()
    {
        const QString copy = Dispenser::defaultsDatabase + ".original";
        QVERIFY(QFile::copy(Dispenser::defaultsDatabase, copy));
    }

    void init()
    {
        Dispenser::sql("DROP TABLE IF EXISTS t");
        makeDefaults(defaultsTable());
    }

    void aTableIsAlignedWithTheDefaults_data()
    {
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("after");

        const QString restored = "1|default|0 2|other|1";
        QTest::newRow("missing") << "" << restored;
        QTest::newRow("equal") << "CREATE TABLE t (id INTEGER PRIMARY KEY , name TEXT,used INTEGER)"
                               << "7||";
        QTest::newRow("columns missing") << "CREATE TABLE t (id INTEGER PRIMARY KEY)"
                                         << "7||";
        QTest::newRow("other type")
            << "CREATE TABLE t (id INTEGER PRIMARY KEY, name VARCHAR, used INTEGER)" << restored;
        QTest::newRow("lower case")
            << "create table t (id integer primary key, name text, used integer)" << restored;
        QTest::newRow("quoted names, a default with comma and parenthesis")
            << "CREATE TABLE \"t\" (\"id\" INTEGER, name TEXT DEFAULT 'a,(b)', used INTEGER)"
            << restored;
    }

    void aTableIsAlignedWithTheDefaults()
    {
        QFETCH(QString, current);
        Dispenser::sql(current);
        if (!current.isEmpty())
            Dispenser::sql("INSERT INTO t (id) VALUES (7)");
        DatabaseBase database;
        const LogCapture log;
        QVERIFY(database.genericUpdateTable("t"));
        QTEST(rows(), "after");
        QVERIFY2(log.lines().filter("failed").isEmpty(), qPrintable(log.lines().join('\n')));
        QVERIFY(!Dispenser::isOpenHere(Dispenser::sharedDatabase));
        QVERIFY(!Dispenser::isOpenHere(Dispenser::defaultsDatabase));
    }

    void aRestoreTellsItsSteps()
    {
        DatabaseBase database;
        const LogCapture log;
        QVERIFY(database.genericRestoreTable("t"));
        QCOMPARE(log.lines(),
                 QStringList({
                     "RESTORING TABLE  \"t\"  FROM DEFAULT",
                     "DROPPING TABLE  \"t\"",
                     "s \"select sql from defaults.sqlite_master where name='t'\"",
                     "query:  \"CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT, used INTEGER)\"",
                     "\"result: 1\"",
                     "restore complete",
                 }));
    }

    void whatCannotBeRestoredIsNotDropped()
    {
        Dispenser::sql("CREATE TABLE t (id); INSERT INTO t VALUES (7)");
        const QString file = Dispenser::defaultsDatabase;
        const auto isLeft = [&](int failedAttachments) {
            const LogCapture log;
            const bool exists = QFile::exists(file);
            DatabaseBase database;
            QVERIFY(!database.genericRestoreTable("t"));
            QCOMPARE(log.count("unable to attach default database"), failedAttachments);
            QVERIFY(!database.genericUpdateTable("t"));
            QVERIFY(!TableTranslations().initializeTable());
            QCOMPARE(rows(), QString("7"));
            QCOMPARE(QFile::exists(file), exists);
        };
        Dispenser::sql("PRAGMA rekey='other'", file);
        isLeft(1);
        makeDefaults("CREATE TABLE other (id)");
        isLeft(0);
        for (const QByteArray& content : {QByteArray(), QByteArray(4096, 'x')}) {
            Dispenser::writeFile(file, content);
            isLeft(content.isEmpty() ? 0 : 1);
        }
        QFile::remove(file);
        isLeft(1);
    }

    void aReadOnlyDefaultsFileServesAndAViewOfTheNameStays()
    {
        QFile::setPermissions(Dispenser::defaultsDatabase, QFile::ReadOwner);
        QVERIFY(DatabaseBase().genericRestoreTable("t"));
        Dispenser::sql("DROP TABLE t; CREATE VIEW t AS SELECT 'view'");
        const LogCapture log;
        QVERIFY(!DatabaseBase().genericRestoreTable("t"));
        QVERIFY(log.has("failed to drop table") && !log.has("restore complete"));
        QCOMPARE(rows(), QString("view"));
        Dispenser::sql("DROP VIEW t");
    }

    void whatFailsHalfWayLeavesTheTableAsItWas_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::addColumn<QString>("repair");
        QTest::newRow("damaged page")
            << "printf damage | dd of=$0 conv=notrunc bs=1 seek=20000 status=none"
            << "true";
        QTest::newRow("full disk")
            << "cp -r Database /run/small; mv Database Kept; ln -s /run/small/Database .;"
               "head -c 700000 /dev/zero > /run/small/full"
            << "rm Database /run/small/full; mv Kept Database";
    }

    void whatFailsHalfWayLeavesTheTableAsItWas()
    {
        QFETCH(QString, damage);
        QFETCH(QString, repair);
        makeDefaults("CREATE TABLE t (id INTEGER PRIMARY KEY, text);"
                     "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT 500)"
                     " INSERT INTO t SELECT i, hex(randomblob(500)) FROM n");
        Dispenser::sql("CREATE TABLE t (id); INSERT INTO t VALUES (7)");
        const auto shell = [](const QString& commands) {
            const QString line = "cd /opt/Merivon && " + commands;
            return QProcess::execute("sh", {"-c", line, Dispenser::defaultsDatabase}) == 0;
        };
        QVERIFY(shell(damage));
        const LogCapture log;
        const bool restored = DatabaseBase().genericRestoreTable("t");
        const QString left = rows();
        QVERIFY(shell(repair));
        QVERIFY(log.has("\"result: 1\"") && log.has("restore complete"));
        QCOMPARE(log.count("query failed"), 1); // the copy, and not what undoes it
        QVERIFY(!restored);
        QCOMPARE(left, QString("7"));
    }

    void aDefinitionThatIsRefusedLeavesNoTable()
    {
        makeDefaults("CREATE TABLE other (id); CREATE INDEX t ON other (id)");
        Dispenser::sql("CREATE TABLE t (id)");
        const LogCapture log;
        QVERIFY(!DatabaseBase().genericRestoreTable("t"));
        QVERIFY(log.has("\"result: 0\"") && log.has("restore complete"));
        QVERIFY(!DatabaseBase().genericTableExists("t"));
    }

    void theLogNeverReachesTheDefaultsWhileTheyAreAttached()
    {
        makeDefaults(
            "CREATE TABLE t (id); CREATE TABLE systemMessages (id, name, type, date, msg)");
        Dispenser::sql("ALTER TABLE systemMessages RENAME TO away; CREATE VIEW t AS SELECT 1");
        Logger::logDevMessages = true;
        const auto previous = qInstallMessageHandler(myMessageHandler);
        DatabaseBase().genericRestoreTable("t"); // refuses to drop a view, with critical lines
        qInstallMessageHandler(previous);
        Logger::logDevMessages = false;
        Dispenser::sql("ALTER TABLE away RENAME TO systemMessages; DROP VIEW t");
        QCOMPARE(Dispenser::sql("SELECT msg FROM systemMessages", Dispenser::defaultsDatabase),
                 QStringList());
    }

    void aRestoreAndALogThatIsCopiedToTheDatabaseDoNotWaitForEachOther()
    {
        Logger::logDevMessages = true;
        const auto previous = qInstallMessageHandler(myMessageHandler);
        std::atomic<bool> stop {false};
        std::thread logging([&] {
            for (int line = 0; !stop; ++line)
                qWarning() << line;
        });
        for (int restore = 0; restore < 20; ++restore)
            QVERIFY(DatabaseBase().genericRestoreTable("t"));
        stop = true;
        logging.join();
        qInstallMessageHandler(previous);
        Logger::logDevMessages = false;
    }

    void aRestoreWaitsForALock()
    {
        ExternalLock lock(Dispenser::sharedDatabase, 2);
        const LogCapture log;
        QVERIFY(DatabaseBase().genericRestoreTable("t"));
        QVERIFY(log.count("SQLERROR") > 0);
        lock.release();
        QCOMPARE(rows(), QString("1|default|0 2|other|1"));
    }

    void columnsAndTablesAreFoundByName()
    {
        makeDefaults("CREATE TABLE t (used)"); // without rows
        DatabaseBase database;
        QVERIFY(!database.genericTableExists("t"));
        QVERIFY(database.genericRestoreTable("t") && database.genericTableExists("t"));
        QVERIFY(Dispenser::isOpenHere(Dispenser::sharedDatabase));
        QVERIFY(database.genericColumnExists("t", "used"));
        QVERIFY(!database.genericColumnExists("t", "Used"));
        QCOMPARE(Dispenser::sql("SELECT type, msg FROM systemMessages ORDER BY id DESC LIMIT 1"),
                 QStringList("Warning|Database column does not exist- [Used]"));
        QVERIFY(database.genericDropTable("t") && !database.genericTableExists("t"));
    }

    void theTablesComeBackFromTheDefaults()
    {
        QFile::remove(Dispenser::defaultsDatabase);
        QVERIFY(
            QFile::copy(Dispenser::defaultsDatabase + ".original", Dispenser::defaultsDatabase));
        Dispenser::sql("DROP TABLE dictionary; DROP TABLE systemMessages;"
                       "UPDATE translations SET english='0' WHERE key='_tableVersion'");
        const LogCapture log;
        QVERIFY(TableDictionary().initializeTable());
        QVERIFY(TableMessages().initializeTable());
        TableTranslations translations;
        QVERIFY(translations.initializeTable());
        QCOMPARE(log.count("the translation version didn't match default database"), 1);
        QVERIFY(translations.initializeTable());
        QCOMPARE(log.count("RESTORING TABLE"), 3);
        for (const QString table : {"dictionary", "translations"}) {
            const QString count = "SELECT count(*) > 20, count(*) FROM " + table;
            const QStringList counts = Dispenser::sql(count);
            QVERIFY(counts.first().startsWith("1|"));
            QCOMPARE(counts, Dispenser::sql(count, Dispenser::defaultsDatabase));
        }
    }
};

DISPENSER_TEST_MAIN(TestMaintenance, QCoreApplication)
#include "tst_maintenance.moc"
