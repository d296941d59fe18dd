#include "Dispenser.h"
#include "Stage.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTest>

namespace {

const QString package = QStringLiteral("quillmark-talvo-1.04.00.tar.gz");

} // namespace

class SceneTest : public QObject
{
    Q_OBJECT

private slots:
    void messageTellsWhatBecameOfAJob_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QStringList>("taps");
        QTest::addColumn<QStringList>("message");
        const QStringList update {"Update Software", package, "Install Software"};
        const QStringList flash {"Update Software", "MerivonMFV_V2.16.hex", "Install Software"};
        const QStringList import {"Advanced Options", "Import New Software", "BACKUP",
                                  "quillmark-talvo-1.01.00.tar.gz", "Import"};
        const QString imported = "File has been imported successfully!";
        QTest::newRow("failed install by hand")
            << "install error" << QStringList {"Advanced Options", "Install"}
            << QStringList {"Software talvo-1.03.00 is corrupted. Can not install."};
        QTest::newRow("failed update")
            << "import error disk full" << update
            << QStringList {"Software undefined is corrupted. Can not install.",
                            "Error: disk full"};
        QTest::newRow("failed firmware")
            << "firmware error no answer" << flash
            << QStringList {"Firmware has been updated successfully!", "Error: no answer"};
        QTest::newRow("failed import")
            << "import error" << import << QStringList {imported, "No new version was added"};
        QTest::newRow("import") << "" << import << QStringList {imported};
    }

    // The words that are prescribed may praise what failed; what stands below them does not.
    void messageTellsWhatBecameOfAJob()
    {
        QFETCH(QString, fault);
        QFETCH(QStringList, taps);
        QFETCH(QStringList, message);
        Dispenser::setFaults({fault});
        Stage stage;
        QVERIFY(stage.tap(taps));
        QTRY_COMPARE_WITH_TIMEOUT(stage.message(), message, 20000);
        if (taps.contains("Install Software"))
            QCOMPARE(stage.offersInstall(), !message.first().contains("corrupted"));
    }

    void scanTellsWhatItFoundAndOffersNoInstallBefore()
    {
        const auto home = qgetenv("HOME"); // the media lie under its name
        qputenv("HOME", "/home/nobody");
        Stage stage;
        QVERIFY(stage.tap({"Update Software"}) && stage.shows("Scanning, please wait..."));
        QTRY_VERIFY(stage.shows("Media not found! Please insert USB Media"));
        QVERIFY(QDir().mkpath("/media/nobody/EMPTY"));
        QVERIFY(stage.tap({"Back", "Update Software"}));
        QTRY_VERIFY(stage.shows("New Software Not Found"));
        qputenv("HOME", home);
        QVERIFY(stage.tap({"Back", "Update Software", package}));
        QVERIFY(!stage.shows("New Software Not Found"));
        QVERIFY(stage.offersInstall() && stage.tap({"Back", "Update Software"}));
        QVERIFY(!stage.offersInstall() && !stage.shows(package));
    }

    void busyScreenNamesTheWorkAndCountsItsTimeWhateverTheClockSays()
    {
        Dispenser::writeFile("/tmp/import", {});
        Dispenser::writeFile("/tmp/install", {});
        Dispenser::setFaults({"import hold /tmp/import", "install hold /tmp/install"});
        Stage stage;
        QVERIFY(stage.tap({"Update Software", package, "Install Software"}));
        QTRY_COMPARE(stage.message(),
                     (QStringList {"Importing Software, please wait...", package, "0:01"}));
        stage.js("busy.countedAt -= 3600000"); // the dispenser's clock is set forward, and back
        QTRY_VERIFY(stage.shows("0:02"));
        stage.js("busy.countedAt += 7200000");
        QTRY_VERIFY(stage.shows("0:03"));
        QFile::remove("/tmp/import");
        QTRY_VERIFY_WITH_TIMEOUT(stage.shows("Installing Software, please wait..."), 20000);
        QFile::remove("/tmp/install");
        QTRY_VERIFY_WITH_TIMEOUT(stage.shows("Software has been updated successfully!"), 20000);
        QVERIFY(stage.offersInstall());
    }

    void longListIsMadeOfTheRowsInSightAndKeepsTheChoice()
    {
        Stage stage;
        QVERIFY(stage.tap({"Update Software", package}));
        auto* panel = stage.visible("softwareListModel").first();
        stage.js("softwareListModel = Array.from({ length: 20000 }, (each, i) => '/media/p' + i)",
                 panel);
        auto* rows = stage.visible("cacheBuffer").first();
        QVERIFY(stage.tap({"p1"}));
        rows->setProperty("contentY", 500000);
        QTRY_VERIFY(stage.shows("p5001") && !stage.shows("p1"));
        QVERIFY(stage.visible("radioButtonText").size() < 20);
        rows->setProperty("contentY", 0);
        QTRY_COMPARE(stage.visible("checked", true).size(), 1);
        QCOMPARE(stage.visible("checked", true).first()->property("text").toString(),
                 QString("p1"));
    }
};

DISPENSER_TEST_MAIN(SceneTest, QApplication)
#include "tst_scene.moc"
