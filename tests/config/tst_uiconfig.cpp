#include "config/UiConfig.h"

#include "Dispenser.h"

#include <QCoreApplication>
#include <QFile>
#include <QMetaProperty>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

namespace {

const QString typeFile = "/opt/Merivon/systemType.txt";

// Every property's value, in the order of declaration.
QString values()
{
    QStringList texts;
    const QMetaObject& meta = UiConfig::staticMetaObject;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QVariant value = meta.property(i).read(UiConfig::getInstance());
        texts << (meta.property(i).isEnumType() ? QString::number(value.toInt())
                                                : value.toString());
    }
    return texts.join(',');
}

// The configuration is made once in a process, so each state it may start from has a process of
// its own: this program, told to print what it has read. Gives that and the log.
QPair<QString, QStringList> start()
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {"--print"});
    process.waitForFinished();
    return {process.readAllStandardOutput(),
            QString::fromUtf8(process.readAllStandardError()).split('\n')};
}

// Replaces the dictionary by settings, each "name', 'value".
void setDictionary(const QStringList& settings)
{
    QString statements = "DELETE FROM dictionary;";
    for (const QString& setting : settings)
        statements += "INSERT INTO dictionary VALUES(null, '" + setting + "');";
    Dispenser::sql(statements);
}

QStringList stored()
{
    return Dispenser::sql("SELECT name||'='||value FROM dictionary ORDER BY id");
}

} // namespace

class UiConfigTest : public QObject
{
    Q_OBJECT

private slots:
    void theKindAndItsGeometryComeFromDictionaryOrFile_data()
    {
        QTest::addColumn<QStringList>("dictionary");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("values");
        QTest::addColumn<QString>("logged");
        const auto row = [](const QStringList& dictionary, const char* file, const char* values,
                            const char* logged) {
            QTest::newRow(file) << dictionary << QByteArray(file) << QString(values)
                                << QString(logged);
        };
        const char* const none = "0,,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,false,0,Unknown,Unknown,";
        row({"systemType', 'talvo"}, "kra",
            "2,talvo,420,300,20,1920,1080,1810,1080,0,55,1920,1079,1920,360,0,0,false,4,Talvo,"
            "Talvo,ZT51830KB",
            "SystemType:  UiConfig::TALVO , SystemModel:  \"Talvo\" , FCC ID:  \"ZT51830KB\"");
        row({"systemModel', 'KRA Pro 2", "brandWidth', '500", "brandHeight', '301",
             "mainGradient', 'TRUE", "mainXoffset', '9", "numBarrels', '3", "mainHeight', '400"},
            " kra \r\n",
            "1,kra,500,301,20,1920,1080,1920,1080,0,0,1920,1080,1920,400,0,0,true,3,KRA Pro 2,"
            "KRA_Pro_2,",
            "main:  1920 x 400 , 500 x 301");
        row({"systemType', '", "brandWidth', '500", "brandHeight', '7", "brandSpacing', '12"},
            "talvogateway\n",
            "3,talvogateway,420,300,12,800,480,0,0,0,0,800,480,800,480,0,0,false,2,Talvo Gateway,"
            "Talvo_Gateway,",
            "System type from file:  \"talvogateway\"");
        row({"systemType', 'KRA"}, "kra", none, "Invalid system type:  \"KRA\"");
        row({}, "mxd", none, "Invalid system type:  \"mxd\"");
        row({}, "kr", none, "Invalid file size ( /opt/Merivon/ systemType.txt)");
        row({}, "", none, "Failed to open  /opt/Merivon/ systemType.txt");
    }
    void theKindAndItsGeometryComeFromDictionaryOrFile()
    {
        QFETCH(QStringList, dictionary);
        QFETCH(QByteArray, file);
        QFETCH(QString, logged);
        setDictionary(dictionary);
        Dispenser::writeFile(typeFile, file);
        if (file.isEmpty())
            QFile::remove(typeFile);
        const auto [values, log] = start();
        QTEST(values, "values");
        QVERIFY2(log.contains(logged), qPrintable(log.join('\n')));
    }

