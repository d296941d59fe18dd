#include "Dispenser.h"

#include "software/SoftwareManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QMetaMethod>
#include <QTest>
#include <QTimer>

namespace {

const QString stick = Dispenser::mediaFolder() + QStringLiteral("STICK/");

// What a listing of the store has gained, separated by "|".
QString gained(const QVariantList& after, const QVariantList& before)
{
    QStringList names;
    for (const QVariant& name : after) {
        if (!before.contains(name))
            names.append(name.toString());
    }
    return names.join('|');
}

QStringList messages()
{
    return Dispenser::sql("SELECT name, type, msg FROM systemMessages ORDER BY id");
}

} // namespace

class TestSoftwareManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setApplicationName("SoftwareUpdater"); }

    void init()
    {
        Dispenser::sql("DELETE FROM systemMessages");
        Dispenser::clearRecord();
    }

    void keepsTheOrderOfItsMetaObject()
    {
        const QMetaObject& meta = SoftwareManager::staticMetaObject;
        QList<QByteArray> names;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            names.append(meta.method(i).name());
        QCOMPARE(names.join(' '),
                 QByteArray("startMerivon quitAndStartMerivon stopMerivon getMerivonVersions "
                            "getMFVVersions importSoftwareFromFile mediaDeviceExist "
                            "findAvailableSoftware getDirRecursivly getFileName currentVersions "
                            "logInstall logImport logDeleted getNameVersion"));
        QCOMPARE(meta.method(meta.methodOffset()).access(), QMetaMethod::Private);
    }

    void listsTheStore()
    {
        SoftwareManager manager;
        const QVariantList versions = manager.getMerivonVersions();
        const QVariantList images = manager.getMFVVersions();
        QDir store(Dispenser::versionsStore);
        for (const char* folder :
             {"b-2.00", "A b-1.00", "c-CURRENT", "plain", ".h-1", "z_merivonmfv_"})
            QVERIFY(store.mkdir(folder));
        for (const char* file : {"MerivonMFV_88.15.hex", "merivonmfv_88_9.hex", "X_MFV_V88.hex",
                                 "Old-release.txt", "a-b_zip.x.zip", "MerivonMFV_current.hex"})
            Dispenser::writeFile(store.filePath(file), "x");
        QVERIFY(QFile::link("nowhere", store.filePath("dangling-1_2")));
        QVERIFY(QFile::link("b-2.00", store.filePath("link-3")));
        QCOMPARE(gained(manager.getMerivonVersions(), versions), "A b-1.00|zip.x|b-2.00|link-3");
        QCOMPARE(gained(manager.getMFVVersions(), images), "88.15|88|z_merivonmfv_");

        QVERIFY(QDir().rename(Dispenser::versionsStore, "/opt/Merivon/Elsewhere"));
        const QVariantList none = manager.getMerivonVersions() + manager.getMFVVersions();
        QVERIFY(QDir().rename("/opt/Merivon/Elsewhere", Dispenser::versionsStore));
        QVERIFY(none.isEmpty());
    }

    void importsImagesByACopyAndTheRestByTheControlCommand()
    {
        const QString image = QStringLiteral("$(touch x) '%1'_MFV_V2.HEX");
        Dispenser::writeFile(stick + image, "image");
        Dispenser::writeFile(stick + "quillmark-a;b-1.hex.tar.gz", "no archive");
        QElapsedTimer clock;
        clock.start();
        SoftwareManager().importSoftwareFromFile(stick + image);
        QVERIFY(clock.elapsed() >= 2000);
        QCOMPARE(QFileInfo(Dispenser::versionsStore + image).size(), 5);
        SoftwareManager().importSoftwareFromFile(stick + "quillmark-a;b-1.hex.tar.gz");
        QCOMPARE(Dispenser::record(),
                 QStringList("vemlo import " + stick + "quillmark-a\\;b-1.hex.tar.gz"));
    }

    void recordsImportsAndDeletionsButNoInstallations()
    {
        SoftwareManager manager;
        manager.logImport("/media/pi/S/quillmark-%1-1.0.tar.gz");
        manager.logDeleted("KRA Pro-1.02.00");
        manager.logInstall("KRA Pro-1.02.00");
        const QString start = QStringLiteral("SoftwareUpdater|Message|Software ");
        QCOMPARE(messages(),
                 QStringList({start + "Imported [/media/pi/S/quillmark-%1-1.0.tar.gz]",
                              start + "Deleted [KRA Pro-1.02.00]"}));
    }

    void stopsThePlatform()
    {
        SoftwareManager().stopMerivon();
        QVERIFY(Dispenser::waitForRecord("vemlo stop"));
        QCOMPARE(messages(), QStringList("SoftwareUpdater|Message|Talvo shutting down"));
    }

    void startsThePlatformHalfASecondLaterAndQuits()
    {
        SoftwareManager manager;
        QElapsedTimer clock;
        clock.start();
        manager.quitAndStartMerivon();
        bool stillRuns = false;
        QTimer::singleShot(300, this, [&] { stillRuns = Dispenser::record().isEmpty(); });
        QCOMPARE(QCoreApplication::exec(), 0);
        QVERIFY(stillRuns && clock.elapsed() >= 500);
        QVERIFY(Dispenser::waitForRecord("vemlo start"));
    }

    void goesOnWithoutTheHelperScript()
    {
        const QString script = Dispenser::scriptsFolder + "start_detached_process.sh";
        QVERIFY(QFile::rename(script, script + ".away"));
        SoftwareManager manager;
        manager.stopMerivon();
        manager.quitAndStartMerivon();
        QCOMPARE(QCoreApplication::exec(), 0);
        QVERIFY(QFile::rename(script + ".away", script));
        QVERIFY(messages().contains(
            "SoftwareUpdater|Error|System Command Failed [/usr/local/bin/vemlo]"));
        QCOMPARE(Dispenser::record(), QStringList());
    }
};

DISPENSER_TEST_MAIN(TestSoftwareManager, QCoreApplication)

#include "tst_software_manager.moc"
