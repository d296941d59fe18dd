#include "Dispenser.h"
#include "Stage.h"

#include "software/FileHelper.h"

#include <QApplication>
#include <QTest>

using namespace OnTheStick;

// Touches that must do nothing, and that the next one does again.
class TouchesTest : public QObject
{
    Q_OBJECT

private slots:
    void platformRestartsOnceAndNotInDevelopment()
    {
        Stage stage;
        stage.open();
        QVERIFY(stage.tap("Restart Merivon"));
        for (const auto* lost : {"Restart Merivon", "Advanced Options"})
            stage.tap(Stage::middle(stage.button(lost)));
        QVERIFY(!stage.button("Back"));
        QCOMPARE(stage.manager.calls.size(), 1);
        stage.developing = true;
        stage.open();
        for (int i = 0; i < 2; ++i) {
            QTest::ignoreMessage(QtDebugMsg, "DEV MODE - restart skipped");
            QVERIFY(stage.tap("Restart Merivon"));
        }
        QCOMPARE(stage.manager.calls.size(), 1);
    }

    // A double tap on "Back" is one.
    void restartTakesNoTouchJustAfterAPanelHasGone()
    {
        Stage stage;
        for (const auto* panel : {"Update Software", "Advanced Options"}) {
            stage.open(UiConfig::TALVO, panel);
            QVERIFY(stage.tap("Back"));
            stage.tap(Stage::middle(stage.button("Restart Merivon")));
            QVERIFY(stage.manager.calls.isEmpty());
        }
        QTest::qWait(600);
        QVERIFY(stage.tap("Restart Merivon"));
        QCOMPARE(stage.manager.calls, QStringList("quitAndStartMerivon"));
    }

    void touchesOfATimeInWhichTheProgramStandsStillAreLost_data()
    {
        QTest::addColumn<QStringList>("taps");
        QTest::addColumn<int>("programs"); // that are run
        QTest::addColumn<QString>("after");
        const QString update = "Update Software";
        const QString advanced = "Advanced Options";
        const QString install = "Install Software";
        QTest::newRow("scan") << QStringList(update) << 0 << package;
        QTest::newRow("install") << QStringList {update, package, install} << 2
                                 << "Software has been updated successfully!";
        QTest::newRow("firmware") << QStringList {update, image, install} << 1
                                  << "Firmware has been updated successfully!";
        QTest::newRow("install by hand")
            << QStringList {advanced, "Install"} << 1 << "Software has been updated successfully!";
        QTest::newRow("refusal") << QStringList {advanced, "Remove"} << 0
                                 << "Can not delete software version currently running";
        QTest::newRow("removal") << QStringList {advanced, "-", "Remove", "Yes"} << 0
                                 << "Software Deleted";
        const QString file = ",STICK,updates,quillmark-talvo-1.04.00.tar.gz,Import";
        QTest::newRow("import") << (advanced + ",Import New Software,STICK,Home" + file).split(',')
                                << 0 << "File has been imported successfully!";
    }

    // All that can block does, and impatient hands tap all over the screen meanwhile.
    void touchesOfATimeInWhichTheProgramStandsStillAreLost()
    {
        QFETCH(QStringList, taps);
        QFETCH(int, programs);
        QFETCH(QString, after);
        Stage stage;
        stage.manager.packages = QStringList {"/media/" + package, "/media/" + image};
        stage.manager.versions = {"talvo-1", "talvo-1.03.00"};
        const auto standStill = [&stage] {
            stage.queueTapsEverywhere();
            QCoreApplication::processEvents(); // a step may keep the scene alive
            stage.queueTapsEverywhere();
            QTest::qSleep(300); // what counts time must not take this for time after it
        };
        stage.manager.meanwhile = stage.scripts.meanwhile = standStill;
        stage.translations.meanwhile = standStill;
        stage.translations.slowKey = "Current software version is: ";
        if (after.startsWith("Can not"))
            stage.translations.slowKey = after;
        stage.open(UiConfig::TALVOGATEWAY, taps.takeFirst());
        auto* dialog = stage.root()->findChild<FileHelper*>();
        if (dialog)
            connect(dialog, &FileHelper::listChanged, standStill);
        for (const auto& text : qAsConst(taps)) {
            QTRY_VERIFY2(stage.shows(text), qPrintable(text));
            QVERIFY(stage.tap(stage.visible("text", text).first()));
        }
        for (int ended = 0; ended < programs; ++ended) {
            QTest::qWait(300);
            emit stage.launcher("/")->endLaunch("");
        }
        const auto calls = stage.manager.calls;
        QTRY_VERIFY(stage.shows(after));
        QTest::qWait(300);
        QVERIFY(stage.button("Back") && !stage.button("Yes"));
        QVERIFY(!dialog || !dialog->isVisible());
        int started = 0;
        const auto launchers = stage.root()->findChildren<FakeLaunchAsync*>();
        for (const auto* launcher : launchers)
            started += launcher->launched.size();
        QCOMPARE(started, programs);
        QCOMPARE(stage.manager.calls, calls);
        QCOMPARE(stage.shows("No new version was added"), after.endsWith("imported successfully!"));
        if (after == package)
            QVERIFY(!stage.isInstallOn() && stage.tap(package) && stage.isInstallOn());
        QVERIFY(stage.tap("Back") && !stage.button("Back"));
    }

    void heldFingerChoosesNothingWhileAPackageIsInstalled()
    {
        Stage stage;
        stage.chooseSoftware(package);
        const auto entry = Stage::middle(stage.button(image));
        const auto install = Stage::middle(stage.button("Install Software"));
        auto* window = stage.window();
        stage.touch().press(1, entry, window);
        stage.touch().stationary(1).press(2, install, window);
        stage.touch().stationary(1).release(2, install, window);
        auto* launcher = stage.launcher("import");
        QVERIFY(launcher);
        stage.touch().release(1, entry, window);
        QVERIFY(!stage.isInstallOn());
        emit launcher->endLaunch("");
        emit launcher->endLaunch("");
        QVERIFY(stage.tap("Install Software"));
        QCOMPARE(launcher->launched.count("/usr/local/bin/vemlo import /media/" + package), 2);
    }

    void messageOnTheWholeScreenLetsNothingThroughUntilItIsGone()
    {
        Stage stage;
        stage.open(UiConfig::KRA, "Advanced Options");
        QVERIFY(stage.tap(stage.visible("btnText", "Install").last()));
        QTRY_VERIFY(!stage.visible("fullscreenWidth").isEmpty());
        auto* launcher = stage.launcher("firmware update");
        const auto* popUp = stage.visible("fullscreenWidth").last();
        QVERIFY(launcher);
        stage.tapEverywhere();
        emit launcher->endLaunch("flashed");
        QTRY_VERIFY(popUp->opacity() > 0.9);
        QTRY_VERIFY(popUp->opacity() < 0.7); // fading out
        stage.tapEverywhere(); // the close square, too
        QVERIFY(popUp->isVisible() && stage.button("Back"));
        stage.tapEverywhere();
        QCOMPARE(launcher->launched.size(), 1);
        QTRY_VERIFY(!popUp->isVisible());
        QVERIFY(stage.tap("Back") && !stage.button("Back"));
    }
};

DISPENSER_TEST_MAIN(TouchesTest, QApplication)
#include "tst_touches.moc"