    void aFirstStartStoresWhatIsMissingInTheOrderOfReading()
    {
        setDictionary({"videoWidth', '1"});
        Dispenser::writeFile(typeFile, "talvo");
        start();
        QCOMPARE(stored().join(' '),
                 "videoWidth=1 systemModel=Talvo screenWidth=1920 screenHeight=1080 "
                 "serviceWidth=1920 serviceHeight=1079 videoHeight=1080 videoXoffset=0 "
                 "videoYoffset=55 mainWidth=1920 mainHeight=360 brandHeight=300 brandWidth=420 "
                 "brandSpacing=20 mainGradient=false numBarrels=4");
    }

    void withoutTheDatabaseTheFileStillCounts()
    {
        const QString away = Dispenser::sharedDatabase + ".away";
        Dispenser::writeFile(typeFile, "kra");
        QVERIFY(QFile::rename(Dispenser::sharedDatabase, away));
        const QString values = start().first;
        QFile::remove(Dispenser::sharedDatabase);
        QVERIFY(QFile::rename(away, Dispenser::sharedDatabase));
        QVERIFY2(values.startsWith("1,kra,420,300,20,1920,"), qPrintable(values));
    }

    void everySetterTellsOfAChangeAndOfNothingElse()
    {
        UiConfig& config = *UiConfig::getInstance();
        const QMetaObject& meta = UiConfig::staticMetaObject;
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            const QMetaProperty property = meta.property(i);
            QVariant other = property.read(&config).toInt() == 4 ? 3 : 4;
            QVERIFY(other.convert(property.userType()) || property.isEnumType());
            QSignalSpy own(&config, property.notifySignal());
            QSignalSpy data(&config, &UiConfig::dataChanged);
            bool ownFirst = false;
            const auto order = connect(&config, &UiConfig::dataChanged, this,
                                       [&] { ownFirst = own.count() == 1; });
            QCOMPARE(property.notifySignal().name(), property.name() + QByteArray("Changed"));
            QVERIFY(property.write(&config, other) && property.write(&config, other));
            QVERIFY2(property.read(&config) == other, property.name());
            QVERIFY2(own.count() == 1 && data.count() == 1 && ownFirst, property.name());
            disconnect(order);
        }
    }

    void overridesReadAgainAreToldOf()
    {
        UiConfig& config = *UiConfig::getInstance();
        const QStringList names
            = {"screenWidth", "screenHeight", "serviceWidth", "serviceHeight", "videoWidth",
               "videoHeight", "videoXoffset", "videoYoffset", "mainWidth",     "mainHeight",
               "brandHeight", "brandWidth",   "brandSpacing", "numBarrels"};
        setDictionary({"systemType', 'talvo"});
        config.initialize();
        for (const QString& name : names) {
            setDictionary({name + "', '-7"});
            const QMetaObject* meta = config.metaObject();
            const QMetaProperty property = meta->property(meta->indexOfProperty(name.toLatin1()));
            QSignalSpy own(&config, property.notifySignal());
            QVERIFY(config.readFromDb());
            QCOMPARE(property.read(&config), QVariant(-7));
            QCOMPARE(own.count(), 1);
        }
    }

    void savingWritesTwoSettingsAndTriesBoth()
    {
        UiConfig& config = *UiConfig::getInstance();
        setDictionary({});
        config.setMainGradient(true);
        config.setNumBarrels(7);
        QVERIFY(config.saveToDb());
        QCOMPARE(stored(), QStringList({"mainGradient=true", "numBarrels=7"}));

        Dispenser::sql("CREATE TRIGGER refuse BEFORE UPDATE ON dictionary WHEN "
                       "new.name='mainGradient' BEGIN SELECT RAISE(ABORT, 'no'); END");
        config.setNumBarrels(8);
        QTest::ignoreMessage(QtDebugMsg, "System config saved to DB:  false");
        QVERIFY(!config.saveToDb());
        QCOMPARE(stored(), QStringList({"mainGradient=true", "numBarrels=8"}));
        Dispenser::sql("DROP TRIGGER refuse");
    }
};

int main(int argc, char** argv)
{
    if (!Dispenser::isHere()) {
        fputs("run me inside sandbox/enter\n", stderr);
        return 1;
    }
    QCoreApplication app(argc, argv);
    if (argc > 1 && qstrcmp(argv[1], "--print") == 0) {
        fputs(qPrintable(values()), stdout);
        return 0;
    }
    UiConfigTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_uiconfig.moc"
