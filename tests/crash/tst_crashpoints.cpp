#include "Dispenser.h"
#include "Judge.h"
#include "LogCapture.h"
#include "Operations.h"
#include "Replay.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QHash>
#include <QProcess>

#include <cstdio>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr unsigned powerCuts = 1; // the sanitizers look at memory, not at the disk
#else
constexpr unsigned powerCuts = 10; // after each event
#endif

namespace {

const QString folder = QStringLiteral("/opt/Merivon/Database/");

// This program, started again, does the operation; what a recorder says of it.
QByteArray record(const Operation& operation)
{
    writeFolder("/tmp/record/", {});
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_PRELOAD", CRASH_RECORDER);
    environment.insert("RECORDED_FOLDER", folder.chopped(1));
    environment.insert("RECORDED_LOG", "/tmp/record/log");
    // The sanitizer's own wrappers come after the recorder's.
    environment.insert("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":verify_asan_link_order=0");
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QCoreApplication::applicationFilePath(), {"--run", operation.name});
    if (!program.waitForFinished() || program.exitCode() != 0)
        qFatal("%s did not work", operation.name);
    return readFolder("/tmp/record/").value("log");
}

Files prepare(const Operation& operation)
{
    static const Files fresh = readFolder(folder);
    writeFolder(folder, fresh);
    Dispenser::sql("BEGIN;" + oursOfT + operation.preparation + ";COMMIT");
    return readFolder(folder);
}

QStringList transactionsOf(const Operation& done)
{
    if (!done.transactions.isEmpty())
        return done.transactions;
    return Dispenser::sql("SELECT 'INSERT INTO dictionary VALUES(' || id || ',' || quote(name) || "
                          "',' || quote(value) || ')' FROM dictionary ORDER BY id");
}

// The states that one operation can leave. Each has a name: the operation, how many events of its
// recording were done, and a seed, 0 for a kill, any other for a power cut. Pages have other bytes
// in each recording, but the events are the same and so are those that arrive.
struct Trial
{
    explicit Trial(const Operation& what)
        : operation(what), before(prepare(what)), replay(folder, before, record(what)),
          after(readFolder(folder)), judge(before, transactionsOf(what))
    {
    }

    // The transactions that a state holds, which are to be one of two numbers. Each different
    // state is looked at once, and every tenth goes through the updater's own code too.
    int expect(int events, unsigned seed, int least, int most)
    {
        const Files files = replay.state(events, seed);
        QCryptographicHash hash(QCryptographicHash::Sha1);
        for (const QByteArray& file : files)
            hash.addData(QByteArray::number(file.size()) + ' ' + file);
        auto it = found.find(hash.result());
        if (it == found.end()) {
            it = found.insert(hash.result(), judge.look(files));
            ++(seed == 0 ? kills : cuts);
            if (it->transactions >= 0 && found.size() % 10 == 0 && !opensWhole(files, *it))
                *it = {-1, "the updater's next start fails"};
        }
        if (failure.isEmpty() && it->transactions != least && it->transactions != most) {
            failure = QString::asprintf("%s %d %u: %d transactions, not %d or %d: %s",
                                        operation.name, events, seed, it->transactions, least, most,
                                        it->fault.constData());
        }
        return it->transactions;
    }

    bool opensWhole(const Files& files, const Judge::Finding& state)
    {
        ++opened;
        writeFolder(folder, files);
        const LogCapture quiet;
        const bool whole = DatabaseBase().genericUpdateTable("t");
        const bool updates = QString(operation.name).startsWith("update");
        return whole
            && judge.look(readFolder(folder)).transactions
            == (updates ? judge.transactions() : state.transactions);
    }

    const Operation& operation;
    const Files before;
    const Replay replay;
    const Files after;
    const Judge judge;
    QHash<QByteArray, Judge::Finding> found; // by the state's hash
    int kills = 0, cuts = 0, opened = 0; // different states
    QString failure; // the first bad state's name, and what is wrong
};

} // namespace

// A program may be killed, and power may be cut, between any two changes of a file. Each leaves the
// tables as before or as after a transaction.
class TestCrashPoints : public QObject
{
    Q_OBJECT

private slots:
    void leaveWholeTransactions_data()
    {
        QTest::addColumn<QString>("name");
        for (const Operation& operation : operations)
            QTest::newRow(operation.name) << QString(operation.name);
    }

    void leaveWholeTransactions()
    {
        QFETCH(QString, name);
        Trial trial(operationNamed(name));
        int done = 0; // transactions
        for (int events = 0; events <= trial.replay.events() && trial.failure.isEmpty(); ++events) {
            done = trial.expect(events, 0, done, done + 1);
            // A power cut may take the last transaction back: its commit is the removal of the
            // journal, and the folder is synced with the next one only.
            for (unsigned cut = 1; cut <= powerCuts; ++cut)
                trial.expect(events, 100 * unsigned(events) + cut, qMax(0, done - 1), done);
        }
        m_counts += QString::asprintf(
            "%s: %d events, states: %d after a kill, %d after a power cut; opened again: %d\n",
            qPrintable(name), trial.replay.events(), trial.kills, trial.cuts, trial.opened);
        m_states += trial.found.size();
        QVERIFY2(trial.failure.isEmpty(), qPrintable(trial.failure));
        QCOMPARE(done, trial.judge.transactions());
        QCOMPARE(trial.replay.state(trial.replay.events(), 0), trial.after); // nothing was missed
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
    Dispenser::sql(defaultsOfT, Dispenser::defaultsDatabase);
    if (arguments.value(1) == "--state") { // and a bad state's name: makes its files again
        const Trial trial(operationNamed(arguments.value(2)));
        writeFolder("/tmp/state/",
                    trial.replay.state(arguments.value(3).toInt(), arguments.value(4).toUInt()));
        return 0;
    }
    TestCrashPoints test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_crashpoints.moc"
