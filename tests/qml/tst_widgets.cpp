#include "Dispenser.h"
#include "Stage.h"

#include <QApplication>
#include <QJSValue>
#include <QRegularExpression>
#include <QTest>

namespace {

// In pixels, as drawn.
double sizeOf(const Stage& stage, const QString& text)
{
    const auto items = stage.visible("text", text);
    for (const auto* item : items) {
        if (item->inherits("QQuickText"))
            return item->property("fontInfo").value<QJSValue>().property("pixelSize").toNumber();
    }
    return 0;
}

} // namespace

class WidgetsTest : public QObject
{
    Q_OBJECT
private slots:
    void buttonFollowsItsState()
    {
        Stage stage;
        stage.open(
            "Flickable { width: 300; height: 200; contentHeight: 900; property var seen: []\n"
            "Widget_Vemlo_Button { id: b; btnText: 'B'\n"
            "  onButtonPressed: seen.push('pressed ' + state)\n"
            "  onButtonReleased: seen.push('released ' + state)\n"
            "  onButtonClicked: seen.push('clicked') } }");
        QVERIFY(stage.tap("B"));
        QCOMPARE(stage.js("seen.join()").toString(),
                 QString("pressed stateSelected,released stateDeselected,clicked"));
        stage.js("seen = []; b.setStateDisabled()");
        QVERIFY(stage.tap("B"));
        QVERIFY(stage.is("seen.length === 0 && b.state === 'stateDisabled'"));

        QVERIFY(stage.is("b.show(false), b.isStateHidden() && !b.visible"));
        QVERIFY(stage.is("b.hiddenButVisible = true, b.visible && b.opacity === 0"));
        QVERIFY(stage.is("b.show(true), b.isStateNormal() && b.opacity === 1"));
        QVERIFY(stage.is("b.isStateSelected() && b.isStateDisabled()"));
        QVERIFY(stage.is("b.checked = true, b.state === 'stateSelected'"));
        QVERIFY(stage.is("b.checked = false, b.isStateNormal()"));

        auto* window = stage.root()->window();
        stage.js("seen = []"); // disabled under the finger
        QTest::mousePress(window, Qt::LeftButton, {}, {50, 90});
        stage.js("b.setStateDisabled()");
        QTest::mouseRelease(window, Qt::LeftButton, {}, {50, 90});
        QVERIFY(stage.is("seen.length === 1 && b.state === 'stateDisabled'"));
        stage.js("b.setStateNormal()");
        // A press that a flick takes away must not stick.
        QTest::mousePress(window, Qt::LeftButton, {}, {50, 90});
        QCOMPARE(stage.js("b.state").toString(), QString("stateSelected"));
        for (int y = 80; y > 0; y -= 10)
            QTest::mouseMove(window, {50, y}, 10);
        QTRY_VERIFY(stage.is("b.isStateNormal()"));
        QTest::mouseRelease(window, Qt::LeftButton, {}, {50, 0});
    }

    void dialogButtonFollowsItsProperties()
    {
        Stage stage;
        stage.open("Item { width: 300; height: 200; property int clicks: 0\n"
                   "Widget_Vemlo_Button2 { id: b; text: 'B'; onClicked: ++clicks } }");
        stage.js("b.checkable = true");
        QVERIFY(stage.tap("B") && stage.is("b.checked && clicks === 1"));
        stage.js("b.source = 'file:///opt/Merivon/Pictures/ServiceUI/logo.png'");
        const auto* picture = stage.visible("paintedWidth").first(); // of 400 x 300, stretched
        QCOMPARE(QSizeF(picture->property("paintedWidth").toReal(),
                        picture->property("paintedHeight").toReal()),
                 QSizeF(90, 78));
        QCOMPARE(picture->implicitWidth(), 90.0); // loaded no larger
        for (const auto* off : {"b.enabled = false", "b.enabled = true, b.hidden = true"}) {
            stage.js(off);
            QVERIFY(stage.tap("B") && stage.is("clicks === 1"));
        }
        stage.js("b.checked = false"); // of the hidden one the label is left
        QCOMPARE(stage.visible("fontInfo").size(), 1);
        QVERIFY(stage.visible("gradient").isEmpty() && stage.visible("fillMode").isEmpty());
    }

