#include "Dispenser.h"
#include "LogCapture.h"
#include "Operations.h"
#include "Replay.h"
#include "SqlTest.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QHash>
#include <QSqlRecord>

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

// The rows, each as one text, then the error if there was one.
QStringList rowsOf(TestConnection& database, const QString& sql)
{
    QStringList rows;
    QSqlQuery query(database);
    query.exec(sql);
    while (query.next()) {
        rows.append(QString());
        for (int i = 0; i < query.record().count(); ++i)
            rows.last() += (query.isNull(i) ? "NULL" : query.value(i).toString()) + '|';
    }
    return rows << query.lastError().databaseText();
}

// The result of SQLite's own check, then the definitions and rows of all tables, of the shared
// database as the next start finds it.
QString content()
{
    TestConnection database(Dispenser::sharedDatabase);
    QStringList lines = rowsOf(database, "PRAGMA integrity_check");
    const QStringList tables = database->tables();
    for (const QString& table : tables)
        lines += rowsOf(database, "SELECT * FROM " + table);
    lines += rowsOf(database, "SELECT sql FROM sqlite_master ORDER BY name");
    return lines.join('\n');
}

// What the shared database holds before the first transaction and after each.
QStringList contentsBetween(const QStringList& transactions)
{
    QStringList contents(content());
    for (const QString& transaction : transactions) {
        Dispenser::sql(transaction);
        contents += content();
    }
    return contents;
}

QStringList transactionsOf(const Operation& done)
{
    if (!done.transactions.isEmpty())
        return done.transactions;
    return Dispenser::sql("SELECT 'INSERT INTO dictionary VALUES(' || id || ',' || quote(name) || "
                          "',' || quote(value) || ')' FROM dictionary ORDER BY id");
}

// The states that the shared database was found in.
struct States
{
    // How many of some transactions a state holds, from the first on; -1 for a faulty one. Each
    // different state is looked at once.
    int transactionsIn(const Files& files)
    {
        QCryptographicHash hash(QCryptographicHash::Sha1);
        for (auto it = files.cbegin(); it != files.cend(); ++it)
            hash.addData(it.key().toUtf8() + QByteArray::number(it->size()) + ' ' + *it);
        if (!found.contains(hash.result())) {
            fillFolder(files);
            const QString now = content();
            lastCheck = now.section('\n', 0, 0);
            found[hash.result()] = contents.indexOf(now);
        }
        return found[hash.result()];
    }

    const QStringList contents; // before the first transaction and after each
    QHash<QByteArray, int> found; // transactions by the state's hash
    QString lastCheck; // SQLite's own, of the last different state
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
        const QStringList transactions = transactionsOf(*operation);
        QCOMPARE(replay.state(replay.changes(), 0), filesInFolder()); // nothing was missed
        fillFolder(files);
        States states {contentsBetween(transactions), {}, {}};

        int done = 0; // transactions
        for (int changes = 0; changes <= replay.changes(); ++changes) {
            // A power cut right behind a commit may take it back, a later one may not.
            const int before = done;
            for (unsigned seed = 0; seed <= powerCuts; ++seed) {
                const int found = states.transactionsIn(replay.state(changes, seed));
                const QString what = "after %1 changes, seed %2: %3 transactions, %4";
                QVERIFY2(found == before || found == (seed == 0 ? before + 1 : done),
                         qPrintable(what.arg(changes).arg(seed).arg(found).arg(states.lastCheck)));
                if (seed == 0)
                    done = found;
            }
        }
        QCOMPARE(done, transactions.size());
        std::printf("%s: %d changes, %d different states\n", operation->name, replay.changes(),
                    states.found.size());
        m_states += states.found.size();
    }

    void cleanupTestCase() { std::printf("%d states\n", m_states); }

private:
    const Files m_fresh = filesInFolder();
    int m_states = 0;
};

DISPENSER_TEST_MAIN(TestCrashPoints, QCoreApplication)
#include "tst_crashpoints.moc"
