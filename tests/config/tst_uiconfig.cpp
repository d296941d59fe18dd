#include "config/UiConfig.h"

#include "Dispenser.h"
#include "LogCapture.h"

#include <QCoreApplication>
#include <QFile>
#include <QMetaProperty>
#include <QProcess>
#include <QSignalSpy>

namespace {

// Replaces the dictionary by settings, "name=value" each.
void setDictionary(const QString& settings)
{
    QString statements = "DELETE FROM dictionary;";
    for (const QString& setting : settings.split('|', Qt::SkipEmptyParts))
        statements
            += "INSERT INTO dictionary VALUES(null,'" + setting.split('=').join("','") + "');";
    Dispenser::sql(statements);
}

QString stored(const char* columns)
{
    return Dispenser::sql(QString("SELECT %1 FROM dictionary ORDER BY id").arg(columns)).join(' ');
}

} // namespace

// There is one instance in a process, so the tests stand in the order of the states that it takes.
class UiConfigTest : public QObject
{
    Q_OBJECT

    UiConfig* m_config = nullptr;
    const QMetaObject& m_meta = UiConfig::staticMetaObject;

    // Every property, in the order of declaration.
    QString valuesWith(const QString& typeFile)
    {
        const QString path = "/opt/Merivon/systemType.txt";
        QFile::remove(path);
        Dispenser::writeFile(path, typeFile.toUtf8());
        if (typeFile.isEmpty() || typeFile == "pipe")
            QFile::remove(path);
        if (typeFile == "pipe") // that nobody ever writes to
            QProcess::execute("mkfifo", {path});
        m_config = UiConfig::getInstance();
        m_config->initialize();
        m_config->readFromDb();
        QStringList texts(QString::number(m_config->getSystemType()));
        for (int i = m_meta.indexOfProperty("systemName"); i < m_meta.propertyCount(); ++i)
            texts += m_meta.property(i).read(m_config).toString();
        return texts.join(',');
    }

private slots:
    void theKindAndItsGeometryComeFromDictionaryOrFile()
    {
        const QString none = "0,,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,false,0,Unknown,Unknown,";
        const QVector<QStringList> rows {
            // settings, type file, values, log line
            {"", "", none, "Failed to open  /opt/Merivon/ systemType.txt"},
            {"", "pipe", none, "Failed to open  /opt/Merivon/ systemType.txt"},
            {"", "kr", none, "Invalid file size ( /opt/Merivon/ systemType.txt)"},
            {"", "mxd", none, "Invalid system type:  \"mxd\""},
            {"systemType=KRA", "kra", none, "Invalid system type:  \"KRA\""},
            {"systemModel=KRA Pro 2|brandWidth=500|brandHeight=301|mainGradient=TRUE|mainXoffset=9|"
             "numBarrels=3|mainHeight=400",
             " kra \r\n",
             "1,kra,500,301,20,1920,1080,1920,1080,0,0,1920,1080,1920,400,0,0,true,3,KRA Pro 2,"
             "KRA_Pro_2,",
             "main:  1920 x 400 , 500 x 301"},
            {"systemType=|brandWidth=500|brandHeight=7|brandSpacing=12", "talvogateway\n",
             "3,talvogateway,420,300,12,800,480,0,0,0,0,800,480,800,480,0,0,false,2,"
             "Talvo Gateway,Talvo_Gateway,",
             "System type from file:  \"talvogateway\""},
            {"systemType=talvo", "kra",
             "2,talvo,420,300,20,1920,1080,1810,1080,0,55,1920,1079,1920,360,0,0,false,4,Talvo,"
             "Talvo,ZT51830KB",
             "SystemType:  UiConfig::TALVO , SystemModel:  \"Talvo\" , FCC ID:  \"ZT51830KB\""}};
        for (const QStringList& row : rows) {
            const LogCapture log;
            setDictionary(row.at(0));
            QCOMPARE(valuesWith(row.at(1)), row.at(2));
            QVERIFY2(log.has(row.at(3)), qPrintable(log.lines().join('\n')));
            if (m_config->getSystemType() == UiConfig::UNKNOWN)
                QCOMPARE(stored("name"), row.at(0).section('=', 0, 0));
        }
        QCOMPARE(stored("name"),
                 "systemType systemModel screenWidth screenHeight serviceWidth serviceHeight "
                 "videoWidth videoHeight videoXoffset videoYoffset mainWidth mainHeight "
                 "brandHeight brandWidth brandSpacing mainGradient numBarrels");
        Dispenser::sql("ALTER TABLE dictionary RENAME TO away");
        const QString withoutDictionary = valuesWith("kra");
        Dispenser::sql("ALTER TABLE away RENAME TO dictionary");
        QVERIFY(withoutDictionary.startsWith("1,kra,420,300,20,1920,"));
    }

    void settersAndTheDictionaryTellOfAChangeOnce()
    {
        const QList<QByteArray> notOverridden {"systemType", "mainXoffset", "mainYoffset"};
        for (int i = m_meta.propertyOffset(); i < m_meta.propertyCount(); ++i) {
            const QMetaProperty property = m_meta.property(i);
            const QByteArray name = property.name();
            QVariant other = property.read(m_config).toInt() == 4 ? 3 : 4;
            QVERIFY(other.convert(static_cast<int>(property.type())));
            QSignalSpy own(m_config, property.notifySignal());
            QList<int> ownBefore;
            const auto any = connect(m_config, &UiConfig::dataChanged, this,
                                     [&] { ownBefore += own.count(); });
            QVERIFY(property.write(m_config, other) && property.write(m_config, other));
            disconnect(any);
            QVERIFY2(property.read(m_config) == other && ownBefore == QList<int> {1}, name);
            QCOMPARE(property.notifySignal().name(), name + "Changed");

            setDictionary(name + "=-7");
            QVERIFY(m_config->readFromDb());
            if (property.type() == QVariant::Int && !notOverridden.contains(name))
                QVERIFY2(property.read(m_config) == -7 && own.count() == 2, name);
        }
    }

    void savingWritesTwoSettingsAndTriesBoth()
    {
        setDictionary("mainGradient=false");
        m_config->setMainGradient(true);
        Dispenser::sql("CREATE TRIGGER refuse BEFORE UPDATE ON dictionary WHEN "
                       "new.name='mainGradient' BEGIN SELECT RAISE(ABORT, 'no'); END");
        m_config->setNumBarrels(8);
        QTest::ignoreMessage(QtDebugMsg, "System config saved to DB:  false");
        QVERIFY(!m_config->saveToDb());
        QCOMPARE(stored("name, value"), "mainGradient|false numBarrels|8");
        Dispenser::sql("DROP TRIGGER refuse");
        QVERIFY(m_config->saveToDb());
        QCOMPARE(stored("name, value"), "mainGradient|true numBarrels|8");
    }
};

DISPENSER_TEST_MAIN(UiConfigTest, QCoreApplication)

#include "tst_uiconfig.moc"
