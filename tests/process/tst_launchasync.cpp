#include "process/LaunchAsync.h"

#include "Dispenser.h"

#include <QCoreApplication>
#include <QTest>
#include <QThread>

#include <atomic>
#include <optional>

namespace {

bool jobsEnd()
{
    return QTest::qWaitFor([] { return !LaunchAsync::hasRunningJobs(); }, 20000);
}

} // namespace

class LaunchAsyncTest : public QObject
{
    Q_OBJECT

private slots:
    void jobsRunAtOnceAndEndEachInItsOwnTime()
    {
        Dispenser::writeScript(Dispenser::scriptsFolder + "count.sh", "sleep 0.5; echo $#");
        LaunchAsync launcher;
        int begun = 0;
        QStringList results;
        connect(&launcher, &LaunchAsync::beginLaunch, this, [&begun] { ++begun; });
        connect(&launcher, &LaunchAsync::endLaunch, this,
                [&results](const QString& result) { results << result; });
        launcher.launch("/bin/sh", {"-c", "sleep 1; echo slow"});
        launcher.launch("count.sh");
        launcher.launch("/bin/true");
        QCOMPARE(begun, 3);
        QVERIFY(results.empty());
        QVERIFY(LaunchAsync::hasRunningJobs());
        QTRY_COMPARE(results, QStringList({"", "0", "slow"}));
        QVERIFY(jobsEnd());
    }

    void manyJobsGiveEachItsOwnResult()
    {
        LaunchAsync launcher;
        QSet<QString> results;
        connect(&launcher, &LaunchAsync::endLaunch, this,
                [&results](const QString& result) { results << result; });
        for (int job = 0; job < 40; ++job)
            launcher.launch("/bin/echo", {QString::number(job)});
        QTRY_COMPARE_WITH_TIMEOUT(results.size(), 40, 20000);
        QVERIFY(jobsEnd());
    }

    void theEndIsToldOnTheJobsThreadAndMayStartTheNextJob()
    {
        LaunchAsync launcher;
        std::atomic<int> elsewhere {0};
        const auto next = [&, mine = QThread::currentThreadId()] {
            if (mine != QThread::currentThreadId() && ++elsewhere < 3)
                launcher.launch("/bin/true");
        };
        connect(&launcher, &LaunchAsync::endLaunch, this, next, Qt::DirectConnection);
        launcher.launch("/bin/true");
        QTRY_COMPARE(elsewhere.load(), 3);
        QVERIFY(jobsEnd());
    }

    // An optional puts the new object at the address of the old one. The pauses let destruction
    // and end meet at different points.
    void anObjectThatDiedIsNeverTouchedNorTakenForItsSuccessor()
    {
        std::optional<LaunchAsync> launcher;
        for (unsigned long round = 0; round < 60; ++round) {
            launcher.emplace();
            launcher->launch("/bin/sleep", {round % 2 ? "0" : "1"});
            QThread::usleep(round * 200);
        }
        launcher.emplace();
        std::atomic<bool> heard {false};
        connect(
            &*launcher, &LaunchAsync::endLaunch, this, [&heard] { heard = true; },
            Qt::DirectConnection);
        QVERIFY(jobsEnd());
        QVERIFY(!heard);
    }
};

DISPENSER_TEST_MAIN(LaunchAsyncTest, QCoreApplication)

#include "tst_launchasync.moc"
