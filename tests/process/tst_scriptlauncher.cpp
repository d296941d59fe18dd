#include "process/ScriptLauncher.h"

#include "Dispenser.h"
#include "LogCapture.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace {

// What a shell script's run tells, and its result.
QString progressOf(const char* body)
{
    const QEventLoop dispatcher; // a plain thread has none without it
    QString told;
    ScriptLauncher launcher;
    QObject::connect(&launcher, &ScriptLauncher::loadCompleted,
                     [&told](const QVariant& value, const QVariant& status) {
                         told += value.toString() + ' ' + status.toString();
                     });
    return launcher.runScript("/bin/sh", {"-c", body}).prepend(told + '|');
}

long peakMegabytes()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

} // namespace

class ScriptLauncherTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setApplicationName("SoftwareUpdater"); }

    void outputIsTextLessItsEnd()
    {
        const QVector<QStringList> rows {
            // script, launchProgram's result, launchScript's
            {"echo abc", "abc", "abc"},
            {"printf abc", "ab", "ab"},
            {"", "", ""},
            {"echo lost >&2; echo kept", "kept", "kept"},
            {"echo abc; kill -9 $$", "abc", "abc"},
            {"sleep 40 & echo abc", "abc", "abc"},
            {"echo abc; echo def > /dev/stderr", "abc", "abc"},
            {"echo a; echo b > /dev/stdout; echo c 1<>/dev/stdout", "a\nb\nc", "a\nb\nc"},
            {R"(printf 'a\303\251')", "a\uFFFD", "a"},
            {R"(printf 'abc\000def\n')", "abc", "ab"}};
        const LogCapture log;
        QElapsedTimer clock;
        clock.start();
        ScriptLauncher launcher;
        for (const QStringList& row : rows) {
            Dispenser::writeScript(Dispenser::scriptsFolder + "x.sh", row.at(0).toUtf8());
            QCOMPARE(launcher.launchProgram("x.sh"), row.at(1));
            QCOMPARE(launcher.launchScript("x.sh"), row.at(2));
        }
        QCOMPARE(launcher.launchProgram("/usr/bin/printf", {"%s|", "a b", "", "$(x)'\"*%1"}),
                 "a b||$(x)'\"*%1");
        QCOMPARE(launcher.launchScript("/bin/sh", {"-c", "echo abc; exec >&-; sleep 40"}), "abc");
        QVERIFY(clock.elapsed() < 20000); // nobody waits longer than for the output
    }

    void whatGoesWrongHereIsTheResult_data()
    {
        QTest::addColumn<int>("resource");
        QTest::addColumn<long>("limit");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<bool>("runs");
        QTest::newRow("memory") << int(RLIMIT_AS) << 600000000L << "std::bad_alloc" << true;
        QTest::newRow("descriptors")
            << int(RLIMIT_NOFILE) << 1L << "no pipe for the output" << false;
    }

    // The program runs to its end all the same.
    void whatGoesWrongHereIsTheResult()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("the sanitizers take terabytes, and descriptors of their own");
