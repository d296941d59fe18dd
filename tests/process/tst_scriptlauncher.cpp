#include "process/ScriptLauncher.h"

#include "Dispenser.h"
#include "LogCapture.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <cstdlib>
#include <ctime>
#include <optional>

namespace {

QStringList systemErrors()
{
    return Dispenser::sql("SELECT msg FROM systemMessages WHERE name='SoftwareUpdater' AND "
                          "type='Error' ORDER BY id");
}

const QString missing = "/nowhere/missing";

double processorMs()
{
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Waits for a program, maybe one that never starts and so never comes back. After 6 s says how
// often the event loop got its turn, every 10 ms, and what processor time the waiting took.
int waitFor(const QStringList& program)
{
    int turns = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, [&turns] { ++turns; });
    ticker.start(10);
    const double before = processorMs();
    QTimer::singleShot(6000, [&] {
        printf("%d %f", turns, processorMs() - before);
        fflush(stdout);
        std::_Exit(0);
    });
    ScriptLauncher().launchProgram(program.first(), program.mid(1));
    return 1;
}

} // namespace

class ScriptLauncherTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_log.emplace();
        Dispenser::sql("DELETE FROM systemMessages");
    }

    void cleanup() { m_log.reset(); }

    void outputIsTextLessItsEnd_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("ofProgram");
        QTest::addColumn<QString>("ofScript");
        const auto row
            = [](const char* name, const char* body, const char* program, const char* script) {
                  QTest::newRow(name) << QByteArray(body) << QString(program) << QString(script);
              };
        row("line end", "echo abc", "abc", "abc");
        row("no line end", "printf abc", "ab", "ab");
        row("nothing", "", "", "");
        row("standard error unread", "echo lost >&2; echo kept", "kept", "kept");
        row("died by a signal", "echo abc; kill -9 $$", "abc", "abc");
        row("grandchild keeps the output open", "sleep 40 & echo abc", "abc", "abc");
        row("a letter of two bytes", R"(printf 'a\303\251')", "a\uFFFD", "a");
        row("a NUL", R"(printf 'abc\000def\n')", "abc", "ab");
    }
    void outputIsTextLessItsEnd()
    {
        QFETCH(QByteArray, body);
        QElapsedTimer clock;
        clock.start();
        Dispenser::writeScript(Dispenser::scriptsFolder + "x.sh", body);
        ScriptLauncher launcher;
        QTEST(launcher.launchProgram("x.sh"), "ofProgram");
        QTEST(launcher.launchScript("x.sh"), "ofScript");
        QVERIFY(clock.elapsed() < 20000);
    }

    void argumentsReachTheProgramUntouched()
    {
        const QStringList args {"a b", "", "$(x)'\"*%1"};
        QCOMPARE(ScriptLauncher().launchProgram("/usr/bin/printf", QStringList("%s|") + args),
                 args.join('|'));
        QCOMPARE(m_log->lines().first(),
                 "launch program wait for started \"/usr/bin/printf\" "
                 "(\"%s|\", \"a b\", \"\", \"$(x)'\\\"*%1\")");
    }

    void aHundredMegabytesOfOutputPass()
    {
        const QString many = "head -c 100000000 /dev/zero | tr '\\0' x";
        const QString output = ScriptLauncher().launchProgram("/bin/sh", {"-c", many});
        QCOMPARE(output.size(), 99999999);
        QCOMPARE(output.count('x'), output.size());
    }

    void aScriptThatCannotStartIsReportedAndTheNextOneRuns()
    {
        const QString plainFile = Dispenser::scriptsFolder + "plain.sh";
        Dispenser::writeFile(plainFile, "echo abc\n");
        ScriptLauncher launcher;
        QCOMPARE(launcher.launchScript(missing), "there was an error starting script.");
        QCOMPARE(launcher.launchScript("plain.sh"), "there was an error starting script.");
        QVERIFY(m_log->lines().at(1).startsWith(
            "there was an error starting script  \"/nowhere/missing\""));
        QCOMPARE(
            systemErrors(),
            QStringList({"Script Failed [/nowhere/missing]", "Script Failed [" + plainFile + ']'}));
        QCOMPARE(launcher.launchScript("/bin/echo", {"abc"}), "abc");
    }

    void waitingPumpsEventsAtNoCost_data()
    {
        QTest::addColumn<QStringList>("program");
        QTest::newRow("running") << QStringList {"--wait", "/bin/sleep", "10"};
        QTest::newRow("never started") << QStringList {"--wait", missing};
    }
    void waitingPumpsEventsAtNoCost()
    {
        QFETCH(QStringList, program);
        QProcess waiter;
        waiter.start(QCoreApplication::applicationFilePath(), program);
        QVERIFY(waiter.waitForFinished(20000));
        const QList<QByteArray> told = waiter.readAllStandardOutput().split(' ');
        QCOMPARE(told.size(), 2);
        QVERIFY2(told.at(0).toInt() > 200, told.at(0));
        QVERIFY2(told.at(1).toDouble() < 60, told.at(1));
    }

    // A handler that pumps itself, as one that launches another program does.
    void startAndEndMayBeSeenInThePump()
    {
        QTimer handler;
        connect(&handler, &QTimer::timeout, this, [] {
            QThread::msleep(20);
            QCoreApplication::processEvents();
        });
        handler.start(0);
        for (int round = 0; round < 30; ++round)
            QCOMPARE(ScriptLauncher().launchProgram("/bin/echo", {"abc"}), "abc");
    }

    void theDelayPassesBeforeTheStart()
    {
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        const QString start = ScriptLauncher().launchProgramWithDelay("/bin/date", {"+%s"});
        QVERIFY(start.toLongLong() >= before + 2 && start.toLongLong() < before + 6);
    }

    void aDetachedProgramIsFoundFromTheCurrentFolder()
    {
        const QString helper = Dispenser::scriptsFolder + "start_detached_process.sh";
        Dispenser::writeScript(helper, "printf '%s|' \"$@\" > /tmp/arguments");
        QVERIFY(QDir::setCurrent("/tmp"));
        ScriptLauncher launcher;
        launcher.launchDetachedProcess("tool", {"a b"});
        QFile arguments("/tmp/arguments");
        QVERIFY(arguments.open(QIODevice::ReadOnly));
        QCOMPARE(arguments.readAll(), QByteArray("/tmp/tool|a b|"));
        QCOMPARE(m_log->lines(),
                 QStringList("launchDetachedProcess: \"/tmp/tool\" (\"/tmp/tool\", \"a b\")"));

        QFile::remove(helper);
        launcher.launchDetachedProcess("/bin/x");
        QCOMPARE(m_log->count("Failed to execute"), 2);
        QCOMPARE(systemErrors(), QStringList("System Command Failed [/bin/x]"));
    }

    void aScriptTellsItsProgressLineByLine_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("told");
        QTest::newRow("faster than they are shown")
            << "for n in $(seq 12); do echo $n; sleep 0.2; done; exit 1"
            << "15 1\n25 2\n35 3\n45 4\n55 5\n65 6\n75 7\n85 8\n95 9\n100 10\n100 11\n100 12\n"
               "100 Error...";
        QTest::newRow("together") << "printf '1\\n2\\n'; exit 2"
                                  << "15 1\n100 Success...";
        QTest::newRow("in pieces") << "printf 1; sleep 0.5; echo"
                                   << "15 125 \n100 Success...";
        QTest::newRow("grandchild keeps the output open") << "sleep 40 & exit 1"
                                                          << "100 Error...";
    }
    void aScriptTellsItsProgressLineByLine()
    {
        QFETCH(QString, body);
        QString told;
        ScriptLauncher launcher;
        connect(&launcher, &ScriptLauncher::loadCompleted, this,
                [&told](const QVariant& value, const QVariant& status) {
                    told += value.toString() + ' ' + status.toString();
                });
        const QString result = launcher.runScript("/bin/sh", {"-c", body});
        QTEST(told, "told");
        QCOMPARE(result, told.endsWith("Error...") ? "1" : "0");
    }

    void aScriptThatNeverRanCountsAsDone()
    {
        QCOMPARE(ScriptLauncher().runScript("/nowhere/script", {}), "0");
        QCOMPARE(m_log->lines(), QStringList({"arg:: ()", "Failed to Execute", "last  5   \"\""}));
        QCOMPARE(systemErrors(), QStringList("Script Failed [/nowhere/script]"));
    }

    void aSystemCommandSucceedsWhenItBeganAndEnded()
    {
        ScriptLauncher launcher;
        QVERIFY(launcher.systemCommand("sh", {"-c", "exit 3"}));
        QVERIFY(launcher.systemCommand("sh", {"-c", "kill -9 $$"}));
        QVERIFY(!launcher.systemCommand("sleep", {"31"}));
        QCOMPARE(m_log->count("Failed to execute"), 1);
        QVERIFY(systemErrors().empty());
        QVERIFY(!launcher.systemCommand(missing, {}));
        QCOMPARE(systemErrors(), QStringList("System Command Failed [/nowhere/missing]"));
    }

    void aShellLineGivesItsWaitStatus()
    {
        QCOMPARE(ScriptLauncher().executeSystemCommand("test é = é && exit 3"), 3 * 256);
        QCOMPARE(ScriptLauncher().executeSystemCommand("kill -9 $$"), 9);
    }

private:
    std::optional<LogCapture> m_log;
};

int main(int argc, char** argv)
{
    if (!Dispenser::isHere()) {
        fputs("run me inside sandbox/enter\n", stderr);
        return 1;
    }
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--wait")
        return waitFor(arguments.mid(2));
    QCoreApplication::setApplicationName("SoftwareUpdater");
    ScriptLauncherTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_scriptlauncher.moc"