    void popUpGoesInTimeAndGivesTheTouchesBack()
    {
        Stage stage;
        stage.open("Item { width: 800; height: 480; property int touches: 0\n"
                   "MouseArea { anchors.fill: parent; onClicked: ++touches }\n"
                   "Widget_PopUp { id: p } }");
        const auto touches = [&stage](const QPoint& point) {
            stage.js("touches = 0");
            stage.tap(point);
            return stage.is("touches");
        };
        const QPoint somewhere(400, 300);
        const QPoint closeSquare(747, 53); // within 25 pixels of its centre, as gloves touch it
        QVERIFY(stage.is("p.height === 0 && p.opacity === 0"));
        stage.js("p.showMessage('busy', 0, true, true)");
        QVERIFY(!touches({3, 3}) && !touches(closeSquare) && !touches(somewhere));
        QVERIFY(stage.is("p.width === 790 && p.height === 470"));
        stage.js("p.hideMessage()");
        QVERIFY(touches(somewhere));

        stage.js("p.showMessage('full', 0, true)");
        QVERIFY(!touches(somewhere));
        stage.js("p.showMessage('bar')"); // takes the blocker down, keeps the blue border
        QVERIFY(touches(somewhere) && stage.is("p.y + p.height === 440 && p.border.width === 4"));
        stage.js("p.showMessage('stays', 0)"); // also when the bar's two seconds are over
        QTest::qWait(2200);
        QCOMPARE(stage.js("p.opacity").toReal(), 1.0);

        stage.js("p.showMessage('full', 0, true)");
        QVERIFY(!touches(closeSquare) && touches(somewhere));
        QTRY_VERIFY(touches(closeSquare));
        stage.js("p.showMessage('a second', 1000, true)");
        QVERIFY(!touches(somewhere));
        QTRY_VERIFY(touches(somewhere));
    }

    void wheelWrapsRepeatsAndBearsAnEmptyList()
    {
        Stage stage;
        stage.open("Item { width: 300; height: 200; property int turns: 0\n"
                   "Widget_ScrollWheel { id: w; scroll_width: 300; onScrolled: ++turns } }");
        const QPoint plus(127, 22); // within 25 pixels of the buttons' centres
        const QPoint minus(173, 168);
        stage.tap(plus); // to the previous entry, from the first to the last
        QVERIFY(stage.is("w.currentText === 'items' && w.currentValue === 34 && turns === 1"));
        stage.tap(minus);
        QVERIFY(stage.is("w.currentText === 'sample'"));
        QVERIFY(stage.is("w.setCurrentValue('1'), w.currentIndex === 1 && turns === 2"));
        QVERIFY(stage.is("w.setCurrentValue(99), w.currentIndex === 0"));
        stage.js("w.listText = ['a', 'b', 'c', 'd', 'e', 'f', 'g']; w.setCurrentIndex(6)");
        QVERIFY(stage.shows("g") && !stage.shows("f") && !stage.shows("a")); // it does not spin

        stage.js("turns = 0");
        QTest::mousePress(stage.root()->window(), Qt::LeftButton, {}, minus);
        QTRY_VERIFY(stage.is("turns > 3"));
        QTest::mouseRelease(stage.root()->window(), Qt::LeftButton, {}, minus);
        stage.js("turns = 0");
        QTest::qWait(500);
        QVERIFY(stage.is("turns === 0"));

        stage.js("w.listText = ['only']; w.setCurrentIndex(0)");
        QVERIFY(stage.shows("only"));
        stage.tap(plus);
        stage.tap(minus);
        QVERIFY(stage.is("w.currentText === 'only'"));
        stage.js("w.listText = []");
        stage.tap(plus);
        QVERIFY(stage.is("w.currentIndex === -1 && w.currentText === undefined"));
        stage.tap(minus);
        QVERIFY(stage.is("w.currentIndex === 0 && w.currentText === undefined"));
    }

