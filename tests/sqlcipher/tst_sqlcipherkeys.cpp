#include "Dispenser.h"
#include "ExternalLock.h"
#include "SqlTest.h"

#include <QCoreApplication>
#include <QtPlugin>

#include <atomic>
#include <dlfcn.h>
#include <thread>
#include <vector>

Q_IMPORT_PLUGIN(SqlCipherPlugin)

namespace {

std::atomic<int> derivations {0};

} // namespace

// These stand in front of the two libraries that could derive a key, the driver's and SQLCipher's.
extern "C" void nettle_hmac_sha1_set_key(void* state, std::size_t size, const uint8_t* key)
{
    ++derivations;
    static const auto set
        = reinterpret_cast<decltype(&nettle_hmac_sha1_set_key)>(dlsym(RTLD_NEXT, __func__));
    set(state, size, key);
}

extern "C" int PKCS5_PBKDF2_HMAC_SHA1(const char* pass, int passSize, const unsigned char* salt,
                                      int saltSize, int rounds, int keySize, unsigned char* key)
{
    if (rounds > 1000) // SQLCipher makes a second key of the first, in two rounds
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
        Dispenser::sql(QStringLiteral("CREATE TABLE t AS SELECT '%1' AS v").arg(content), file);
        return file;
    }

private slots:
    void aPassPhraseIsDerivedOnceAlsoWhereItOpensNothing()
    {
        const QString none = m_files.next();
        Dispenser::writeFile(none, QByteArray(4096, 'x'));
        for (const QString& file : {newDatabase("x"), none}) {
            const int before = derivations;
            for (int i = 0; i < 3; ++i) {
                TestConnection database(file);
                QCOMPARE(QSqlQuery(database).exec("SELECT v FROM t"), file != none);
            }
            QCOMPARE(derivations - before, 1);
        }
    }

    void aFileInAnothersPlaceIsReadThoughItsSaltIsAnother()
    {
        const QString file = newDatabase("old");
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), QString("old"));
        QVERIFY(QFile::remove(file) && QFile::rename(newDatabase("new"), file));
        QCOMPARE(TestConnection(file).value("SELECT v FROM t"), QString("new"));
    }

    void aKeyCanBeGivenAgainAfterALockAndNoOtherAfterARead()
    {
        const QString file = newDatabase("x");
        TestConnection database(file, "");
        QSqlQuery query(database);
        {
            const ExternalLock lock(file);
            QVERIFY(!query.exec("PRAGMA key='d8pantry%'"));
            QCOMPARE(query.lastError().databaseText(), QString("database is locked"));
        }
        QVERIFY_SQL(query, query.exec("PRAGMA key='d8pantry%'"));
        QCOMPARE(database.value("SELECT v FROM t"), QString("x"));

        // SQLCipher would write under the other key what it has read under this one.
        QVERIFY(!query.exec("PRAGMA key='other'"));
        QVERIFY_SQL(query, query.exec("UPDATE t SET v = 'y'"));
        QCOMPARE(Dispenser::sql("SELECT v FROM t", file), QStringList("y"));
    }

    void noLockIsLostWhileThreadsKeyAndClose()
    {
        // One thread holds a write transaction open while others open, key, attach, read and close
        // the same file; another program must be kept out of it all the time.
        const QString file = newDatabase("0");
        const QString attach = "ATTACH '" + newDatabase("0") + "' AS a";
        std::atomic<bool> stop {false};
        std::atomic<int> reads {0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                while (!stop) {
                    TestConnection database(file);
                    QSqlQuery(database).exec(attach);
                    reads += database.value("SELECT v FROM t") == "0" ? 1 : 0;
                }
            });
        }
        TestConnection writer(file);
        QSqlQuery query(writer);
        const bool began = query.exec("BEGIN IMMEDIATE") && query.exec("UPDATE t SET v = 'mine'");
        int keptOut = 0;
        for (int attempt = 0; attempt < 20; ++attempt) {
            QProcess intruder;
            intruder.start("sqlcipher", {file});
            intruder.write("PRAGMA key='d8pantry%'; UPDATE t SET v = 'theirs';\n");
            intruder.closeWriteChannel();
            intruder.waitForFinished();
            keptOut += intruder.readAllStandardError().contains("database is locked") ? 1 : 0;
        }
        stop = true;
        for (std::thread& thread : threads)
            thread.join();
        QVERIFY(began && reads > 20);
        QCOMPARE(keptOut, 20);
        QVERIFY_SQL(query, query.exec("ROLLBACK"));
        QCOMPARE(Dispenser::sql("PRAGMA integrity_check; SELECT v FROM t", file),
                 QStringList({"ok", "0"}));
    }
};

DISPENSER_TEST_MAIN(TestSqlCipherKeys, QCoreApplication)
#include "tst_sqlcipherkeys.moc"
