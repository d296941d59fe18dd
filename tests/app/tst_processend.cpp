// The end of the process, whatever it waits for and whoever asks for it. Each case is a process of
// its own: this program, started with the name of what to do.
#include "Dispenser.h"
#include "app/Application.h"
#include "app/Event.h"
#include "process/LaunchAsync.h"
#include "process/ProcessEnd.h"
#include "process/ScriptLauncher.h"
#include "software/SoftwareManager.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTimer>
#include <QWindow>

#include <csignal>
#include <cstdio>
#include <functional>
#include <map>
#include <thread>
#include <unistd.h>

namespace {

// Writes more than a pipe holds once the updater is gone, and ends at the first write that fails.
const QString job
    = QStringLiteral("set -e; touch /tmp/started; until [ -e /tmp/go ]; do sleep 0.05; "
                     "done; head -c 200000 /dev/zero; echo y >&2; echo z; touch /tmp/done");
const QStringList jobArguments {"-c", job};

void sleepForGood()
{
    Dispenser::writeFile("/tmp/started", {});
    QThread::sleep(60);
}

const std::map<QString, std::function<void()>> waits {
    {"program", [] { ScriptLauncher().launchProgram("/bin/sh", jobArguments); }},
    {"script", [] { ScriptLauncher().launchScript("/bin/sh", jobArguments); }},
    {"progress", [] { ScriptLauncher().runScript("/bin/sh", jobArguments); }},
    {"command", [] { ScriptLauncher().systemCommand("/bin/sh", jobArguments); }},
    {"shell", [] { ScriptLauncher().executeSystemCommand("exec >/dev/null;" + job); }},
    {"events",
     [] {
         LaunchAsync launcher;
         launcher.launch("/bin/sh", jobArguments);
         QCoreApplication::exec();
     }},
    {"nothing",
     [] {
         Dispenser::writeFile("/tmp/started", {});
         ScriptLauncher().launchProgram("/nowhere/missing");
     }},
    {"sleep", sleepForGood},
    {"stream",
     [] {
         std::thread([] {
             flockfile(stdout);
             sleepForGood();
         }).detach();
         QCoreApplication::exec();
     }},
    {"window",
     [] {
         QWindow window;
         window.show();
         QTimer::singleShot(100, &window, &QWindow::close);
         QTimer::singleShot(0, [] { ScriptLauncher().launchProgram("/bin/sh", jobArguments); });
         QCoreApplication::exec();
     }},
    {"bus", [] { QDBusConnection::sessionBus(); }}, // which nobody has to end by force
    {"restart",
     [] {
         SoftwareManager manager;
         manager.quitAndStartMerivon();
         Dispenser::writeFile("/tmp/started", {});
         QCoreApplication::exec();
     }},
    {"restart and program",
     [] {
         SoftwareManager manager;
         manager.quitAndStartMerivon();
         ScriptLauncher().launchProgram("/bin/sh", jobArguments);
     }},
    {"restart and log",
     [] {
         qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) {
             if (line.startsWith("launchDetachedProcess:"))
                 sleepForGood();
         });
         SoftwareManager manager;
         manager.quitAndStartMerivon();
         QCoreApplication::exec();
     }},
    {"restart and sleep",
     [] {
         SoftwareManager manager;
         manager.quitAndStartMerivon();
         sleepForGood();
     }},
};

void callQuitApp()
{
    const char name[] = "org.merivon.softwareUpdater";
    QDBusConnection::sessionBus().send(QDBusMessage::createMethodCall(name, "/", name, "quitApp"));
}

// With a process group of its own, as a terminal gives one to a command.
class Updater : public QProcess
{
public:
    explicit Updater(const QString& wait)
    {
        for (const char* const file : {"/tmp/started", "/tmp/go", "/tmp/done"})
            QFile::remove(file);
        setProcessChannelMode(ForwardedChannels); // the shell prints to the updater's own output
        start(QCoreApplication::applicationFilePath(), {wait});
    }
    bool isAtWork() const
    {
        return QTest::qWaitFor([] { return QFile::exists("/tmp/started"); }, 20000);
    }
    static bool jobGoesOn()
    {
        Dispenser::writeFile("/tmp/go", {});
        return QTest::qWaitFor([] { return QFile::exists("/tmp/done"); }, 20000);
    }

protected:
    void setupChildProcess() override { setpgid(0, 0); }
};

} // namespace

