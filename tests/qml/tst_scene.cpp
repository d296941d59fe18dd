#include "Stage.h"

#include "Dispenser.h"
#include <QApplication>
#include <QRegularExpression>
#include <QTest>

namespace {
const QString package = QStringLiteral("/media/pi/STICK/quillmark-base-1.03.00.tar.gz");
const QString image = QStringLiteral("/media/pi/STICK/MerivonMFV_V2.hex");
const QString foreignImage = QStringLiteral("/media/pi/STICK/x_MFV_V2.hex");
const QString versionText = QStringLiteral("Current software version is: 1.03.00");

QString name(const QString& path)
{
    return path.section('/', -1);
}
} // namespace

class SceneTest : public QObject
{
    Q_OBJECT

    // The update screen with its list read and an entry of it chosen.
    static void chooseSoftware(Stage& stage, const QString& path)
    {
        stage.manager.packages = QStringList {package, image, foreignImage};
        stage.open();
        QVERIFY(stage.tap("Update Software"));
        QTRY_VERIFY_WITH_TIMEOUT(stage.button(name(path)), 1500);
        QVERIFY(stage.tap(name(path)));
        QCOMPARE(stage.button("Install Software")->state(), QString("stateDeselected"));
    }

    static void openAdvanced(Stage& stage, FakeConfig::SystemType type = FakeConfig::TALVO)
    {
        stage.config.systemType = type;
        stage.config.systemName = QStringLiteral("talvo");
        stage.open();
        QVERIFY(stage.tap("Advanced Options"));
    }

private slots:
    void initTestCase() { Stage::registerTypes(); }

    void oneScreenAtATimeWithItsTitleInTheLanguageOfTheMoment()
    {
        Stage stage;
        stage.translations.texts = {{"Software Updatergerman", "Titel"},
                                    {"Advanced Optionsgerman", "Erweitert"},
                                    {"Scanning, please wait...german", "Suche"},
                                    {"Backgerman", "Zurück"}};
        stage.open();
        QTRY_VERIFY(stage.shows("Software Updater") && !stage.button("Back"));
        QVERIFY(stage.tap("Advanced Options"));
        QTRY_VERIFY(stage.shows("Advanced Options") && !stage.button("Restart Merivon"));
        stage.translations.setLanguage("german");
        QTRY_VERIFY(stage.shows("Erweitert"));
        QVERIFY(stage.tap(QStringLiteral("Zurück")));
        QTRY_VERIFY(stage.shows("Titel"));
        QVERIFY(stage.tap("Update Software"));
        QTRY_VERIFY(stage.shows("Scanning, please wait...")); // looked up when the panel was made
    }

    void platformRestartsOnceAndNotInDevelopment()
    {
        Stage stage;
        stage.open();
        const auto* button = stage.button("Restart Merivon");
        const auto middle = button->mapToScene({54, 34});
        stage.tap(middle);
        stage.tap(middle);
        QCOMPARE(stage.manager.calls, QStringList("quitAndStartMerivon"));

        Stage bench;
        bench.developing = true;
        bench.open();
        QTest::ignoreMessage(QtDebugMsg, "DEV MODE - restart skipped");
        QVERIFY(bench.tap("Restart Merivon"));
        QVERIFY(bench.manager.calls.isEmpty());
    }

    void scanSaysWhatItFound_data()
    {
        QTest::addColumn<bool>("media");
        QTest::addColumn<QStringList>("packages");
        QTest::addColumn<QString>("text");
        QTest::newRow("no medium")
            << false << QStringList(package) << "Media not found! Please insert USB Media";
        QTest::newRow("nothing on it") << true << QStringList() << "New Software Not Found";
        QTest::newRow("a package") << true << QStringList(package) << name(package);
    }

    void scanSaysWhatItFound()
    {
        QFETCH(bool, media);
        QFETCH(QStringList, packages);
        QFETCH(QString, text);
        Stage stage;
        stage.manager.media = media;
        stage.manager.packages = packages;
        stage.open();
        QVERIFY(stage.tap("Update Software"));
        QTRY_VERIFY(stage.shows("Scanning, please wait...") && stage.shows(versionText));
        QCOMPARE(stage.button("Install Software")->state(), QString("stateDisabled"));
        QTRY_VERIFY_WITH_TIMEOUT(stage.shows(text), 1500);
        QVERIFY(!stage.shows("Scanning, please wait..."));
    }

