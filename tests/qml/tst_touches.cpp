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
        QVERIFY(stage.tap("Restart Merivon") && stage.tap("Restart Merivon"));
        QVERIFY(stage.tap("Advanced Options") && !stage.button("Back"));
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
            QVERIFY(stage.tap("Back") && stage.tap("Restart Merivon"));
            QVERIFY(stage.manager.calls.isEmpty());
        }
        QTest::qWait(600);
        QVERIFY(stage.tap("Restart Merivon"));
        QCOMPARE(stage.manager.calls, QStringList("quitAndStartMerivon"));
    }

    void touchesOfATimeInWhichTheProgramStandsStillAreLost_data()
    {
        QTest::addColumn<QStringList>("taps");
        QTest::addColumn<QString>("after");
        QTest::newRow("scan") << QStringList("Update Software") << package;
        QTest::newRow("removal") << QStringList {"Advanced Options", "Remove", "Yes"}
                                 << "Software Deleted";
        QTest::newRow("import") << QStringList {"Advanced Options", "Import New Software"}
                                << "File has been imported successfully!";
    }

    void touchesOfATimeInWhichTheProgramStandsStillAreLost()
    {
        QFETCH(QStringList, taps);
        QFETCH(QString, after);
        Stage stage;
        stage.manager.packages << "/media/" + package;
        stage.manager.versions = {"talvo-1"};
        stage.manager.meanwhile = stage.scripts.meanwhile = [&stage] {
            stage.queueTapsEverywhere();
            QCoreApplication::processEvents(); // a step may keep the scene alive
            stage.queueTapsEverywhere();
            QTest::qSleep(400); // what counts time must not take this for time after it
        };
        stage.open(UiConfig::TALVOGATEWAY, taps.takeFirst());
        for (const auto& text : taps)
            QVERIFY(stage.tap(text));
        if (auto* dialog = stage.root()->findChild<FileHelper*>(); dialog && dialog->isVisible()) {
            dialog->setVisible(false);
            emit dialog->chooseFile("/media/" + package);
        }
        const int calls = stage.manager.calls.size();
        QTRY_VERIFY(stage.shows(after));
        QTest::qWait(300);
        QVERIFY(stage.button("Back") && !stage.button("Yes") && !stage.launcher("/"));
        QCOMPARE(stage.shows("No new version was added"), after.endsWith("imported successfully!"));
        QCOMPARE(stage.manager.calls.size(), calls);
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