    void listTellsItsSelection()
    {
        Stage stage;
        stage.open("Item { width: 300; height: 400; property var seen: []\n"
                   "Widget_ScrollList { id: l; listText: ['a', 'b', 'c']; listValues: [1, '1', 1]\n"
                   "  currentListIndex: -1\n"
                   "  onCurrentTextChanged: seen.push('text ' + text + currentListText)\n"
                   "  onCurrentValueChanged: seen.push('value ' + value)\n"
                   "  onCurrentIndexChanged: seen.push('index ' + index)\n"
                   "  onClicked: seen.push('clicked ' + currentListText) } }");
        QVERIFY(stage.tap("b"));
        QCOMPARE(stage.js("seen.join()").toString(), QString("text bb,value 1,index 1,clicked b"));
        QVERIFY(stage.is("l.listText = ['x', 'y', 'z'], l.currentListText === 'b'"));
        stage.js("seen = []; l.currentListIndex = -1");
        QVERIFY(stage.is("seen.length === 0 && l.getCurrentText() + l.getCurrentValue() === ''"));
        QVERIFY(stage.is("l.moveToValue(1), l.currentListIndex === 2"));
        QVERIFY(stage.is("l.moveToValue('1'), l.currentListIndex === 1"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("ReferenceError"));
        stage.js("l.moveToText('a')");

        stage.js("l.listText = Array(500).fill('r'); l.currentListIndex = 499; "
                 "l.moveToCurrentSelection()");
        const auto* track = stage.visible("flickable").first();
        const auto* mark = track->childItems().first();
        QVERIFY(mark->height() >= 25 && qFuzzyCompare(mark->y() + mark->height(), track->height()));
    }

    void longListIsMadeOfTheRowsInSightAndKeepsTheChoice()
    {
        Stage stage;
        stage.open("Item { width: 400; height: 450; property string seen\n"
                   "SoftwareList { id: l; anchors.fill: parent; onChosen: seen = path\n"
                   "  paths: Array.from({ length: 20000 }, (each, i) => '/media/p' + i) } }");
        auto* rows = stage.visible("cacheBuffer").first();
        const auto checked = [&stage] {
            QStringList names;
            const auto buttons = stage.visible("checked", true);
            for (const auto* each : buttons)
                names << each->property("text").toString();
            return names.join(' ');
        };
        QCOMPARE(rows->property("contentHeight").toInt(), 2000000);
        QVERIFY(stage.tap("p1") && stage.is("seen === '/media/p1'"));
        rows->setProperty("contentY", 500000);
        QTRY_VERIFY(stage.button("p5001") && !stage.button("p1"));
        QVERIFY(checked().isEmpty() && stage.visible("radioButtonText").size() < 20);
        rows->setProperty("contentY", 0);
        QTRY_COMPARE(checked(), QString("p1"));
        QVERIFY(stage.tap("p2"));
        QCOMPARE(checked(), QString("p2"));
        stage.js("l.paths = l.paths.slice(1)");
        QTRY_VERIFY(stage.button("p3") && checked().isEmpty());
    }

    void fileDialogTellsFoldersFromFiles()
    {
        Dispenser::writeFile("/tmp/files/b.hex", {});
        QVERIFY(QDir().mkpath("/tmp/files/a"));
        Stage stage;
        stage.open(
            "Item { width: 800; height: 480\n"
            "Widget_FileDialog { id: d; filterNames: ['*.hex']; currentPath: '/tmp/files' } }");
        stage.js("d.show()");
        QCOMPARE(stage.button("a")->property("kind").toString(), QString("folder"));
        QCOMPARE(stage.button("b.hex")->property("kind").toString(), QString("file"));
        QVERIFY(stage.button("a")->height() >= 50); // for gloves
        QVERIFY(stage.tap("a"));
        QTRY_COMPARE(stage.visible("kind").size(), 1); // of an empty folder the outline
    }

    void labelsSideBySideHaveTheSizeOfTheSmallest()
    {
        Stage stage;
        stage.translations.texts = {{"Advanced Options", "Konfigurationen"},
                                    {"Remove", "Herausnehmen"},
                                    {"MFV Version History", QString(30, 'M')}};
        const auto areOfOneSize = [&stage](const QString& text, const QString& other) {
            return stage.shows(text) && sizeOf(stage, text) == sizeOf(stage, other);
        };
        stage.type = UiConfig::KRA;
        stage.open();
        QVERIFY(areOfOneSize("Update Software", "Konfigurationen"));
        QVERIFY(stage.tap("Konfigurationen"));
        QVERIFY(areOfOneSize("Install", "Herausnehmen"));
        QVERIFY(areOfOneSize("Software Version History", QString(30, 'M')));
        QVERIFY(sizeOf(stage, "Install") < sizeOf(stage, "Back"));
    }

    void questionClosesOnItsAnswerAndTakesAllTouches()
    {
        Stage stage;
        stage.open(
            "Item { width: 700; height: 400; property string seen\n"
            "MouseArea { anchors.fill: parent; onPressed: seen += 'through ' }\n"
            "Widget_ConfirmationDialog { id: d; onYes: seen += 'yes '; onNo: seen += 'no ' } }");
        stage.js("d.show()");
        stage.tap(QPoint(20, 20));
        QVERIFY(stage.tap("Yes") && !stage.button("Yes"));
        stage.js("d.show()");
        QVERIFY(stage.tap("No") && !stage.button("No"));
        QCOMPARE(stage.js("seen").toString(), QString("yes no "));
        stage.js("d.noButtonVisible = false; d.show()");
        QVERIFY(stage.button("Yes") && !stage.button("No"));
    }
};

DISPENSER_TEST_MAIN(WidgetsTest, QApplication)
#include "tst_widgets.moc"