    void packageIsImportedThenInstalledWithTheDatabaseLeftAlone()
    {
        Stage stage;
        chooseSoftware(stage, package);
        QVERIFY(stage.tap("Install Software"));
        auto* launcher = stage.launcher("import");
        QVERIFY(launcher);
        QTRY_VERIFY(stage.shows("Importing Software, please wait..."));
        QCOMPARE(stage.manager.calls, QStringList("logImport " + package));

        QTest::ignoreMessage(QtDebugMsg, "version base-1.03.00");
        emit launcher->endLaunch("Error: not looked at");
        QTRY_VERIFY(stage.shows("Installing Software, please wait..."));
        QTest::qWait(1100); // the pop-up fades in
        QCOMPARE(stage.translations.lookUps.last(), QString("KeyCloseDatabase"));
        QCOMPARE(launcher->launched,
                 (QStringList {"/usr/local/bin/vemlo import " + package,
                               "/usr/local/bin/vemlo install base-1.03.00"}));
        QCOMPARE(stage.button("Install Software")->state(), QString("stateDisabled"));

        emit launcher->endLaunch("done");
        QTRY_VERIFY(stage.shows("Software has been updated successfully!"));
        QCOMPARE(stage.button("Install Software")->state(), QString("stateDeselected"));
        QVERIFY(stage.tap("Back") && stage.button("Restart Merivon"));
    }

    void corruptedPackageLeavesTheButtonOffUntilTheNextChoice()
    {
        Stage stage;
        chooseSoftware(stage, package);
        QVERIFY(stage.tap("Install Software"));
        auto* launcher = stage.launcher("import");
        emit launcher->endLaunch("");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("'logInstallFailed' of object"));
        emit launcher->endLaunch("some Error here");
        QTRY_VERIFY(stage.shows("Software undefined is corrupted. Can not install."));
        QCOMPARE(stage.button("Install Software")->state(), QString("stateDisabled"));