class ProcessEndTest : public QObject
{
    Q_OBJECT

private slots:
    void aRemoteQuitEndsEveryWait_data()
    {
        QTest::addColumn<bool>("hasJob");
        for (const char* const wait :
             {"program", "script", "progress", "command", "shell", "events"})
            QTest::newRow(wait) << true;
        for (const char* const wait : {"nothing", "sleep", "stream"})
            QTest::newRow(wait) << false;
    }

    void aRemoteQuitEndsEveryWait()
    {
        QFETCH(bool, hasJob);
        Updater updater(QTest::currentDataTag());
        QVERIFY(updater.isAtWork());
        callQuitApp();
        QVERIFY(updater.waitForFinished(10000));
        QVERIFY(updater.exitStatus() == QProcess::NormalExit && updater.exitCode() == 0);
        QVERIFY(!hasJob || Updater::jobGoesOn());
    }

    void closingTheWindowEndsAWait()
    {
        Updater updater("window");
        QVERIFY(updater.waitForFinished(10000));
        QVERIFY(updater.exitStatus() == QProcess::NormalExit && updater.exitCode() == 0);
        QVERIFY(Updater::jobGoesOn());
    }

    // SIGINT to the group is a Ctrl-C, SIGHUP a terminal that hangs up.
    void aJobOutlivesEverySignal_data()
    {
        QTest::addColumn<QString>("wait");
        QTest::addColumn<int>("signal");
        QTest::newRow("end") << "program" << SIGTERM;
        QTest::newRow("Ctrl-C") << "program" << SIGINT;
        QTest::newRow("hang-up") << "program" << SIGHUP;
        QTest::newRow("kill") << "program" << SIGKILL;
        QTest::newRow("script, hang-up") << "script" << SIGHUP;
        QTest::newRow("shell, Ctrl-C") << "shell" << SIGINT;
        QTest::newRow("shell, hang-up") << "shell" << SIGHUP;
    }

    void aJobOutlivesEverySignal()
    {
        QFETCH(QString, wait);
        QFETCH(int, signal);
        Updater updater(wait);
        QVERIFY(updater.isAtWork());
        QCOMPARE(::kill(-static_cast<pid_t>(updater.processId()), signal), 0);
        QVERIFY(updater.waitForFinished(10000));
        QVERIFY(Updater::jobGoesOn());
    }

    void aPendingRestartIsDoneOnce_data()
    {
        QTest::addColumn<bool>("quit");
        QTest::newRow("restart") << true;
        QTest::newRow("restart and sleep") << true;
        QTest::newRow("restart and log") << true;
        QTest::newRow("restart and program") << false;
    }

    void aPendingRestartIsDoneOnce()
    {
        QFETCH(bool, quit);
        Dispenser::clearRecord();
        Updater updater(QTest::currentDataTag());
        QVERIFY(updater.isAtWork());
        if (quit)
            callQuitApp();
        QVERIFY(updater.waitForFinished(10000));
        QVERIFY(updater.exitStatus() == QProcess::NormalExit && updater.exitCode() == 0);
        QVERIFY(Dispenser::waitForRecord("vemlo start"));
        QTest::qWait(200);
        QCOMPARE(Dispenser::record(), QStringList("vemlo start"));
    }

    void aBusThatFallsSilentHoldsNothingUp()
    {
        QLocalServer bus;
        QVERIFY(bus.listen("/tmp/bus"));
        connect(&bus, &QLocalServer::newConnection, &bus, [&bus] {
            bus.nextPendingConnection()->write("OK " + QByteArray(32, '0') + "\r\n");
        });
        const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/tmp/bus");
        Updater updater("bus");
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        QTRY_COMPARE_WITH_TIMEOUT(updater.state(), QProcess::NotRunning, 10000);
        QVERIFY(updater.exitStatus() == QProcess::NormalExit && updater.exitCode() == 0);
    }
};

int main(int argc, char** argv)
{
    const auto wait = waits.find(QString::fromLocal8Bit(argc > 1 ? argv[1] : ""));
    if (!Dispenser::isHere())
        return 1;
    {
        Application app(argc, argv);
        if (wait == waits.end()) {
            ProcessEndTest test;
            return QTest::qExec(&test, argc, argv);
        }
        ProcessEnd::watch();
        Event event;
        QObject::connect(&event, &Event::shutTheAppDown, &app, &SingleApplication::quitApp);
        wait->second();
    }
    ProcessEnd::now(0);
}

#include "tst_processend.moc"
