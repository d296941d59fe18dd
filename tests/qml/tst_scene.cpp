#include "Dispenser.h"
#include "Stage.h"

#include <QApplication>
#include <QRegularExpression>
#include <QTest>

using namespace OnTheStick;

namespace {
const QRegularExpression missingLogger(QStringLiteral("'logInstallFailed' of object"));
} // namespace

class SceneTest : public QObject
{
    Q_OBJECT

private slots:
    void oneScreenAtATimeWithItsTitleInTheLanguageOfTheMoment()
    {
        Stage stage;
        stage.translations.texts = {{"Software Updatergerman", "Titel"},
                                    {"Advanced Optionsgerman", "Erweitert"},
                                    {"Scanning, please wait...german", "Suche"},
                                    {"Backgerman", "Nach hinten"}};
        stage.open();
        QVERIFY(stage.shows("Software Updater") && !stage.button("Back"));
        QVERIFY(stage.tap("Advanced Options"));
        QVERIFY(stage.shows("Advanced Options") && !stage.button("Restart Merivon"));
        stage.translations.language = "german";
        emit stage.translations.languageChanged();
        QVERIFY(stage.shows("Erweitert") && stage.tap("Nach hinten") && stage.shows("Titel"));
        QVERIFY(stage.tap("Update Software"));
        QVERIFY(stage.shows("Scanning, please wait...")); // looked up when the panel was made
    }

    void busyScreenNamesWhatIsWorkedOnAndCountsTheTime()
    {
        Stage stage;
        stage.chooseSoftware(package);
        const int inTheList = stage.visible("text", package).size();
        QVERIFY(stage.tap("Install Software"));
        QTRY_VERIFY(stage.shows("0:00") && stage.visible("text", package).size() > inTheList);
        QTRY_VERIFY(stage.shows("0:01"));
        stage.js("busy.countedAt -= 3600000"); // the dispenser's clock is set forward, and back
        QTRY_VERIFY(stage.shows("0:02"));
        stage.js("busy.countedAt += 7200000");
        QTRY_VERIFY(stage.shows("0:03"));
        emit stage.launcher("import")->endLaunch("");
        emit stage.launcher("import")->endLaunch("");
        QVERIFY(!stage.shows("0:03"));
    }

    // The prescribed word does not look at the command's result.
    void commandsOwnErrorStandsUnderTheWordOfSuccess()
    {
        Stage stage;
        stage.chooseSoftware(image);
        for (const auto* result : {"flashed", "x\nError: no answer\n"}) {
            QVERIFY(stage.tap("Install Software"));
            emit stage.launcher("firmware")->endLaunch(result);
            QTRY_VERIFY(stage.shows("Firmware has been updated successfully!"));
            QCOMPARE(stage.shows("Error: no answer"), *result == 'x');
        }
        QVERIFY(stage.tap(package) && stage.tap("Install Software"));
        QVERIFY(!stage.shows("Error: no answer"));
        emit stage.launcher("import")->endLaunch("Error: disk full");
        emit stage.launcher("import")->endLaunch("");
        QTRY_VERIFY(stage.shows("Error: disk full"));
    }

    void scanSaysWhatItFound()
    {
        Stage stage;
        stage.manager.media = false;
        const auto scan = [&stage](const QString& text) {
            QVERIFY(stage.shows("Scanning, please wait...") && !stage.isInstallOn());
            QVERIFY(stage.shows("Current software version is: 1.03.00"));
            QTRY_VERIFY(stage.shows(text));
            QVERIFY(!stage.shows("Scanning, please wait...") && !stage.isInstallOn());
        };
        stage.open(UiConfig::TALVOGATEWAY, "Update Software");
        scan("Media not found! Please insert USB Media");
        stage.manager.media = true;
        QVERIFY(stage.tap("Back") && stage.tap("Update Software"));
        scan("New Software Not Found");
        stage.manager.packages << "/media/" + package;
        QVERIFY(stage.tap("Back") && stage.tap("Update Software"));
        scan(package);
    }