        QVERIFY(stage.tap(name(package)) && stage.tap("Install Software"));
        QTRY_VERIFY(stage.shows("Importing Software, please wait..."));
        emit launcher->endLaunch("");
        QCOMPARE(launcher->launched.size(), 4);
    }

    void firmwareIsFlashedWhenItCarriesThePlatformsName()
    {
        Stage stage;
        chooseSoftware(stage, foreignImage);
        QVERIFY(stage.tap("Install Software"));
        QVERIFY(!stage.launcher("/"));
        QCOMPARE(stage.button("Install Software")->state(), QString("stateDisabled"));

        QVERIFY(stage.tap(name(image)) && stage.tap("Install Software"));
        auto* launcher = stage.launcher("firmware update " + image);
        QTRY_VERIFY(launcher && stage.shows("Updating firmware, please wait..."));
        emit launcher->endLaunch("Error");
        QTRY_VERIFY(stage.shows("Firmware has been updated successfully!"));
        QVERIFY(stage.tap("Back") && stage.button("Restart Merivon"));
    }

    void wheelsFollowTheKindOfDispenserAndTheStore()
    {
        Stage gateway;
        gateway.manager.versions = {"talvo-1", "talvo-2"};
        openAdvanced(gateway, FakeConfig::TALVOGATEWAY);
        QCOMPARE(gateway.visible("scroll_width", 400).size(), 1);
        QVERIFY(!gateway.shows("MFV Version History"));
        QTRY_COMPARE(gateway.visible("currentText", "talvo-2").size(), 1);
        QVERIFY(gateway.tap("Back"));
        gateway.manager.versions << "talvo-3";
        QVERIFY(gateway.tap("Advanced Options"));
        QCOMPARE(gateway.visible("currentText", "talvo-3").size(), 1);

        Stage empty;
        openAdvanced(empty, FakeConfig::KRA);
        QCOMPARE(empty.visible("scroll_width", 340).size(), 2);
        QVERIFY(empty.tap("Remove"));
        QVERIFY(empty.tap("Install")); // of the versions
        QVERIFY(!empty.button("Yes") && !empty.launcher("/"));
    }

    void versionIsInstalledByHand()
    {
        Stage stage;
        stage.manager.versions = {"talvo-1"};
        openAdvanced(stage);
        QVERIFY(stage.tap("Install"));
        auto* launcher = stage.launcher("install talvo-1");
        QTRY_VERIFY(launcher && stage.shows("Installing Software, please wait..."));
        QTest::qWait(1100);
        QCOMPARE(stage.translations.lookUps.last(), QString("KeyCloseDatabase"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("'logInstallFailed' of object"));
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
        openAdvanced(stage, FakeConfig::KRA);
        stage.tap(stage.visible("btnText", "Install").last()->mapToScene({54, 34}));
        auto* launcher = stage.launcher("firmware update /opt/Merivon/Versions/MerivonMFV_.hex");
        QTRY_VERIFY(launcher && stage.shows("Updating firmware (approx 4 min), please wait..."));
        emit launcher->endLaunch("flashed 12 KB");
        QTRY_VERIFY(stage.shows("flashed 12 KB"));
        QVERIFY(stage.tap("Back") && !stage.button("Restart Merivon"));
        QTest::qWait(1100);
        QVERIFY(stage.tap("Back") && stage.button("Restart Merivon"));
    }

    void exactlyTheVersionThatWasConfirmedIsRemoved_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("shellWord");
        QTest::newRow("plain") << "talvo-1.02.00"
                               << "talvo-1.02.00";
        QTest::newRow("accent") << "café-1"
                                << "café-1";
        QTest::newRow("option") << "-rf"
                                << "-rf";
        QTest::newRow("blank") << "KRA Pro-1"
                               << "'KRA Pro-1'";
        QTest::newRow("quote") << "a'b-1"
                               << "'a'\\''b-1'";
        QTest::newRow("command") << "a;touch x"
                                 << "'a;touch x'";
        QTest::newRow("expansion") << "$(touch x)*"
                                   << "'$(touch x)*'";
        QTest::newRow("line break") << "a\n-1"
                                    << "'a\n-1'";
        for (const auto* refused : {"", ".", "..", "../Database-1"})
            QTest::newRow(*refused ? refused : "empty") << refused << "";
    }

    void exactlyTheVersionThatWasConfirmedIsRemoved()
    {
        QFETCH(QString, version);
        QFETCH(QString, shellWord);
        Stage stage;
        stage.manager.versions = {version};
        openAdvanced(stage);
        QVERIFY(stage.tap("Remove"));
        QTRY_VERIFY(stage.shows("Delete Software Version " + version + "?") && !stage.button("No"));
        if (shellWord.isEmpty())
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^nothing deleted, "));
        QVERIFY(stage.tap("Yes"));
        const bool removed = !shellWord.isEmpty();
        QCOMPARE(stage.scripts.commands.value(0),
                 removed ? "rm -rf /opt/Merivon/Versions/" + shellWord : QString());
        QCOMPARE(stage.manager.calls.contains("logDeleted " + version), removed);
        QTRY_COMPARE(stage.shows("Software Deleted"), removed);
    }

    void runningVersionStaysAndBackLeavesTheQuestion()
    {
        Stage stage;
        stage.manager.versions = {"talvo-1", "talvo-1.03.00"};
        openAdvanced(stage);
        QVERIFY(stage.tap("Remove"));
        QTRY_VERIFY(stage.shows("Can not delete software version currently running"));
        stage.manager.versions.removeLast();
        QVERIFY(stage.tap("Back") && stage.tap("Advanced Options") && stage.tap("Remove"));
        QVERIFY(stage.button("Yes") && stage.tap("Back") && stage.tap("Advanced Options"));
        QVERIFY(!stage.button("Yes") && stage.scripts.commands.isEmpty());
    }

    void fileIsImportedThroughTheDialog()
    {
        Stage stage;
        stage.mediaDirectory
            = Dispenser::mediaFolder().chopped(1); // the scene is given it without "/"
        const QString file = stage.mediaDirectory + "/STICK/folder/quillmark-extra-2.tar.gz";
        Dispenser::writeFile(file, "x");
        openAdvanced(stage);
        QVERIFY(stage.tap("Import New Software") && !stage.button("Back"));
        QVERIFY(!stage.button("Import")->isEnabled());
        QTRY_VERIFY(stage.button("STICK"));
        QVERIFY(stage.tap("STICK"));
        QTRY_VERIFY(stage.button("folder"));
        QVERIFY(stage.tap("folder"));
        QTRY_VERIFY(stage.button(name(file)));
        QVERIFY(stage.tap(name(file)));
        QVERIFY(stage.tap("Import"));
        QCOMPARE(stage.manager.calls, QStringList("importFile " + file));
        QTRY_VERIFY(stage.shows("File has been imported successfully!") && stage.button("Back"));

        QVERIFY(stage.tap("Import New Software"));
        QTRY_VERIFY(stage.shows(stage.mediaDirectory) && !stage.button("Import")->isEnabled());
        QVERIFY(stage.tap("Close") && stage.tap("Back"));
    }
};

DISPENSER_TEST_MAIN(SceneTest, QApplication)
#include "tst_scene.moc"