#endif
        QFETCH(int, resource);
        QFETCH(long, limit);
        QFETCH(QString, reason);
        QFile::remove("/tmp/whole");
        rlimit previous {};
        getrlimit(resource, &previous);
        const rlimit tight {static_cast<rlim_t>(limit), previous.rlim_max};
        setrlimit(resource, &tight);
        const QString result = ScriptLauncher().launchProgram(
            "/bin/sh", {"-c", "head -c 700000000 /dev/zero; touch /tmp/whole"});
        setrlimit(resource, &previous);
        QVERIFY2(result.startsWith("Error: " + reason), qPrintable(result));
        QTEST(QFile::exists("/tmp/whole"), "runs");
    }

    // The platform, for one: a full pipe that nobody reads would stop it for good.
    void whatAProgramLeavesBehindMayPrintOn()
    {
        const QString body = "{ sleep 0.3; head -c 200000 /dev/zero; touch /tmp/printed; } & :";
        Dispenser::writeScript("/tmp/helper", body.toUtf8());
        const QString helper = Dispenser::scriptsFolder + "start_detached_process.sh";
        QVERIFY(QFile::rename(helper, helper + ".away") && QFile::copy("/tmp/helper", helper));
        ScriptLauncher launcher;
        const QStringList arguments {"-c", body};
        const std::function<void()> ways[] = {[&] { launcher.launchProgram("/bin/sh", arguments); },
                                              [&] { launcher.launchScript("/bin/sh", arguments); },
                                              [&] { launcher.runScript("/bin/sh", arguments); },
                                              [&] { launcher.systemCommand("/bin/sh", arguments); },
                                              [&] { launcher.launchDetachedProcess("/bin/x"); }};
        for (const auto& way : ways) {
            QFile::remove("/tmp/printed");
            way();
            QTRY_VERIFY(QFile::exists("/tmp/printed"));
        }
        QVERIFY(QFile::remove(helper) && QFile::rename(helper + ".away", helper));
    }

    // What is not read costs nothing; what is read costs its size and that of the text.
    void outputCostsNoMoreThanItsSize()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("a sanitizer's own memory is larger");
