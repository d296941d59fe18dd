#include "Dispenser.h"
#include "LogCapture.h"
#include "Trial.h"

#include <QCoreApplication>

#include <cstdio>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr unsigned powerCuts = 1; // the sanitizers look at memory, not at the disk
#else
constexpr unsigned powerCuts = 10;
#endif

// A program may be killed, and power may be cut, between any two changes of a file. Each leaves the
// tables as before or as after, and the updater's next start works.
class TestCrashPoints : public QObject
{
    Q_OBJECT

private slots:
    void leaveWholeTransactions_data()
    {
        QTest::addColumn<QString>("operation");
        for (const Operation& operation : operations())
            QTest::newRow(operation.name) << QString(operation.name);
    }

    void leaveWholeTransactions()
    {
        QFETCH(QString, operation);
        Trial trial(operation);
        const QString failure = trial.failure(powerCuts);
        m_counts += trial.counts();
        m_states += trial.states();
        QVERIFY2(failure.isEmpty(), qPrintable(failure));
    }

    void cleanupTestCase() { std::printf("%s%d states\n", qPrintable(m_counts), m_states); }

private:
    QString m_counts;
    int m_states = 0;
};

int main(int argc, char** argv)
{
    if (!Dispenser::isHere()) {
        std::fputs("run me inside sandbox/enter\n", stderr);
        return 1;
    }
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.value(1) == "--run") {
        const LogCapture quiet;
        operationNamed(arguments.value(2)).run();
        return 0;
    }
    Dispenser::sql(defaultsOfT(), Dispenser::defaultsDatabase);
    if (arguments.value(1) == "--state") { // the name of a bad state
        Trial(arguments.value(2))
            .build(arguments.value(3).toUInt(), arguments.value(4).toUInt(), "/tmp/state");
        return 0;
    }
    TestCrashPoints test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_crashpoints.moc"
