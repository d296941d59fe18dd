#include "Dispenser.h"
#include "LogCapture.h"

#include "database/SystemMessage.h"
#include "database/TableDictionary.h"
#include "database/TableMessages.h"
#include "database/TableTranslations.h"

#include <QCoreApplication>
#include <QSignalSpy>

// The three tables, with the rows that reach the database read by another program.
class TestTables : public QObject
{
    Q_OBJECT

private slots:
    void settingsAreStoredAndReadByType()
    {
        TableDictionary dictionary;
        Dispenser::sql("INSERT INTO dictionary VALUES (null,'aNumber','a'), (null,'aNumber','b')");
        QVERIFY(dictionary.setDictionaryValue("aNumber", 3)); // in both rows
        QVERIFY(dictionary.setDictionaryValue("aFlag", true));
        QVERIFY(dictionary.setDictionaryValue("aText", QString("%1 %2\nline \u00e9")));
        QCOMPARE(dictionary.getDictionaryValue("aNumber", 2), 3);
        QCOMPARE(dictionary.getDictionaryValue("aFlag", false), true);
        QCOMPARE(dictionary.getDictionaryValue("aText"), QString("%1 %2\nline \u00e9"));
        QCOMPARE(dictionary.getDictionaryValue("not there"), QString());
        QCOMPARE(Dispenser::sql("SELECT value FROM dictionary WHERE name IN ('aNumber','aFlag')"),
                 QStringList({"3", "3", "true"}));

        QCOMPARE(dictionary.getDictionaryValue("newName", "abc"), QString("abc"));
        QCOMPARE(dictionary.getDictionaryValue("newNumber", 7), 7);
        QCOMPARE(dictionary.getDictionaryValue("newFlag", true), true);
        QCOMPARE(Dispenser::sql("SELECT name, value FROM dictionary WHERE name LIKE 'new%'"),
                 QStringList({"newName|abc", "newNumber|7", "newFlag|true"}));
        for (const QString truth : {"true", "TRUE", "True", "1"}) {
            dictionary.setDictionaryValue("aFlag", truth);
            QCOMPARE(dictionary.getDictionaryValue("aFlag", false), truth != "1");
        }
    }

    void aSettingThatIsMissingIsAddedAndNoOtherTouched()
    {
        Dispenser::sql("DELETE FROM dictionary WHERE name IN ('wifiKey','rebootHour');"
                       "UPDATE dictionary SET value='mine' WHERE name='SSID'");
        const LogCapture log;
        QVERIFY(TableDictionary().initializeTable());
        QVERIFY(log.has("\"wifiKey\" was missing from database, attempting to add during "
                        "initialization"));
        QCOMPARE(log.count("was missing"), 2);
        QCOMPARE(Dispenser::sql("SELECT name, value FROM dictionary WHERE name IN "
                                "('wifiKey','rebootHour','SSID') ORDER BY name"),
                 QStringList({"SSID|mine", "rebootHour|2", "wifiKey|KEY"}));
    }

    void lookUpOfAnUnknownKeyAddsItOnce()
    {
        TableDictionary().setDictionaryValue("language", "french");
        TableTranslations translations;
        for (const auto* name : {"Foo", "%1 of %2", "two\nlines", "caf\u00e9 \U0001F964"}) {
            const QString key = QString::fromUtf8(name);
            const LogCapture log;
            QCOMPARE(translations.lookUp(key), key);
            QCOMPARE(translations.lookUp(key), "(F)" + key);
            QCOMPARE(log.lines().size(), 1);
            QCOMPARE(log.count("' was added automatically to the translations table"), 1);
            const QStringList row = Dispenser::sql(
                "SELECT english, french, german, spanish, used FROM translations WHERE key='" + key
                + "'");
            QCOMPARE(row.join('\n'), QStringLiteral("%1|(F)%1|(G)%1|(S)%1|1").replace("%1", key));
        }
    }