    void packageIsImportedThenInstalledWithTheDatabaseLeftAlone()
    {
        Stage stage;
        stage.chooseSoftware(package);
        QVERIFY(stage.tap("Install Software"));
        auto* launcher = stage.launcher("import");
        QTRY_VERIFY(launcher && stage.shows("Importing Software, please wait..."));
        QCOMPARE(stage.manager.calls, QStringList("logImport /media/" + package));

        QTest::ignoreMessage(QtDebugMsg, "version base-1.03.00");
        emit launcher->endLaunch("Error: not looked at");
        QTRY_VERIFY(stage.shows("Installing Software, please wait..."));
        QTest::qWait(1100); // until the pop-up is faded in
        QCOMPARE(stage.translations.lookUps.last(), QString("KeyCloseDatabase"));
        QCOMPARE(launcher->launched,
                 (QStringList {"/usr/local/bin/vemlo import /media/" + package,
                               "/usr/local/bin/vemlo install base-1.03.00"}));
        QVERIFY(!stage.isInstallOn());
        emit launcher->endLaunch("done");
        QTRY_VERIFY(stage.shows("Software has been updated successfully!"));
        QVERIFY(stage.isInstallOn() && stage.tap("Back") && stage.button("Restart Merivon"));
    }

    void corruptedPackageLeavesTheButtonOffUntilTheNextChoice()
    {
        Stage stage;
        stage.chooseSoftware(package);
        QVERIFY(stage.tap("Install Software"));
        auto* launcher = stage.launcher("import");
        emit launcher->endLaunch("");
        QTest::ignoreMessage(QtWarningMsg, missingLogger);
        emit launcher->endLaunch("some Error here");
        QTRY_VERIFY(stage.shows("Software undefined is corrupted. Can not install."));
        QVERIFY(!stage.isInstallOn());
        QVERIFY(stage.tap(package) && stage.tap("Install Software"));
        QTRY_VERIFY(stage.shows("Importing Software, please wait..."));
        emit launcher->endLaunch("");
        QCOMPARE(launcher->launched.size(), 4);
    }

    void firmwareIsFlashedWhenItCarriesThePlatformsName()
    {
        Stage stage;
        stage.chooseSoftware(foreignImage);
        QVERIFY(stage.tap("Install Software"));
        QVERIFY(!stage.launcher("/") && !stage.isInstallOn());
        QVERIFY(stage.tap(image) && stage.tap("Install Software"));
        auto* launcher = stage.launcher("firmware update /media/" + image);
        QTRY_VERIFY(launcher && stage.shows("Updating firmware, please wait..."));
        emit launcher->endLaunch("Error");
        QTRY_VERIFY(stage.shows("Firmware has been updated successfully!"));
        QVERIFY(stage.isInstallOn() && stage.tap("Back") && stage.button("Restart Merivon"));
    }

    void wheelsFollowTheKindOfDispenserAndTheStore()
    {
        Stage stage;
        stage.manager.versions = {"talvo-1", "talvo-2"};
        stage.open(UiConfig::TALVOGATEWAY, "Advanced Options");
        QCOMPARE(stage.manager.reads, 1);
        QVERIFY(!stage.shows("MFV Version History"));
        QCOMPARE(stage.visible("scroll_width", 400).size(), 1);
        QVERIFY(!stage.visible("currentText", "talvo-2").isEmpty());
        stage.manager.versions << "talvo-3";
        QVERIFY(stage.tap("Back") && stage.tap("Advanced Options"));
        QVERIFY(!stage.visible("currentText", "talvo-3").isEmpty());

        stage.manager.versions.clear();
        stage.open(UiConfig::KRA, "Advanced Options");
        QCOMPARE(stage.visible("scroll_width", 340).size(), 2);
        QVERIFY(stage.tap("Remove") && stage.tap("Install"));
        QVERIFY(!stage.button("Yes") && !stage.launcher("/"));
    }

