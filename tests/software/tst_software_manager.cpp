#include "Dispenser.h"

#include "software/SoftwareManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTimer>

namespace {

const QString stick = Dispenser::mediaFolder() + QStringLiteral("STICK/");

QStringList texts(const QVariantList& names)
{
    return QVariant(names).toStringList();
}

} // namespace

class TestSoftwareManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setApplicationName("SoftwareUpdater"); }

    void listsTheStore()
    {
        SoftwareManager manager;
        QDir store(Dispenser::versionsStore);
        QVERIFY(QDir().rename(store.path(), "/opt/Merivon/Elsewhere"));
        QVERIFY(manager.getMerivonVersions().isEmpty() && manager.getMFVVersions().isEmpty());
        for (const char* folder :
             {"b-2.00", "A b-1.00", "c-CURRENT", "plain", ".h-1", "z_merivonmfv_"})
            QVERIFY(store.mkpath(folder));
        for (const char* file : {"MerivonMFV_88.15.hex", "merivonmfv_88_9.hex", "X_MFV_V88.hex",
                                 "Old-release.txt", "a-b_zip.x.zip", "MerivonMFV_current.hex"})
            Dispenser::writeFile(store.filePath(file), "x");
        QVERIFY(QFile::link("nowhere", store.filePath("dangling-1_2")));
        QVERIFY(QFile::link("b-2.00", store.filePath("link-3")));
        QCOMPARE(texts(manager.getMerivonVersions()).join('|'), "A b-1.00|zip.x|b-2.00|link-3");
        QCOMPARE(texts(manager.getMFVVersions()).join('|'), "88.15|88|z_merivonmfv_");
        QVERIFY(store.removeRecursively() && QDir().rename("/opt/Merivon/Elsewhere", store.path()));
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

    void recordsWhatItDoesButNoInstallations()
    {
        Dispenser::clearRecord();
        SoftwareManager manager;
        manager.logImport("/media/pi/S/quillmark-%1-1.0.tar.gz");
        manager.logDeleted("KRA Pro-1.02.00");
        manager.logInstall("KRA Pro-1.02.00");
        manager.stopMerivon();
        QVERIFY(Dispenser::waitForRecord("vemlo stop"));
        const QString start = QStringLiteral("SoftwareUpdater|Message|");
        QCOMPARE(Dispenser::sql("SELECT name, type, msg FROM systemMessages ORDER BY id"),
                 QStringList({start + "Software Imported [/media/pi/S/quillmark-%1-1.0.tar.gz]",
                              start + "Software Deleted [KRA Pro-1.02.00]",
                              start + "Talvo shutting down"}));
    }

    // Without the helper script the updater quits all the same.
    void startsThePlatformHalfASecondLaterAndQuits()
    {
        const QString script = Dispenser::scriptsFolder + "start_detached_process.sh";
        SoftwareManager manager;
        for (const bool works : {true, false}) {
            QVERIFY(works || QFile::remove(script));
            Dispenser::clearRecord();
            QElapsedTimer clock;
            clock.start();
            manager.quitAndStartMerivon();
            bool stillRuns = false;
            QTimer::singleShot(300, this, [&] { stillRuns = Dispenser::record().isEmpty(); });
            QCOMPARE(QCoreApplication::exec(), 0);
            QVERIFY(stillRuns && clock.elapsed() >= 500);
            QVERIFY(works ? Dispenser::waitForRecord("vemlo start")
                          : Dispenser::record().isEmpty());
        }
    }
};

DISPENSER_TEST_MAIN(TestSoftwareManager, QCoreApplication)

#include "tst_software_manager.moc"
