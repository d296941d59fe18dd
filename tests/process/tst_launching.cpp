// Programs that are started and waited for. What they print as such is varied at random elsewhere.
#include "Dispenser.h"
#include "LogCapture.h"
#include "process/LaunchAsync.h"
#include "process/ScriptLauncher.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <csignal>
#include <optional>

namespace {

// Of this process: each job has one.
int threads()
{
    return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

} // namespace

class LaunchingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setApplicationName("SoftwareUpdater"); }

    void nothingIsWaitedForButTheProgramAndItsOutput()
    {
        QElapsedTimer clock;
        clock.start();
        ScriptLauncher launcher;
        for (const char* const body :
             {"sleep 40 & echo abc", "echo lost >&2; echo abc; echo lost > /dev/stderr"}) {
            Dispenser::writeScript(Dispenser::scriptsFolder + "x.sh", body);
            QCOMPARE(launcher.launchProgram("x.sh"), "abc");
            QCOMPARE(launcher.launchScript("x.sh"), "abc");
        }
        QCOMPARE(launcher.launchScript("/bin/sh", {"-c", "echo abc; exec >&-; sleep 40"}), "abc");
        QVERIFY(clock.elapsed() < 20000);
    }

    // The platform, for one: a full pipe that nobody reads would stop it for good.
    void whatAProgramLeavesBehindMayPrintOn()
    {
        const QString body = "{ sleep 0.3; head -c 200000 /dev/zero && touch /tmp/printed; } & :";
        ScriptLauncher().launchProgram("/bin/sh", {"-c", body});
        QTRY_VERIFY(QFile::exists("/tmp/printed"));
    }

    void aLongOutputIsLoggedInPart()
    {
        const LogCapture log;
        ScriptLauncher().launchProgram("/bin/sh", {"-c", "head -c 50000 /dev/zero | tr '\\0' x"});
        QCOMPARE(log.count("xx\" and bytes more: 45903"), 1);
    }

    void whatCannotStartIsReported()
    {
        const LogCapture log;
        const QString helper = Dispenser::scriptsFolder + "start_detached_process.sh";
        QVERIFY(QFile::rename(helper, helper + ".away"));
        ScriptLauncher launcher;
        QCOMPARE(launcher.launchScript("/nowhere/missing"), "there was an error starting script.");
        launcher.launchDetachedProcess("/bin/x");
        QVERIFY(QFile::rename(helper + ".away", helper));
        QCOMPARE(launcher.runScript("/nowhere/script", {}), "0");
        QVERIFY(!launcher.systemCommand("/nowhere/command", {}));
        QCOMPARE(log.count("Failed to execute"), 3);
        QCOMPARE(log.count("Failed to Execute"), 1);
        QCOMPARE(Dispenser::sql("SELECT msg FROM systemMessages WHERE name='SoftwareUpdater' AND "
                                "type='Error' ORDER BY id"),
                 QStringList({"Script Failed [/nowhere/missing]", "System Command Failed [/bin/x]",
                              "Script Failed [/nowhere/script]",
                              "System Command Failed [/nowhere/command]"}));
    }

    // The handler serves events, as one that launches another program does.
    void anEndThatComesInAHandlerIsNotMissed()
    {
        const LogCapture quiet;
        QTimer handler;
        handler.callOnTimeout([] {
            QThread::msleep(20);
            QCoreApplication::processEvents();
        });
        handler.start(0);
        for (int round = 0; round < 30; ++round)
            QCOMPARE(ScriptLauncher().launchProgram("/bin/echo", {"abc"}), "abc");
    }

    void aScriptTellsItsProgressLineByLine()
    {
        ScriptLauncher launcher;
        const QSignalSpy told(&launcher, &ScriptLauncher::loadCompleted);
        QCOMPARE(launcher.runScript("/bin/sh", {"-c", "echo 1; sleep 0.3; echo 2; exit 1"}), "1");
        QCOMPARE(told, (QList<QVariantList> {{15, "1\n"}, {25, "2\n"}, {100, "Error..."}}));
        QCOMPARE(launcher.runScript("/bin/sh", {"-c", "printf '3\\n4\\n'; exit 2"}), "0");
        QCOMPARE(told.mid(3), (QList<QVariantList> {{15, "3\n"}, {100, "Success..."}}));
    }

    // The program ignores SIGPIPE, its children are not to.
    void aShellLineGivesItsWaitStatus()
    {
        std::signal(SIGPIPE, SIG_IGN);
        ScriptLauncher launcher;
        QCOMPARE(launcher.executeSystemCommand("test é = é && exit 3"), 3 * 256);
        QCOMPARE(launcher.executeSystemCommand("exec 2> /tmp/errors; yes | head -n 1 > /dev/null"),
                 0);
        QCOMPARE(QFileInfo("/tmp/errors").size(), 0);
    }

    // An optional puts the new object at the address of the old one. The pauses let destruction
    // and end meet at different points.
    void aLauncherThatDiedIsNeverTouchedNorTakenForItsSuccessor()
    {
        const LogCapture quiet;
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
        QTRY_VERIFY_WITH_TIMEOUT(threads() <= before, 20000);
        QVERIFY(!heard);
    }
};

DISPENSER_TEST_MAIN(LaunchingTest, QCoreApplication)

#include "tst_launching.moc"