    void textsFollowTheLanguageAndAreMarkedAsUsed()
    {
        Dispenser::sql("INSERT INTO translations VALUES (NULL,'k','E','F','G','',0)");
        TableDictionary().setDictionaryValue("language", "german");
        TableTranslations translations;
        QSignalSpy changes(&translations, &TableTranslations::languageChanged);
        const LogCapture log;
        QCOMPARE(translations.lookUp("k"), QString("G"));
        QVERIFY(log.has("setting used for:  \"k\""));
        QCOMPARE(translations.lookUp("k"), QString("G"));
        QCOMPARE(log.count("setting used for"), 1);
        QCOMPARE(Dispenser::sql("SELECT used FROM translations WHERE key='k'"), QStringList("1"));

        TableDictionary().setDictionaryValue("language", "spanish");
        QCOMPARE(translations.lookUp("k"), QString("G"));
        translations.languageUpdate();
        QCOMPARE(changes.count(), 1);
        QCOMPARE(translations.lookUp("k"), QString("k")); // never an empty text
        QCOMPARE(translations.property("languageBinder"), QVariant(""));
    }

    void keysThatCannotBeReadShowThemselvesAndOneClosesTheFile()
    {
        TableDictionary().setDictionaryValue("language", "english");
        TableTranslations translations;
        const LogCapture log;
        QCOMPARE(translations.lookUp("Yes"), QString("Yes"));
        QVERIFY(Dispenser::isOpenHere(Dispenser::sharedDatabase));
        QCOMPARE(translations.lookUp("KeyCloseDatabase"), QString("KeyCloseDatabase"));
        QVERIFY(!Dispenser::isOpenHere(Dispenser::sharedDatabase));
        for (const QString language :
             {"klingon", "(SELECT value FROM dictionary WHERE name=''wifiKey'')",
              "german,1 FROM translations --"}) {
            TableDictionary().setDictionaryValue("language", language);
            translations.languageUpdate();
            QCOMPARE(translations.lookUp("Yes"), QString("Yes"));
            QCOMPARE(translations.lookUp(""), QString(""));
        }
        TableDictionary().setDictionaryValue("language", "english");
    }

    void aMessageIsWrittenOnceAMinute()
    {
        using namespace SystemMessage;
        QCoreApplication::setApplicationName("SoftwareUpdater");
        TableMessages().clearSystemMessages();
        const QDateTime now = QDateTime::currentDateTime();
        const auto log = [&](Type type, const QString& text, int age) {
            return Status::log({Service::IoT, type, text, now.addSecs(-age)});
        };
        QVERIFY(log(Type::Error, "a", 30));
        QVERIFY(!log(Type::Error, "a", 0)); // and does not prolong the wait
        QVERIFY(log(Type::Warning, "a", 0));
        QVERIFY(log(Type::Error, "b", 60));
        QVERIFY(log(Type::Error, "b", 0)); // exactly a minute old no longer blocks
        QVERIFY(log(Type::Error, "c", -3600)); // before the clock was set back an hour
        QVERIFY(log(Type::Error, "c", 10));
        QVERIFY(!log(Type::Error, "c", 0));
        QVERIFY(Status::log({static_cast<Service>(9), static_cast<Type>(9), "%1", now}));
        QVERIFY(post(Type::Message, "posted"));
        QVERIFY(!post(Type::Message, "posted"));
        QCOMPARE(
            Dispenser::sql("SELECT name, type, msg FROM systemMessages WHERE date GLOB "
                           "'[0-3][0-9]-[01][0-9]-[0-9][0-9] [0-2][0-9]:[0-5][0-9]:*' ORDER BY id"),
            QStringList({"IoT|Error|a", "IoT|Warning|a", "IoT|Error|b", "IoT|Error|b",
                         "IoT|Error|c", "IoT|Error|c", "Type::Unknown|Type::Unknown|%1",
                         "SoftwareUpdater|Message|posted"}));
        for (int number = 1; number <= 6; ++number) {
            const auto service = static_cast<Service>(number);
            QCOMPARE(Message::serviceStringToEnum(toText(service)), service);
        }
        QCOMPARE(Message::serviceStringToEnum("mainui"), Service::Unknown);
    }