#endif
        const LogCapture log;
        const long before = peakMegabytes();
        const QString errors = "head -c 600000000 /dev/zero >&2";
        QCOMPARE(ScriptLauncher().launchProgram("/bin/sh", {"-c", errors}), "");
        QVERIFY(peakMegabytes() - before < 20);
        const QString many = "head -c 50000000 /dev/zero | tr '\\0' x";
        QCOMPARE(ScriptLauncher().launchProgram("/bin/sh", {"-c", many}).size(), 49999999);
        QVERIFY2(peakMegabytes() - before < 50 + 100 + 20,
                 qPrintable(QString::number(peakMegabytes() - before)));
        QCOMPARE(log.count("xx\" and bytes more: 49995903"), 1);
        ScriptLauncher().launchScript("/bin/sh", {"-c", "head -c 50000 /dev/zero | tr '\\0' x"});
        QCOMPARE(log.count("xx\" and characters more: 45903"), 1);
    }

    void whatCannotStartIsReported()
    {
        const LogCapture log;
        const QString helper = Dispenser::scriptsFolder + "start_detached_process.sh";
        QVERIFY(QFile::rename(helper, helper + ".away"));
        ScriptLauncher launcher;
        QCOMPARE(launcher.launchScript("/nowhere/missing"), "there was an error starting script.");
        QCOMPARE(launcher.launchScript("/bin/echo", {"abc"}), "abc");
        launcher.launchDetachedProcess("/bin/x");
        QVERIFY(QFile::rename(helper + ".away", helper));
        QCOMPARE(launcher.runScript("/nowhere/script", {}), "0");
        QVERIFY(!launcher.systemCommand("/nowhere/command", {}));
        QVERIFY(log.has("arg:: ()") && log.has("last  5   \"\""));
        QCOMPARE(log.count("there was an error starting script  \"/nowhere/missing\""), 1);
        QCOMPARE(log.count("Failed to execute"), 3);
        QCOMPARE(log.count("Failed to Execute"), 1);
        QCOMPARE(log.count(" ended "), 0);
        QCOMPARE(Dispenser::sql("SELECT msg FROM systemMessages WHERE name='SoftwareUpdater' AND "
                                "type='Error' ORDER BY id"),
                 QStringList({"Script Failed [/nowhere/missing]", "System Command Failed [/bin/x]",
                              "Script Failed [/nowhere/script]",
                              "System Command Failed [/nowhere/command]"}));
    }

    // The second handler pumps too, as one that launches another program does.
    void waitingPumpsEventsAndMissesNoEnd()
    {
        int turns = 0;
        QTimer handler;
        const auto counting = handler.callOnTimeout([&turns] { ++turns; });
        handler.start(10);
        QCOMPARE(ScriptLauncher().launchProgram("/bin/sleep", {"1"}), "");
        QVERIFY2(turns > 50, qPrintable(QString::number(turns)));
        disconnect(counting);
        handler.callOnTimeout([] {
            QThread::msleep(20);
            QCoreApplication::processEvents();
        });
        handler.start(0);
        for (int round = 0; round < 30; ++round)
            QCOMPARE(ScriptLauncher().launchProgram("/bin/echo", {"abc"}), "abc");
    }

    void aDetachedProgramIsFoundFromTheCurrentFolder()
    {
        Dispenser::writeScript(Dispenser::scriptsFolder + "start_detached_process.sh",
                               "printf '%s|' \"$@\" > /tmp/arguments");
        QVERIFY(QDir::setCurrent("/tmp"));
        ScriptLauncher().launchDetachedProcess("tool", {"a b"});
        QFile arguments("/tmp/arguments");
        QVERIFY(arguments.open(QIODevice::ReadOnly));
        QCOMPARE(arguments.readAll(), QByteArray("/tmp/tool|a b|"));
    }

    void aScriptTellsItsProgressLineByLine()
    {
        const std::vector<std::pair<const char*, QString>> rows {
            {"for n in $(seq 11); do echo $n; sleep 0.2; done; exit 1",
             "15 1\n25 2\n35 3\n45 4\n55 5\n65 6\n75 7\n85 8\n95 9\n100 10\n100 11\n100 "
             "Error...|1"},
            {"printf '1\\n2\\n'; exit 2", "15 1\n100 Success...|0"},
            {"printf 1; sleep 0.5; echo", "15 125 \n100 Success...|0"},
            {"sleep 40 & exit 1", "100 Error...|1"}};
        const LogCapture log; // of all threads
        std::vector<QString> told(rows.size());
        std::vector<std::thread> runs; // at once, as each rests for seconds
        for (std::size_t i = 0; i < told.size(); ++i)
            runs.emplace_back([&, i] { told[i] = progressOf(rows[i].first); });
        for (std::thread& run : runs)
            run.join();
        for (std::size_t i = 0; i < told.size(); ++i)
            QCOMPARE(told[i], rows[i].second);
        QCOMPARE(log.count("ended with status"), 3);
    }

    void whatASystemCommandAndAShellLineGive()
    {
        ScriptLauncher launcher;
        QVERIFY(launcher.systemCommand("sh", {"-c", "exit 3"}));
        QVERIFY(launcher.systemCommand("sh", {"-c", "kill -9 $$"}));
        QCOMPARE(launcher.executeSystemCommand("test é = é && exit 3"), 3 * 256);
        QCOMPARE(launcher.executeSystemCommand("kill -9 $$"), 9);
        // The program ignores SIGPIPE, its children are not to.
        std::signal(SIGPIPE, SIG_IGN);
        QCOMPARE(launcher.executeSystemCommand("exec 2> /tmp/errors; yes | head -n 1 > /dev/null"),
                 0);
        QCOMPARE(QFileInfo("/tmp/errors").size(), 0);
    }

    void aBadEndIsAWarningWithItsStatus()
    {
        struct Row
        {
            const char* body;
            const char* warning;
        };
        const Row rows[] = {{"exit 3", "ended with status 3"},
                            {"kill -9 $$", "was ended by signal 9"},
                            {"exit 0", nullptr},
                            {"exec >&-; sleep 0.01; exit 0", nullptr}};
        for (const Row& row : rows) {
            Dispenser::writeScript(Dispenser::scriptsFolder + "x.sh", row.body);
            const QString script = Dispenser::scriptsFolder + "x.sh";
            const LogCapture log;
            ScriptLauncher launcher;
            launcher.launchProgram("x.sh");
            launcher.launchScript("x.sh");
            launcher.systemCommand(script, {});
            launcher.executeSystemCommand("exec " + script);
            QCOMPARE(log.count(row.warning ? row.warning : " ended "), row.warning ? 4 : 0);
        }
    }
};

DISPENSER_TEST_MAIN(ScriptLauncherTest, QCoreApplication)

#include "tst_scriptlauncher.moc"
