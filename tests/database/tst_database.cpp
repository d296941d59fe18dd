#include "Dispenser.h"
#include "ExternalLock.h"

#include "app/Logger.h"
#include "app/MessageHandler.h"
#include "database/SystemMessage.h"
#include "database/TableDictionary.h"
#include "database/TableMessages.h"
#include "database/TableTranslations.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <atomic>
#include <thread>

// What reaches the shared database, and what is left of it, read by another program.
class TestDatabase : public QObject
{
    Q_OBJECT

    // The log as the updater writes it, its warnings into the database, to the end of the scope.
    struct LoggingIntoDatabase
    {
        LoggingIntoDatabase() { Logger::logDevMessages = true; }
        ~LoggingIntoDatabase()
        {
            qInstallMessageHandler(m_previous);
            Logger::logDevMessages = false;
        }
        const QtMessageHandler m_previous = qInstallMessageHandler(myMessageHandler);
    };

private slots:
    void aThreadThatGetsTheIdentifierOfAnEarlierOneCanWrite()
    {
        QSet<QString> names;
        int written = 0;
        for (int i = 0; i < 20; ++i) {
            std::thread([&] {
                names.insert(DatabaseBase::connectionName());
                written += TableMessages::insertSystemMessage("IoT", "Error", "text") ? 1 : 0;
            }).join();
        }
        QCOMPARE(written, 20);
        QVERIFY2(names.size() < 20, "no identifier was used twice: nothing was tested");
    }

    void aStatementThatWaitsForALockIsNotCutOffByTheLogOfIt()
    {
        TableDictionary().setDictionaryValue("language", "french");
        TableTranslations translations;
        TableDictionary(); // its end closes the connection
        const LoggingIntoDatabase logging;
        ExternalLock lock(Dispenser::sharedDatabase, 2);
        QCOMPARE(translations.lookUp("Yes"), QString("Oui"));
    }

    void aRestoreAndTheLogOfAnotherThreadDoNotWaitForEachOther()
    {
        const QString defaults = Dispenser::defaultsDatabase;
        Dispenser::sql("CREATE TABLE t (id); INSERT INTO t VALUES (1)", defaults);
        QFile::setPermissions(defaults, QFile::ReadOwner); // all that a restore may need
        const LoggingIntoDatabase logging;
        std::atomic<bool> stop {false};
        std::thread other([&] {
            for (int line = 0; !stop; ++line)
                qWarning() << line;
        });
        int restored = 0;
        for (int i = 0; i < 20; ++i)
            restored += DatabaseBase().genericRestoreTable("t") ? 1 : 0;
        stop = true;
        other.join();
        QCOMPARE(restored, 20);
        QCOMPARE(Dispenser::sql("SELECT * FROM t"), QStringList("1"));
    }

    // In the order in which one damage can follow the other.
    void whatCannotBeRestoredIsNotDropped_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::newRow("defaults without the table") << "true";
        QTest::newRow("of another key")
            << "rm -f $0; sqlcipher $0 \"PRAGMA key='x'; CREATE TABLE ours (id)\"";
        QTest::newRow("no database") << "head -c 4096 /dev/zero > $0";
        QTest::newRow("empty") << ": > $0";
        QTest::newRow("missing") << "rm $0";
    }

    void whatCannotBeRestoredIsNotDropped()
    {
        QFETCH(QString, damage);
        const QString defaults = Dispenser::defaultsDatabase;
        Dispenser::sql("DROP TABLE IF EXISTS ours; CREATE TABLE ours AS SELECT 7");
        QCOMPARE(QProcess::execute("sh", {"-c", damage, defaults}), 0);
        const bool exists = QFile::exists(defaults);
        QVERIFY(!DatabaseBase().genericRestoreTable("ours"));
        QVERIFY(!DatabaseBase().genericUpdateTable("ours"));
        QCOMPARE(Dispenser::sql("SELECT * FROM ours"), QStringList("7"));
        QCOMPARE(QFile::exists(defaults), exists);
    }

    void anUnknownTextIsAddedOnceForEachLanguage()
    {
        TableDictionary().setDictionaryValue("language", "french");
        TableTranslations translations;
        const QString key = QString::fromUtf8("%1 caf\u00e9");
        QCOMPARE(translations.lookUp(key), key);
        QCOMPARE(translations.lookUp(key), "(F)" + key);
        QCOMPARE(
            Dispenser::sql("SELECT english, german, spanish, used FROM translations WHERE key='"
                           + key + '\''),
            QStringList(QStringLiteral("%1|(G)%1|(S)%1|1").replace("%1", key)));
    }

    void aTextThatIsNotThereIsShownByItsKeyWhateverTheLanguage()
    {
        Dispenser::sql("INSERT INTO translations VALUES (NULL,'k','E','F','G','',0)");
        for (const QString language :
             {"spanish", "klingon", "(SELECT value FROM dictionary WHERE name=''wifiKey'')"}) {
            TableDictionary().setDictionaryValue("language", language);
            TableTranslations translations;
            QCOMPARE(translations.lookUp("k"), QString("k"));
        }
    }

    void oneKeyLetsGoOfTheFileSoThatAnInstallCanReplaceIt()
    {
        TableDictionary().setDictionaryValue("language", "english");
        TableTranslations translations;
        translations.lookUp("Yes");
        QVERIFY(Dispenser::isOpenHere(Dispenser::sharedDatabase));
        translations.lookUp("KeyCloseDatabase");
        QVERIFY(!Dispenser::isOpenHere(Dispenser::sharedDatabase));
    }

    void aMessageIsWrittenOnceAMinute()
    {
        using namespace SystemMessage;
        TableMessages().clearSystemMessages();
        const auto log = [](Type type, const QString& text, int age) {
            const QDateTime now = QDateTime::currentDateTime();
            return Status::log({Service::IoT, type, text, now.addSecs(-age)});
        };
        QVERIFY(log(Type::Error, "a", 30));
        QVERIFY(!log(Type::Error, "a", 0));
        QVERIFY(log(Type::Warning, "a", 0));
        QVERIFY(log(Type::Error, "b", 60));
        QVERIFY(log(Type::Error, "b", 0)); // exactly a minute old no longer blocks
        QVERIFY(log(Type::Error, "c", -3600)); // before the clock was set back an hour
        QVERIFY(log(Type::Error, "c", 0));
        QCOMPARE(Dispenser::sql("SELECT name, type, msg FROM systemMessages ORDER BY id"),
                 QStringList({"IoT|Error|a", "IoT|Warning|a", "IoT|Error|b", "IoT|Error|b",
                              "IoT|Error|c", "IoT|Error|c"}));
    }

    void noTextActsAsSql()
    {
        const QString text = "'||(SELECT value FROM dictionary WHERE name='wifiKey')||'";
        QVERIFY(!TableMessages::insertSystemMessage("IoT", "Error", text));
        QCOMPARE(TableTranslations().lookUp(text), text);
    }
};

DISPENSER_TEST_MAIN(TestDatabase, QCoreApplication)
#include "tst_database.moc"
