// The application object and the end of the process, whatever that waits for. Each end is that of a
// process of its own: this program, started with the name of what to do.
#include "Dispenser.h"
#include "app/Application.h"
#include "process/ProcessEnd.h"
#include "process/ScriptLauncher.h"
#include "software/SoftwareManager.h"

#include <QProcess>
#include <QTimer>

#include <csignal>
#include <map>
#include <stdexcept>
#include <unistd.h>

namespace {

// Writes more than a pipe holds once the updater is gone, and ends at the first write that fails.
const QString job
    = QStringLiteral("set -e; touch /tmp/started; until [ -e /tmp/go ]; do sleep 0.05; "
                     "done; head -c 200000 /dev/zero; echo y >&2; echo z; touch /tmp/done");

void runJob()
{
    ScriptLauncher().launchProgram("/bin/sh", {"-c", job});
}

// The restart is due half a second later, when the program is still waited for.
void restartBesideAProgram()
{
    SoftwareManager manager;
    manager.quitAndStartMerivon();
    runJob();
}

void quitBeforeTheRestart()
{
    SoftwareManager manager;
    manager.quitAndStartMerivon();
    ProcessEnd::request();
    QThread::sleep(60);
}

const std::map<QString, void (*)()> deeds {
    {"program", runJob},
    {"shell", [] { ScriptLauncher().executeSystemCommand("exec >/dev/null 2>&1;" + job); }},
    {"restart beside a program", restartBesideAProgram},
    {"quit before the restart", quitBeforeTheRestart},
};

class Updater : public QProcess
{
public:
    explicit Updater(const QString& deed)
    {
        for (const char* const file : {"/tmp/started", "/tmp/go", "/tmp/done"})
            QFile::remove(file);
        start(QCoreApplication::applicationFilePath(), {deed});
    }

protected:
    void setupChildProcess() override { setpgid(0, 0); } // as a terminal gives one to a command
};

} // namespace

class ApplicationTest : public QObject
{
    Q_OBJECT

private slots:
    void exceptionsFromSlotsAreLoggedAndTheProgramGoesOn()
    {
        QTest::ignoreMessage(QtDebugMsg, "Exception thrown: boom");
        QTest::ignoreMessage(QtDebugMsg, "... exception thrown");
        bool wentOn = false;
        QTimer::singleShot(0, this, [] { throw std::runtime_error("boom"); });
        QTimer::singleShot(0, this, [] { throw 42; });
        QTimer::singleShot(10, this, [&] { wentOn = true; });
        QTRY_VERIFY(wentOn);
    }

    void aJobOutlivesACtrlC()
    {
        for (const char* const deed : {"program", "shell"}) {
            Updater updater(deed);
            QTRY_VERIFY(QFile::exists("/tmp/started"));
            QCOMPARE(::kill(-static_cast<pid_t>(updater.processId()), SIGINT), 0);
            QVERIFY(updater.waitForFinished());
            Dispenser::writeFile("/tmp/go", {});
            QTRY_VERIFY(QFile::exists("/tmp/done"));
        }
    }

    void aPendingRestartIsDoneOnce()
    {
        for (const char* const deed : {"restart beside a program", "quit before the restart"}) {
            Dispenser::clearRecord();
            Updater updater(deed);
            QVERIFY(updater.waitForFinished());
            QVERIFY(updater.exitStatus() == QProcess::NormalExit && updater.exitCode() == 0);
            QVERIFY(Dispenser::waitForRecord("vemlo start"));
            QTest::qWait(1000);
            QCOMPARE(Dispenser::record(), QStringList("vemlo start"));
        }
    }
};

int main(int argc, char** argv)
{
    const auto deed = deeds.find(QString::fromLocal8Bit(argc > 1 ? argv[1] : ""));
    if (!Dispenser::isHere())
        return 1;
    {
        Application app(argc, argv);
        if (deed == deeds.end()) {
            ApplicationTest test;
            return QTest::qExec(&test, argc, argv);
        }
        ProcessEnd::watch();
        deed->second();
    }
    ProcessEnd::now(0);
}

#include "tst_application.moc"
