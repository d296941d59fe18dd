#include "process/LaunchAsync.h"

#include "Dispenser.h"

#include <QCoreApplication>
#include <QDir>
#include <QThread>

#include <atomic>
#include <optional>

namespace {

// Of this process: each job has one.
int threads()
{
    return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

bool jobsEnd(int threadsBefore)
{
    return QTest::qWaitFor([=] { return threads() <= threadsBefore; }, 20000);
}

} // namespace

class LaunchAsyncTest : public QObject
{
    Q_OBJECT

private slots:
    // The end is told on the job's thread, and a slot called there may start the next job.
    void jobsRunAtOnceAndEndEachInItsOwnTime()
    {
        const int before = threads();
        LaunchAsync launcher;
        int begun = 0;
        QStringList results;
        std::atomic<int> elsewhere {0};
        connect(&launcher, &LaunchAsync::beginLaunch, this, [&begun] { ++begun; });
        connect(&launcher, &LaunchAsync::endLaunch, this,
                [&results](const QString& result) { results << result; });
        const auto next = [&, mine = QThread::currentThreadId()] {
            if (mine != QThread::currentThreadId() && ++elsewhere <= 3)
                launcher.launch("/bin/true");
        };
        connect(&launcher, &LaunchAsync::endLaunch, this, next, Qt::DirectConnection);
        launcher.launch("/bin/sh", {"-c", "until [ -e /tmp/go ]; do sleep 0.1; done; echo slow"});
        for (int job = 0; job < 30; ++job)
            launcher.launch("/bin/echo", {QString::number(job)});
        QVERIFY(begun == 31 && results.empty());
        QTRY_COMPARE_WITH_TIMEOUT(results.size(), 33, 20000);
        QCOMPARE(QSet<QString>(results.begin(), results.end()).size(), 31);
        Dispenser::writeFile("/tmp/go", {});
        QTRY_COMPARE(results.mid(33), QStringList("slow"));
        QVERIFY(jobsEnd(before));
    }

    // An optional puts the new object at the address of the old one. The pauses let destruction
    // and end meet at different points.
    void anObjectThatDiedIsNeverTouchedNorTakenForItsSuccessor()
    {
        const int before = threads();
        std::optional<LaunchAsync> launcher;
        for (int long round = 0; round < 60; ++round) {
            launcher.emplace();
            launcher->launch("/bin/sleep", {round % 2 ? "0" : "1"});
            QThread::usleep(round * 200);
        }
        launcher.emplace();
        std::atomic<bool> heard {false};
        connect(
            &*launcher, &LaunchAsync::endLaunch, this, [&heard] { heard = true; },
            Qt::DirectConnection);
        QVERIFY(jobsEnd(before) && !heard);
    }
};

DISPENSER_TEST_MAIN(LaunchAsyncTest, QCoreApplication)

#include "tst_launchasync.moc"
