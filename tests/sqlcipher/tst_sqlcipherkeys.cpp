#include "Dispenser.h"
#include "ExternalLock.h"
#include "SqlTest.h"

#include <QCoreApplication>
#include <QtPlugin>

#include <dlfcn.h>
#include <nettle/hmac.h>
#include <nettle/pbkdf2.h>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

Q_IMPORT_PLUGIN(SqlCipherPlugin)

namespace {

std::atomic<int> derivations {0};
std::promise<void> slowKeyMayEnd;
const std::shared_future<void> slowKeyEnds = slowKeyMayEnd.get_future();
const QByteArray slowKey = "slow";

} // namespace

// The next two stand in front of the cryptographic libraries' functions, of the driver's and of
// SQLCipher's: they count the keys that are derived from pass phrases, and let one of them take its
// time.
void nettle_pbkdf2_hmac_sha1(size_t passSize, const uint8_t* pass, unsigned rounds, size_t saltSize,
                             const uint8_t* salt, size_t keySize, uint8_t* key)
{
    ++derivations;
    if (slowKey == QByteArray(reinterpret_cast<const char*>(pass), static_cast<int>(passSize)))
        slowKeyEnds.wait_for(std::chrono::seconds(20));
    hmac_sha1_ctx state;
    hmac_sha1_set_key(&state, passSize, pass);
    PBKDF2(&state, hmac_sha1_update, hmac_sha1_digest, SHA1_DIGEST_SIZE, rounds, saltSize, salt,
           keySize, key);
}

extern "C" int PKCS5_PBKDF2_HMAC_SHA1(const char* pass, int passSize, const unsigned char* salt,
                                      int saltSize, int rounds, int keySize, unsigned char* key)
{
    if (rounds > 1000) // SQLCipher derives a second key from the first, in two rounds
        ++derivations;
    static const auto derive
        = reinterpret_cast<decltype(&PKCS5_PBKDF2_HMAC_SHA1)>(dlsym(RTLD_NEXT, __func__));
    return derive(pass, passSize, salt, saltSize, rounds, keySize, key);
}

// The driver's keys and locks, held against the `sqlcipher` program.
class TestSqlCipherKeys : public QObject
{
    Q_OBJECT

    TestFiles m_files;

    QString newDatabase(const QString& content)
    {
        const QString file = m_files.next();
        Dispenser::sql(
            QStringLiteral("CREATE TABLE t (v TEXT); INSERT INTO t VALUES ('%1')").arg(content),
            file);
        return file;
    }

private slots:
    void filesAreReadByTheOtherProgramAndTheReverse()
    {
        const QString theirs = newDatabase("d\u00e9j\u00e0 \U0001F964");
        QCOMPARE(TestConnection(theirs).value("SELECT v FROM t"),
                 QString("d\u00e9j\u00e0 \U0001F964"));

        const QString ours = m_files.next();
        {
            TestConnection database(ours);
            QSqlQuery query(database);
            QVERIFY_SQL(query, query.exec("CREATE TABLE t (v)"));
            QVERIFY_SQL(query, query.exec("INSERT INTO t VALUES ('from here')"));
        }
        QCOMPARE(Dispenser::sql("SELECT v FROM t", ours), QStringList("from here"));
    }

