#include "Dispenser.h"
#include "ExternalLock.h"
#include "LogCapture.h"

#include "database/DatabaseBase.h"
#include "database/TableDictionary.h"
#include "database/TableMessages.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QSqlDatabase>
#include <QThread>

#include <thread>

// The connection of each thread, the waiting for locks, and the generic helpers on them.
class TestConnection : public QObject
{
    Q_OBJECT

    static bool isOpen()
    {
        return QSqlDatabase::database(DatabaseBase::connectionName(), false).isOpen();
    }

private slots:
    void eachThreadHasOneConnectionNamedAfterIt()
    {
        const LogCapture log;
        const auto use = [](QString& name) {
            DatabaseBase first;
            DatabaseBase second;
            name = DatabaseBase::connectionName();
            QVERIFY(second.genericQuery("SELECT 1"));
        };
        QString here;
        QString there;
        use(here);
        std::thread(use, std::ref(there)).join();
        QVERIFY(here != there);
        const auto identifier = reinterpret_cast<quintptr>(QThread::currentThreadId());
        QCOMPARE(here, QString::number(static_cast<qint32>(identifier)));
        QCOMPARE(log.count("threadDatabaseConnection created "), 2);
        QVERIFY(log.has("threadDatabaseConnection created  \"" + Dispenser::sharedDatabase + '"'));
    }

    void aThreadIdentifierUsedAgainGetsAWorkingConnection()
    {
        const LogCapture log;
        QSet<QString> names;
        int succeeded = 0;
        for (int i = 0; i < 20; ++i) {
            std::thread([&] {
                DatabaseBase database;
                names.insert(DatabaseBase::connectionName());
                succeeded += database.genericQuery("SELECT count(*) FROM dictionary") ? 1 : 0;
            }).join();
        }
        QCOMPARE(succeeded, 20);
        QVERIFY2(names.size() < 20, "no identifier was used twice: nothing was tested");
        QCOMPARE(log.count("QSqlDatabase"), 0);
    }

    void aLockedDatabaseIsWaitedForOnEveryThread()
    {
        const LogCapture log;
        TableDictionary().setDictionaryValue("waited", "before");
        ExternalLock lock(Dispenser::sharedDatabase, 3);
        QElapsedTimer timer;
        timer.start();
        bool workerStored = false;
        std::thread worker(
            [&] { workerStored = TableMessages::insertSystemMessage("a", "b", "from a worker"); });
        QVERIFY(TableDictionary().setDictionaryValue("waited", "after"));
        worker.join();
        QVERIFY(workerStored);
        QVERIFY(timer.elapsed() > 1000);
        QVERIFY(log.count("SQLERROR: [") > 2);
        QVERIFY(!log.lines().filter("SQLERROR: [").filter("/n \"\"").isEmpty());
        lock.release();
        QCOMPARE(Dispenser::sql("SELECT value FROM dictionary WHERE name='waited';"
                                "SELECT count(*) FROM systemMessages WHERE msg='from a worker'"),
                 QStringList({"after", "1"}));
    }

    void openingAndClosingTellTheirState()
    {
        DatabaseBase database;
        QVERIFY(database.openDatabase() && database.openDatabase() && isOpen());
        TableDictionary(nullptr); // its end closes the thread's connection
        QVERIFY(!isOpen());
        QVERIFY(database.openDatabase());
        QVERIFY(!database.closeDatabase());
        QVERIFY(!Dispenser::isOpenHere(Dispenser::sharedDatabase));
    }

    void helpersGiveTheirShapes()
    {
        DatabaseBase database;
        Dispenser::sql("CREATE TABLE shapes (id INTEGER, v TEXT);"
                       "INSERT INTO shapes VALUES (70000, 'a'), (2, NULL)");
        QVERIFY(database.genericQuery("SELECT 1"));
        QVERIFY(!isOpen());
        QCOMPARE(database.genericGetID("SELECT id FROM shapes"), short(4464));
        QVERIFY(isOpen());
        QCOMPARE(database.genericGetIDs("SELECT id FROM shapes"), QVariantList({70000, 2}));
        QVERIFY(!isOpen());
        QCOMPARE(database.genericGetColumn("SELECT count(*) FROM shapes"), QVariant("2"));
        QVERIFY(!isOpen());
        QCOMPARE(database.genericGetColumnList("SELECT id FROM shapes"),
                 QVariantList({qint64(70000), qint64(2)}));
        QVERIFY(!isOpen());
        QCOMPARE(database.genericGetMapList("SELECT * FROM shapes").toList(),
                 QVariantList({QVariantList({qint64(70000), "a"}),
                               QVariantList({qint64(2), QVariant(QString())})}));
        QVERIFY(isOpen());
        QCOMPARE(database.getRowAsList("shapes", 2), QVariantList({"2", ""}));
        QCOMPARE(database.getRowAsList("shapes", "v", "a"), QVariantList({"70000", "a"}));
        QCOMPARE(database.getRowAsList("shapes", ""), QVariantList({"70000", "a", "2", ""}));
        QVERIFY(!isOpen());
    }

    void helpersThatFindNothingAreNeutral()
    {
        const LogCapture log;
        DatabaseBase database;
        QCOMPARE(database.genericGetID("SELECT 1 WHERE 0"), short(-1));
        QVERIFY(!database.genericGetColumn("SELECT 1 WHERE 0").isValid());
        QVERIFY(log.lines().filter("Error").isEmpty());
        QCOMPARE(database.genericGetID("SELECT nothing"), short(-1));
        QCOMPARE(database.genericGetMapList("SELECT nothing").toList(), QVariantList());
        QVERIFY(!database.genericQuery("SELEC 1"));
        QVERIFY(log.has("Error: genericGetID \"SELECT nothing resulted in error\""));
        QVERIFY(log.has("Error: genericQuery \"while executing query: SELEC 1\""));
        QCOMPARE(log.count("!!! query failed: "), 2); // the map list tells nothing
        QVERIFY(!isOpen());
    }

    void aMessageWrittenWhileAStatementWaitsDoesNotCutItOff()
    {
        // The log handler writes its own lines to the database, on the same connection.
        static thread_local bool writing = false;
        ExternalLock lock(Dispenser::sharedDatabase, 2);
        const auto previous
            = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString&) {
                  if (type != QtDebugMsg && !std::exchange(writing, true)) {
                      TableMessages::insertSystemMessage("Critical", "test", "nested");
                      writing = false;
                  }
              });
        const bool stored = TableDictionary().setDictionaryValue("nested", "stored");
        qInstallMessageHandler(previous);
        lock.release();
        QVERIFY(stored);
        QCOMPARE(Dispenser::sql("SELECT value FROM dictionary WHERE name='nested'"),
                 QStringList("stored"));
    }
};

DISPENSER_TEST_MAIN(TestConnection, QCoreApplication)
#include "tst_connection.moc"
