#include "Dispenser.h"
#include "Stage.h"

#include <QApplication>
#include <QDir>
#include <QJSValue>
#include <QTest>

namespace {

const QString longName
    = "quillmark-" + QString(130, 'a') + QStringLiteral("-long name-1.04.00.tar.gz");
const QString longVersion = QStringLiteral("Vemlo Gateway-1.03.00-long-name");

// What is really painted of a text, in the window's coordinates, less the rim of the line boxes.
QRectF painted(const QQuickItem* text)
{
    const QSizeF size(text->property("contentWidth").toReal(),
                      text->property("contentHeight").toReal());
    const bool centred = text->property("horizontalAlignment").toInt() == Qt::AlignHCenter;
    const bool middle = text->property("verticalAlignment").toInt() == Qt::AlignVCenter;
    const QPointF corner(centred ? (text->width() - size.width()) / 2 : 0,
                         middle ? (text->height() - size.height()) / 2 : 0);
    return text->mapRectToScene({corner, size}).adjusted(1, 1, -1, -1);
}

// Nothing of the text but the middle of a name is left out, and no clipping ancestor but a scrolled
// list cuts it off.
bool isWhole(const QQuickItem* text)
{
    const auto rect = painted(text);
    const bool isName = text->property("elide").toInt() == Qt::ElideMiddle;
    if ((text->property("truncated").toBool() && !isName) || rect.width() > text->width()
        || rect.height() > text->height())
        return false;
    for (const auto* item = text; item; item = item->parentItem()) {
        if (item->inherits("QQuickFlickable"))
            return true;
        const QRectF bounds = item->mapRectToScene({0, 0, item->width(), item->height()});
        if (item->clip() && !bounds.contains(rect))
            return false;
    }
    return QRectF({}, text->window()->size()).contains(rect);
}

// Every text in sight at or below `top`, the root without one. The labels of buttons, which may be
// smaller, are bold.
void look(const Stage& stage, QQuickItem* top = nullptr)
{
    QTest::qWait(400); // the wheel turns, a message fades in
    const auto texts = stage.visible("fontInfo", {}, top);
    QVERIFY(!texts.isEmpty());
    for (int i = 0; i < texts.size(); ++i) {
        const auto name = texts[i]->property("text").toString();
        QVERIFY2(isWhole(texts[i]), qPrintable(name));
        const auto font = texts[i]->property("fontInfo").value<QJSValue>();
        const int smallest = font.property("bold").toBool() ? 11 : 13;
        QVERIFY2(font.property("pixelSize").toInt() >= smallest, qPrintable(name));
        for (int k = 0; k < i; ++k) {
            const auto both = name + " | " + texts[k]->property("text").toString();
            QVERIFY2(!painted(texts[i]).intersects(painted(texts[k])), qPrintable(both));
        }
    }
}

} // namespace

// On the kind of dispenser that it is run on.
class TextsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        Dispenser::writeFile(Dispenser::mediaFolder() + "STICK/" + longName, {});
        QVERIFY(QDir(Dispenser::versionsStore).mkdir(longVersion));
    }

    void everyTextIsWholeLegibleAndTranslated_data()
    {
        QTest::addColumn<QString>("language");
        for (const QString language : {"english", "french", "german", "spanish"})
            QTest::newRow(qPrintable(language)) << language;
    }

    void everyTextIsWholeLegibleAndTranslated()
    {
        QFETCH(QString, language);
        Dispenser::sql("UPDATE dictionary SET value='" + language + "' WHERE name='language';");
        const auto keys = Dispenser::sql("SELECT key FROM translations;");
        Stage stage;
        const auto tap
            = [&](const QString& key) { return stage.tap({stage.translations.lookUp(key)}); };
        look(stage);
        QVERIFY(tap("Update Software"));
        look(stage);
        QVERIFY(stage.tap({"MerivonMFV_V2.16.hex"}));
        look(stage);
        QVERIFY(tap("Back") && tap("Advanced Options"));
        look(stage);
        QVERIFY(tap("Remove") && stage.shows("Delete Software Version " + longVersion + "?"));
        look(stage, stage.visible("yesButtonText").first());
        QVERIFY(tap("Back") && tap("Advanced Options") && tap("Import New Software"));
        look(stage, stage.visible("folderEntries").first());
        stage.js("busy.begin('" + longName + "')");
        for (const QString key :
             {"Importing Software, please wait...", "Media not found! Please insert USB Media",
              "Can not delete software version currently running", "No new version was added"}) {
            const auto message = "msgPopUp.showMessage('" + stage.translations.lookUp(key) + "'";
            stage.js(message + ", 0, true, true)");
            look(stage, stage.popUp());
            stage.js(message + "), msgPopUp.showDetail('" + longName + "')");
            look(stage, stage.popUp());
        }
        // One without a row would have got it.
        QCOMPARE(Dispenser::sql("SELECT key FROM translations;"), keys);
    }
};

DISPENSER_TEST_MAIN(TextsTest, QApplication)
#include "tst_texts.moc"