    void whatCannotBeReadSaysSo()
    {
        const QString wrongKey = "file is encrypted or is not a database";
        const QString file = newDatabase("x");
        TestConnection database(file, "other");
        QCOMPARE(database.value("SELECT v FROM t"), wrongKey);
        QCOMPARE(TestConnection(file, "").value("SELECT v FROM t"), wrongKey);
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), QString("x"));

        QFile::resize(file, 700);
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), wrongKey);
        Dispenser::writeFile(file, QByteArray(5000, 'x'));
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), wrongKey);
        Dispenser::writeFile(file, "");
        QCOMPARE(TestConnection(file).value("SELECT count(*) FROM sqlite_master"), QString("0"));
        TestConnection nowhere("/nowhere/at/all.db");
        QVERIFY(nowhere->isOpenError());
        QCOMPARE(nowhere->lastError().databaseText(), QString("unable to open database file"));
    }

    void closingLetsGoOfTheFileAndAQueryMayOutliveItsDriver()
    {
        const QString file = newDatabase("x");
        QSqlQuery query;
        {
            TestConnection database(file);
            query = QSqlQuery(database);
            QVERIFY_SQL(query, query.exec("SELECT v FROM t"));
            QVERIFY(query.next());
            database->close();
            QVERIFY(!query.isActive() && !query.next() && !Dispenser::isOpenHere(file));
        }
        QVERIFY(!query.exec());
        QVERIFY(!query.lastInsertId().isValid());
    }

    void eachFileCostsOneDerivationUntilItIsAnother()
    {
        const QString wrongKey = "file is encrypted or is not a database";
        const QString file = newDatabase("old");
        const QString broken = m_files.next();
        Dispenser::writeFile(broken, QByteArray(5000, 'y'));
        derivations = 0;
        for (int opening = 0; opening < 3; ++opening) {
            QCOMPARE(TestConnection(file).value("SELECT v FROM t"), QString("old"));
            TestConnection database(broken);
            QCOMPARE(database.value("SELECT v FROM t"), wrongKey);
            QCOMPARE(database.value("SELECT v FROM t"), wrongKey);
        }
        QCOMPARE(derivations.load(), 2);

        const QString other = newDatabase("new");
        QFile::remove(broken);
        QVERIFY(QFile::rename(other, broken));
        QCOMPARE(TestConnection(broken).value("SELECT v FROM t"), QString("new"));
        QCOMPARE(derivations.load(), 3);
    }

    void derivingHoldsUpNobodyWhoseKeyIsKnown()
    {
        const QString file = newDatabase("known");
        const QString slow = newDatabase("slow");
        TestConnection(file).value("SELECT v FROM t");
        derivations = 0;
        const auto open = [&slow] { TestConnection(slow, slowKey).value("SELECT v FROM t"); };
        std::thread first(open);
        std::thread second(open); // waits for the same key
        const bool derives = QTest::qWaitFor([] { return derivations > 0; });
        auto other = std::async(std::launch::async,
                                [&file] { return TestConnection(file).value("SELECT v FROM t"); });
        const bool waits = other.wait_for(std::chrono::seconds(10)) != std::future_status::ready;
        slowKeyMayEnd.set_value();
        first.join();
        second.join();
        QVERIFY(derives && !waits);
        QCOMPARE(other.get(), QString("known"));
        QCOMPARE(derivations.load(), 1);
    }

    void aKeyThatOpensNothingCanBeGivenAgainAndOneThatDoesStays()
    {
        const QString file = m_files.next();
        Dispenser::writeFile(file, QByteArray(5000, 'z'));
        TestConnection database(file, "other");
        QSqlQuery query(database);
        QVERIFY_SQL(query, query.exec("PRAGMA key='d8pantry%'"));
        QVERIFY(!query.exec("SELECT v FROM t"));
        QCOMPARE(QProcess::execute("cp", {newDatabase("x"), file}), 0); // keeps its locks
        QVERIFY_SQL(query, query.exec("PRAGMA key='d8pantry%'"));
        QCOMPARE(database.value("SELECT v FROM t"), QString("x"));

        // SQLCipher would write under the other key what it has read under this one.
        QVERIFY(!query.exec("PRAGMA key='other'"));
        QVERIFY_SQL(query, query.exec("UPDATE t SET v = 'y'"));
        QCOMPARE(Dispenser::sql("SELECT v FROM t", file), QStringList("y"));
    }

    void onlyKnownFormsOfAKeyAreTakenUp()
    {
        const QMap<QString, bool> forms {
            {"PRAGMA key='%1'; ", true},
            {"/* a */ pragma --b\n main . \"key\" = \"%1\" ;", true},
            {"PRAGMA key('%1')", false},
            {"EXPLAIN PRAGMA key='%1'", false},
            {"PRAGMA hexkey='" + Dispenser::databaseKey.toLatin1().toHex() + "'", false},
            {"; PRAGMA key='%1'", false},
        };
        const QString nul = QString("PRAGMA key='d8pantry%'") + QChar::Null + "'";
        QVERIFY(!QSqlQuery(TestConnection(m_files.next(), "")).exec(nul));
        for (auto it = forms.begin(); it != forms.end(); ++it) {
            const QString file = newDatabase("main");
            const QString sameSalt = m_files.next();
            QVERIFY(QFile::copy(file, sameSalt));
            TestConnection database(file, "");
            QSqlQuery query(database);
            const QString statement = QString(it.key()).replace("%1", Dispenser::databaseKey);
            QVERIFY_SQL(query, query.exec(statement));
            QCOMPARE(database.value("SELECT v FROM t"), QString("main"));
            const QString attach = "ATTACH '%1' AS %2";
            QVERIFY2(query.exec(attach.arg(newDatabase("x"), R"("a ""b""")")) == it.value(),
                     qPrintable(statement));
            // What SQLCipher does by itself; an empty key would not open it.
            QVERIFY_SQL(query, query.exec(attach.arg(sameSalt, "same")));
            QVERIFY_SQL(query, query.exec(attach.arg(":memory:", "m")));
            QVERIFY_SQL(query, query.exec("PRAGMA rekey='new'")); // not known from here on
            QVERIFY(!query.exec(attach.arg(newDatabase("x"), "later")));
        }
    }

    void aFileOfOtherParametersStillTakesThePassPhrase()
    {
        const QString file = m_files.next();
        Dispenser::sql("PRAGMA kdf_iter=4000; CREATE TABLE t AS SELECT 'few rounds' AS v", file);
        TestConnection database(file);
        QSqlQuery(database).exec("PRAGMA kdf_iter=4000");
        QCOMPARE(database.value("SELECT v FROM t"), QString("few rounds"));
    }

    void anAttachedFileGetsTheConnectionsPassPhraseAndItsOwnSalt()
    {
        const QString file = newDatabase("main");
        const QString attached = newDatabase("attached");
        TestConnection database(file);
        QSqlQuery query(database);
        // The key statement right before, with nothing read since, is what breaks it elsewhere.
        QVERIFY_SQL(query, query.exec("PRAGMA key='d8pantry%'"));
        QVERIFY_SQL(query, query.exec(QStringLiteral("ATTACH DATABASE '%1' AS a").arg(attached)));
        QCOMPARE(database.value("SELECT v FROM a.t"), QString("attached"));
        QCOMPARE(database.value("SELECT v FROM main.t"), QString("main"));
        QVERIFY_SQL(query, query.exec("DETACH a"));

        Dispenser::writeFile(attached, QByteArray(5000, 'x'));
        QVERIFY(!query.exec(QStringLiteral("ATTACH DATABASE '%1' AS a").arg(attached)));
        QCOMPARE(database.value("SELECT v FROM t"), QString("main"));
    }

    void aLockIsToldAsOneAndTheKeyIsKept()
    {
        const QString file = newDatabase("x");
        ExternalLock lock(file);
        TestConnection database(file, "");
        QSqlQuery query(database);
        QVERIFY(!query.exec("PRAGMA key='d8pantry%'"));
        QCOMPARE(query.lastError().databaseText(), QString("database is locked"));
        lock.release();
        QVERIFY_SQL(query, query.exec("PRAGMA key='d8pantry%'"));
        QCOMPARE(database.value("SELECT v FROM t"), QString("x"));
    }

    void noLockIsLostWhileThreadsKeyAndClose()
    {
        // One thread holds a write transaction open while others open, key, attach, read and close
        // the same file; another program must be kept out of it all the time.
        const QString file = newDatabase("0");
        const QString attached = newDatabase("0");
        std::atomic<bool> stop {false};
        std::atomic<int> reads {0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                while (!stop) {
                    TestConnection database(file);
                    QSqlQuery query(database);
                    query.exec(QStringLiteral("ATTACH DATABASE '%1' AS a").arg(attached));
                    if (database.value("SELECT v FROM t") == "0")
                        ++reads;
                }
            });
        }
        {
            TestConnection writer(file);
            QSqlQuery query(writer);
            QVERIFY_SQL(query, query.exec("BEGIN IMMEDIATE"));
            QVERIFY_SQL(query, query.exec("UPDATE t SET v = 'mine'"));
            for (int attempt = 0; attempt < 20; ++attempt) {
                QProcess intruder;
                intruder.start("sqlcipher", {file});
                intruder.write("PRAGMA key='d8pantry%'; UPDATE t SET v = 'theirs';\n");
                intruder.closeWriteChannel();
                QVERIFY(intruder.waitForFinished());
                QVERIFY(intruder.readAllStandardError().contains("database is locked"));
            }
            QVERIFY_SQL(query, query.exec("ROLLBACK"));
        }
        stop = true;
        for (std::thread& thread : threads)
            thread.join();
        QVERIFY(reads > 20);
        QCOMPARE(Dispenser::sql("PRAGMA integrity_check; SELECT v FROM t", file),
                 QStringList({"ok", "0"}));
    }
};

DISPENSER_TEST_MAIN(TestSqlCipherKeys, QCoreApplication)
#include "tst_sqlcipherkeys.moc"