    void versionIsInstalledByHand()
    {
        Stage stage;
        stage.manager.versions = {"talvo-1"};
        stage.open(UiConfig::TALVO, "Advanced Options");
        QVERIFY(stage.tap("Install"));
        auto* launcher = stage.launcher("install talvo-1");
        QTRY_VERIFY(launcher && stage.shows("Installing Software, please wait..."));
        QTest::qWait(1100);
        QCOMPARE(stage.translations.lookUps.last(), QString("KeyCloseDatabase"));
        QTest::ignoreMessage(QtWarningMsg, missingLogger);
        emit launcher->endLaunch("Error");
        QTRY_VERIFY(stage.shows("Software talvo-1 is corrupted. Can not install."));
        QVERIFY(stage.tap("Install"));
        emit launcher->endLaunch("");
        QTRY_VERIFY(stage.shows("Software has been updated successfully!"));
        QCOMPARE(stage.manager.calls.count("logInstall talvo-1"), 3); // at two begins and one end
    }

    void storedFirmwareIsFlashedAndAnswersForASecond()
    {
        Stage stage;
        stage.open(UiConfig::KRA, "Advanced Options");
        QVERIFY(stage.tap(stage.visible("btnText", "Install").last()));
        auto* launcher = stage.launcher("firmware update /opt/Merivon/Versions/MerivonMFV_.hex");
        QTRY_VERIFY(launcher && stage.shows("Updating firmware (approx 4 min), please wait..."));
        emit launcher->endLaunch("flashed 12 KB");
        QVERIFY(stage.shows("flashed 12 KB"));
        QTest::qWait(900);
        QVERIFY(stage.shows("flashed 12 KB"));
        QTRY_VERIFY(!stage.shows("flashed 12 KB"));
    }

    void shellTakesAVersionsNameAsOneWord_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("word");
        for (const QString name : {"talvo-1.02.00", "café-1", "-rf"})
            QTest::newRow(qPrintable(name)) << name << name;
        QTest::newRow("blank") << QString("KRA Pro-1") << QString("'KRA Pro-1'");
        QTest::newRow("quote") << QString("a'b") << QString("'a'\\''b'");
        QTest::newRow("parent") << QString("..") << QString();
    }

    void shellTakesAVersionsNameAsOneWord()
    {
        QFETCH(QString, version);
        QFETCH(QString, word);
        Stage stage;
        stage.manager.versions = {version};
        stage.open(UiConfig::TALVO, "Advanced Options");
        QVERIFY(stage.tap("Remove"));
        QVERIFY(stage.shows("Delete Software Version " + version + "?") && !stage.button("No"));
        QStringList commands("rm -rf /opt/Merivon/Versions/" + word);
        if (word.isEmpty()) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^nothing deleted, "));
            commands.clear();
        }
        QVERIFY(stage.tap("Yes"));
        QTRY_VERIFY(
            stage.shows(word.isEmpty() ? "This version can not be deleted" : "Software Deleted"));
        QCOMPARE(stage.scripts.commands, commands);
        QCOMPARE(stage.manager.calls.contains("logDeleted " + version), !word.isEmpty());
    }

    void runningVersionStaysAndBackLeavesTheQuestion()
    {
        Stage stage;
        stage.manager.versions = {"talvo-1", "talvo-1.03.00"};
        stage.open(UiConfig::TALVO, "Advanced Options");
        QVERIFY(stage.tap("Remove"));
        QTRY_VERIFY(stage.shows("Can not delete software version currently running"));
        stage.manager.versions.removeLast();
        QVERIFY(stage.tap("Back") && stage.tap("Advanced Options") && stage.tap("Remove"));
        QVERIFY(stage.button("Yes") && stage.tap("Back") && stage.tap("Advanced Options"));
        QVERIFY(!stage.button("Yes") && stage.scripts.commands.isEmpty());
    }
};

DISPENSER_TEST_MAIN(SceneTest, QApplication)
#include "tst_scene.moc"