    void noTextActsAsSql_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("ends the literal") << "x' --";
        QTest::newRow("reads a secret")
            << "'||(SELECT value FROM dictionary WHERE name='wifiKey')||'";
        QTest::newRow("odd within even") << "a''b'''c";
        QTest::newRow("NUL") << QString::fromUtf8("a\0b", 3);
    }

    void noTextActsAsSql()
    {
        QFETCH(QString, text);
        const auto everything = [] {
            return Dispenser::sql("SELECT * FROM dictionary; SELECT * FROM systemMessages;"
                                  "SELECT * FROM translations");
        };
        TableDictionary dictionary;
        TableMessages messages;
        TableTranslations translations;
        messages.insertSystemMessage("IoT", "Error", "one");
        const QStringList before = everything();
        const LogCapture log;
        QVERIFY(!dictionary.setDictionaryValue("SSID", text));
        QVERIFY(!dictionary.setDictionaryValue("new", text));
        QVERIFY(!dictionary.setDictionaryValue(text, "value"));
        QCOMPARE(dictionary.getDictionaryValue(text), QString());
        QCOMPARE(dictionary.getDictionaryValue(text, "default"), QString("default"));
        QCOMPARE(translations.lookUp(text), text);
        QVERIFY(!messages.insertSystemMessage(text, "Error", "m"));
        QVERIFY(!messages.insertSystemMessage("IoT", text, "m"));
        QVERIFY(!messages.insertSystemMessage("IoT", "Error", text));
        QCOMPARE(log.count("Error: genericQuery \"while executing query: "), 8);
        for (const QVariant& page : {messages.getSystemMessages(9, 0, "All", text, "id", "ASC"),
                                     messages.getSystemMessages(9, 0, text, "All", "id", "ASC"),
                                     messages.getSystemMessages(9, 0, text, "IoT", "id", "ASC")})
            QCOMPARE(page.toList(), QVariantList());
        QCOMPARE(messages.getRowAsList("dictionary", "name", text), QVariantList());
        QVERIFY(!messages.genericTableExists(text));
        QVERIFY(!messages.genericRestoreTable(text));
        QCOMPARE(everything(), before);
    }

    void messagesAreReadByPageAndTrimmedFromTheOldest()
    {
        TableMessages messages;
        messages.clearSystemMessages();
        Dispenser::sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT 250)"
                       " INSERT INTO systemMessages (name, type, date, msg) SELECT"
                       " CASE i%2 WHEN 0 THEN 'IoT' ELSE 'MainUI' END,"
                       " CASE i%3 WHEN 0 THEN 'Error' ELSE 'Message' END, 'd', i FROM n");
        const auto page = [&](const QString& type, const QString& name) {
            QStringList texts;
            const auto rows = messages.getSystemMessages(2, 1, type, name, "id", "DESC").toList();
            for (const QVariant& row : rows)
                texts.append(row.toList().at(3).toString());
            return texts;
        };
        QCOMPARE(page("All", "All"), QStringList({"249", "248"}));
        QCOMPARE(page("Error", "All"), QStringList({"246", "243"}));
        QCOMPARE(page("All", "MainUI"), QStringList({"247", "245"}));
        QCOMPARE(page("Error", "IoT"), QStringList({"240", "234"}));
        QVERIFY(messages.cleanEntries(100));
        QCOMPARE(messages.getNumberOfEntries(), 150);
        QCOMPARE(Dispenser::sql("SELECT min(0+msg) FROM systemMessages"), QStringList("101"));
    }
};

DISPENSER_TEST_MAIN(TestTables, QCoreApplication)
#include "tst_tables.moc"
