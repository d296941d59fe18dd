#include "Stage.h"

#include "Dispenser.h"
#include <QApplication>
#include <QRegularExpression>
#include <QTest>

class WidgetsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Stage::registerTypes(); }

    void buttonFollowsItsState()
    {
        Stage stage;
        stage.open("Item { width: 300; height: 200; property var seen: []\n"
                   "Widget_Vemlo_Button { id: b; btnText: 'B'\n"
                   "  onButtonPressed: seen.push('pressed ' + state)\n"
                   "  onButtonReleased: seen.push('released ' + state)\n"
                   "  onButtonClicked: seen.push('clicked') } }");
        QVERIFY(stage.tap("B"));
        QCOMPARE(stage.js("seen.join()").toString(),
                 QString("pressed stateSelected,released stateDeselected,clicked"));

        stage.js("seen = []; b.setStateDisabled()");
        QVERIFY(stage.tap("B"));
        QCOMPARE(stage.js("seen.length").toInt(), 0);
        QVERIFY(stage.js("b.state === 'stateDisabled' && b.opacity === b.defOpacity").toBool());

        QVERIFY(stage.js("b.show(false), b.isStateHidden() && !b.visible").toBool());
        QVERIFY(stage.js("b.hiddenButVisible = true, b.visible && b.opacity === 0").toBool());
        QVERIFY(stage.js("b.show(true), b.isStateNormal() && b.opacity === 1").toBool());
        QCOMPARE(stage.js("b.isStateSelected() + b.isStateDisabled()").toString(),
                 QString("stateSelectedstateDisabled"));
        QVERIFY(
            stage.js("b.checkable = true, b.checked = true, b.state === 'stateSelected'").toBool());
        QVERIFY(stage.js("b.checked = false, b.isStateNormal()").toBool());
        QVERIFY(stage
                    .js("b.height === 96 && (b.actionButton = true, b.height === 68)"
                        "&& b.innerBtnWidth === 90 && b.textHeight === 46")
                    .toBool());
    }

    void pressThatIsTakenAwayDoesNotStick()
    {
        Stage stage;
        stage.open("Item { width: 300; height: 200; Flickable { id: f; anchors.fill: parent\n"
                   "contentHeight: 900; Widget_Vemlo_Button { id: b; btnText: 'B' } } }");
        auto* view = stage.root()->window();
        QTest::mousePress(view, Qt::LeftButton, {}, {50, 90});
        QCOMPARE(stage.js("b.state").toString(), QString("stateSelected"));
        for (int y = 80; y > 0; y -= 10)
            QTest::mouseMove(view, {50, y}, 10);
        QTRY_COMPARE(stage.js("b.state").toString(), QString("stateDeselected"));
        QTest::mouseRelease(view, Qt::LeftButton, {}, {50, 0});
    }

    void dialogButtonFollowsItsProperties()
    {
        Stage stage;
        stage.open("Item { width: 300; height: 200; property int clicks: 0\n"
                   "Widget_Vemlo_Button2 { id: b; text: 'B'; onClicked: ++clicks } }");
        QVERIFY(stage.tap("B"));
        stage.js("b.checkable = true");
        QVERIFY(stage.tap("B"));
        QVERIFY(stage.js("b.checked && clicks === 2").toBool());
        for (const auto* off : {"b.enabled = false", "b.enabled = true, b.hidden = true"}) {
            stage.js(off);
            QVERIFY(stage.tap("B"));
            QCOMPARE(stage.js("clicks").toInt(), 2);
        }
        QVERIFY(stage
                    .js("b.height === 96 && (b.textButton = true, b.height === 40)"
                        "&& (b.smallButton = true, b.height === 68 && b.width === 65)")
                    .toBool());
    }

    void popUpGoesInTimeAndGivesTheTouchesBack()
    {
        Stage stage;
        stage.open("Item { id: r; width: 800; height: 480; property int touches: 0\n"
                   "property alias p: p\n"
                   "MouseArea { anchors.fill: parent; onClicked: ++touches }\n"
                   "Widget_PopUp { id: p } }");
        const auto touched = [&stage](const QPoint& point) {
            const int before = stage.js("touches").toInt();
            stage.tap(point);
            return stage.js("touches").toInt() > before;
        };
        QVERIFY(stage.js("p.height === 0 && p.opacity === 0").toBool());

        stage.js("p.showMessage('busy', 0, true, true)");
        QVERIFY(!touched({5, 5}) && !touched({400, 300}) && !touched({770, 30}));
        QVERIFY(stage.js("p.width === 790 && p.height === 470").toBool());
        stage.js("p.hideMessage()");
        QVERIFY(touched({400, 300}));

        stage.js("p.showMessage('full', 0, true)");
        QVERIFY(!touched({400, 300}));
        stage.js("p.showMessage('bar')");
        QVERIFY(touched({400, 200}));
        QVERIFY(stage.js("p.y + p.height === 440 && p.border.width === 4").toBool());

        stage.js("p.showMessage('stays', 0)"); // while the bar's timer runs
        QTest::qWait(2600);
        QCOMPARE(stage.js("p.opacity").toReal(), 1.0);

        stage.js("p.showMessage('full', 0, true)");
        QVERIFY(!touched({770, 25})); // the close square
        QVERIFY(touched({400, 300}));
        QTRY_VERIFY_WITH_TIMEOUT(!stage.js("p.visible").toBool(), 400);
        QVERIFY(touched({770, 25}));

        stage.js("p.showMessage('second', 1000, true)");
        QVERIFY(!touched({400, 300}));
        QTRY_VERIFY_WITH_TIMEOUT(touched({400, 300}), 1500);
    }

    void wheelWrapsAndBearsAnEmptyList()
    {
        Stage stage;
        stage.open("Item { width: 300; height: 200; property alias w: w; property int turns: 0\n"
                   "Widget_ScrollWheel { id: w; scroll_width: 300; onScrolled: ++turns } }");
        const QPoint plus(150, 45);
        const QPoint minus(150, 145);
        stage.tap(plus); // to the previous entry, from the first to the last
        QVERIFY(
            stage.js("w.currentText === 'items' && w.currentValue === 34 && turns === 1").toBool());
        stage.tap(minus);
        QCOMPARE(stage.js("w.currentText").toString(), QString("sample"));
        QVERIFY(stage.js("w.setCurrentValue('1'), w.currentIndex === 1 && turns === 2").toBool());
        QVERIFY(stage.js("w.setCurrentValue(99), w.currentIndex === 0").toBool());
        stage.js("w.listText = ['a', 'b', 'c', 'd', 'e', 'f', 'g']; w.setCurrentIndex(6)");
        QTRY_COMPARE(stage.visible("text", "g").size(), 1);

        stage.js("w.listText = ['only']; w.setCurrentIndex(0)");
        QTRY_VERIFY(stage.shows("only"));
        stage.tap(plus);
        stage.tap(minus);
        QCOMPARE(stage.js("w.currentText").toString(), QString("only"));

        stage.js("w.listText = []");
        stage.tap(plus);
        QVERIFY(stage.js("w.currentIndex === -1 && w.currentText === undefined").toBool());
        stage.tap(minus);
        QVERIFY(stage.js("w.currentIndex === 0 && w.currentText === undefined").toBool());
    }

    void listTellsItsSelection()
    {
        Stage stage;
        stage.open("Item { width: 300; height: 400; property var seen: []\n"
                   "Widget_ScrollList { id: l; listText: ['a', 'b', 'c']; listValues: [1, '1', 1]\n"
                   "  currentListIndex: -1\n"
                   "  onCurrentTextChanged: seen.push('text ' + text)\n"
                   "  onCurrentValueChanged: seen.push('value ' + value)\n"
                   "  onCurrentIndexChanged: seen.push('index ' + index)\n"
                   "  onClicked: seen.push('clicked ' + currentListText) } }");
        stage.tap(QPoint(100, 38 + 35 + 10)); // the second row
        QCOMPARE(stage.js("seen.join()").toString(), QString("text b,value 1,index 1,clicked b"));
        stage.js("seen = []; l.currentListIndex = -1");
        QVERIFY(stage
                    .js("seen.length === 0 && l.getCurrentText() === ''"
                        "&& l.getCurrentValue() === ''")
                    .toBool());
        QVERIFY(stage.js("l.moveToValue(1), l.currentListIndex === 2").toBool());
        QVERIFY(stage.js("l.moveToValue('1'), l.currentListIndex === 1").toBool());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("ReferenceError: rowTexts"));
        stage.js("l.moveToText('a')");
    }

    void questionClosesOnItsAnswerAndTakesAllTouches()
    {
        Stage stage;
        stage.open(
            "Item { width: 700; height: 400; property string seen\n"
            "MouseArea { anchors.fill: parent; onPressed: seen += 'through ' }\n"
            "Widget_ConfirmationDialog { id: d; onYes: seen += 'yes '; onNo: seen += 'no ' } }");
        QVERIFY(!stage.button("Yes"));
        stage.js("d.show()");
        stage.tap(QPoint(20, 20));
        QVERIFY(stage.tap("Yes") && !stage.button("Yes"));
        stage.js("d.show()");
        QVERIFY(stage.tap("No") && !stage.button("No"));
        QCOMPARE(stage.js("seen").toString(), QString("yes no "));
        stage.js("d.noButtonVisible = false; d.show()");
        QVERIFY(stage.button("Yes") && !stage.button("No"));
    }

    void pageTakesItsParentsPlaceAndGivesItBack()
    {
        Stage stage;
        stage.open("Rectangle { width: 400; height: 300; radius: 7; property int shown: 0\n"
                   "Widget_MenuPage { id: a; showMenu: true }\n"
                   "Widget_MenuPage { id: b; mywidth: 50; onMenuActivated: ++shown } }");
        QVERIFY(stage.js("a.visible && !b.visible && b.x === -2000 && b.radius === 7").toBool());
        QVERIFY(stage.js("b.showAsChild(a), b.visible && !a.visible && shown === 1").toBool());
        QVERIFY(stage.js("b.exitMenu(), a.visible && !b.visible && b.width === 50").toBool());
    }
};

DISPENSER_TEST_MAIN(WidgetsTest, QApplication)
#include "tst_widgets.moc"
