#include "Dispenser.h"
#include "LogCapture.h"
#include "Operations.h"
#include "Replay.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QHash>

#include <cstdio>

namespace {

constexpr unsigned powerCuts = 10; // after each change

const QString folder = QStringLiteral("/opt/Merivon/Database/");

Files filesInFolder()
{
    Files files;
    const QStringList names = QDir(folder).entryList(QDir::Files);
    for (const QString& name : names) {
        QFile file(folder + name);
        if (file.open(QIODevice::ReadOnly))
            files[name] = file.readAll();
    }
    return files;
}

// Afterwards the folder holds these files and no others.
void fillFolder(const Files& files)
{
    QDir(folder).removeRecursively();
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        Dispenser::writeFile(folder + it.key(), it.value());
}

// The result of SQLite's own check in the first line, then the definitions and rows of all tables,
// of the shared database as the next start finds it.
QString content()
{
    DatabaseBase database;
    QString text = database.genericGetColumn("PRAGMA integrity_check").toString() + '\n';
    const QVariantList tables
        = database.genericGetColumnList("SELECT name FROM sqlite_master WHERE type = 'table'");
    for (const QVariant& table : tables)
        QDebug(&text) << database.genericGetMapList("SELECT * FROM " + table.toString());
    QDebug(&text) << database.genericGetMapList("SELECT sql FROM sqlite_master ORDER BY name");
    return text;
}

// The states that the shared database was found in.
struct States
{
    // The place of a state's content among the different contents, in the order in which they were
    // found first. Each different state is looked at once.
    int contentOf(const Files& files)
    {
        QCryptographicHash hash(QCryptographicHash::Sha1);
        for (auto it = files.cbegin(); it != files.cend(); ++it)
            hash.addData(it.key().toUtf8() + QByteArray::number(it->size()) + ' ' + *it);
        if (!places.contains(hash.result())) {
            fillFolder(files);
            const QString now = content();
            if (!contents.contains(now))
                contents.append(now);
            places[hash.result()] = contents.indexOf(now);
        }
        return places[hash.result()];
    }

    QStringList contents;
    QHash<QByteArray, int> places; // by the state's hash
};

} // namespace

// A program may be killed, and power may be cut, between any two changes of a file. Each leaves the
// tables as before or as after a transaction.
class TestCrashPoints : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Dispenser::sql(defaultsOfT, Dispenser::defaultsDatabase); }

    void leaveWholeTransactions_data()
    {
        QTest::addColumn<const Operation*>("operation");
        for (const Operation& operation : operations)
            QTest::newRow(operation.name) << &operation;
    }

    void leaveWholeTransactions()
    {
        QFETCH(const Operation*, operation);
        const LogCapture quiet;
        fillFolder(m_fresh);
        Dispenser::sql("BEGIN;" + oursOfT + operation->preparation + ";COMMIT");
        const Files files = filesInFolder();
        const Replay replay(files, record(folder, files, operation->run));
        QCOMPARE(replay.state(replay.changes(), 0), filesInFolder()); // nothing was missed

        States states;
        int done = 0; // transactions, each of which makes another content
        for (int changes = 0; changes <= replay.changes(); ++changes) {
            // A power cut right behind a commit may take it back, a later one may not.
            const int before = done;
            for (unsigned seed = 0; seed <= powerCuts; ++seed) {
                const int found = states.contentOf(replay.state(changes, seed));
                const QString check = states.contents[found].section('\n', 0, 0);
                const QString what = "after %1 changes, seed %2: content %3, not %4; %5";
                QVERIFY2(check == "ok"
                             && (found == before || found == (seed == 0 ? before + 1 : done)),
                         qPrintable(what.arg(changes).arg(seed).arg(found).arg(done).arg(check)));
                if (seed == 0)
                    done = found;
            }
        }
        QCOMPARE(done, operation->transactions);
        if (!operation->equal.isEmpty()) {
            fillFolder(files);
            Dispenser::sql("BEGIN;" + operation->equal + ";COMMIT");
            QCOMPARE(states.contents.last(), content());
        }
        std::printf("%s: %d changes, %d different states\n", operation->name, replay.changes(),
                    states.places.size());
        m_states += states.places.size();
    }

    void cleanupTestCase() { std::printf("%d states\n", m_states); }

private:
    const Files m_fresh = filesInFolder();
    int m_states = 0;
};

DISPENSER_TEST_MAIN(TestCrashPoints, QCoreApplication)
#include "tst_crashpoints.moc"
