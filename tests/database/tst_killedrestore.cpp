#include "Dispenser.h"
#include "LogCapture.h"

#include "database/DatabaseBase.h"
#include "database/Transaction.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QRandomGenerator>

#include <cstdio>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kills = 20; // the sanitizers look at memory, not at the disk
#else
constexpr int kills = 200;
#endif

namespace {

const QString fiveHundred
    = QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT 500) ");

void takeColumnsAway(DatabaseBase& database)
{
    Transaction transaction(database);
    database.genericDropTable("t");
    database.genericQuery("CREATE TABLE t (id INTEGER PRIMARY KEY)");
    database.genericQuery(fiveHundred + "INSERT INTO t SELECT i FROM n");
    transaction.commit();
}

// What the killed process does until it dies: restores, and updates that add columns.
[[noreturn]] void workOnTheTable()
{
    const LogCapture quiet;
    DatabaseBase database;
    for (;;) {
        database.genericRestoreTable("t");
        std::puts("working");
        std::fflush(stdout);
        takeColumnsAway(database);
        database.genericUpdateTable("t");
    }
}

} // namespace

// Power may fail at any moment of a restore or an update.
class TestKilledRestore : public QObject
{
    Q_OBJECT

private slots:
    void aKilledProcessLeavesATableThatTheNextUpdateMakesWhole()
    {
        Dispenser::sql("CREATE TABLE t (id INTEGER PRIMARY KEY, a TEXT, b TEXT DEFAULT 'x');"
                           + fiveHundred
                           + "INSERT INTO t SELECT i, hex(randomblob(40)), 'y' FROM n",
                       Dispenser::defaultsDatabase);
        const LogCapture quiet;
        DatabaseBase database;
        QVERIFY(database.genericRestoreTable("t"));
        for (int kill = 0; kill < kills; ++kill) {
            QProcess worker;
            worker.start(QCoreApplication::applicationFilePath(), {"--work"});
            QVERIFY(worker.waitForReadyRead());
            QTest::qSleep(QRandomGenerator::global()->bounded(1, 30));
            worker.kill();
            QVERIFY(worker.waitForFinished());

            QCOMPARE(database.genericGetColumn("PRAGMA integrity_check").toString(), QString("ok"));
            QVERIFY(database.genericUpdateTable("t"));
            QCOMPARE(database.genericGetColumn("SELECT count(*) FROM t").toInt(), 500);
            QVERIFY(database.genericColumnExists("t", "b"));
            QCOMPARE(QDir("/opt/Merivon/Database").entryList({"*-mj*"}, QDir::Files),
                     QStringList());
        }
    }
};

int main(int argc, char** argv)
{
    if (!Dispenser::isHere()) {
        fputs("run me inside sandbox/enter\n", stderr);
        return 1;
    }
    QCoreApplication app(argc, argv);
    if (app.arguments().contains("--work"))
        workOnTheTable();
    TestKilledRestore test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_killedrestore.moc"
