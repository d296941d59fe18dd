#include "Dispenser.h"
#include "Stage.h"

#include <QApplication>
#include <QJSValue>
#include <QRegularExpression>
#include <QTest>

namespace {

const QStringList languages {"english", "french", "german", "spanish"};

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

// The overlay that a text lies in, or nullptr: texts of two layers may cover one another.
const QQuickItem* layer(const QQuickItem* item)
{
    for (; item; item = item->parentItem()) {
        for (const auto* mark : {"fullscreenWidth", "yesButtonText", "folderEntries"}) {
            if (item->property(mark).isValid())
                return item;
        }
    }
    return nullptr;
}

double pixelSize(const QQuickItem* text)
{
    return text->property("fontInfo").value<QJSValue>().property("pixelSize").toNumber();
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

// Labels keep 2 pixels from the edge of their face, and those side by side have one size.
void lookAtLabels(const Stage& stage, const QString& screen)
{
    QHash<qreal, double> sizes; // by the height that the faces stand at
    const auto buttons = stage.visible("faceWidth");
    for (const auto* button : buttons) {
        const QSizeF face(button->property("faceWidth").toReal(),
                          button->property("faceHeight").toReal());
        const auto parts = button->childItems();
        for (const auto* label : parts) {
            const auto text = label->property("text").toString();
            if (text.isEmpty())
                continue;
            const auto message = qPrintable(screen + ": " + text);
            QVERIFY2(face.width() - label->property("contentWidth").toReal() >= 4, message);
            QVERIFY2(face.height() - label->property("contentHeight").toReal() >= 4, message);
            const auto y = button->mapToScene({}).y();
            QVERIFY2(sizes.value(y, pixelSize(label)) == pixelSize(label), message);
            sizes[y] = pixelSize(label);
        }
    }
}

// Every text in sight is whole, large enough and apart from the others. SCENE_PICTURES names a
// folder for a picture of each screen that is looked at.
void look(const Stage& stage, const QString& screen)
{
    const bool takePictures = qEnvironmentVariableIsSet("SCENE_PICTURES");
    QTest::qWait(takePictures ? 1100 : 400); // the wheel turns, a pop-up fades in
    const auto name = QString(QTest::currentDataTag()) + '-' + screen + ".png";
    if (takePictures)
        stage.save(qEnvironmentVariable("SCENE_PICTURES") + '/' + name);
    const auto texts = stage.visible("fontInfo");
    for (int i = 0; i < texts.size(); ++i) {
        const auto message = name + ": " + texts[i]->property("text").toString();
        QVERIFY2(isWhole(texts[i]), qPrintable(message));
        const bool isButtons = texts[i]->parentItem()->property("faceWidth").isValid()
            && !message.endsWith(".tar.gz");
        QVERIFY2(pixelSize(texts[i]) >= (isButtons ? 11 : 13), qPrintable(message));
        for (int k = 0; k < i; ++k) {
            const bool apart = layer(texts[i]) != layer(texts[k])
                || !painted(texts[i]).intersects(painted(texts[k]));
            QVERIFY2(apart, qPrintable(message + " | " + texts[k]->property("text").toString()));
        }
    }
    lookAtLabels(stage, name);
}

} // namespace

class TextsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyTextFits_data()
    {
        QTest::addColumn<UiConfig::SystemType>("type");
        QTest::addColumn<QString>("language");
        for (const auto& language : languages) {
            QTest::addRow("large-%s", qPrintable(language)) << UiConfig::KRA << language;
            QTest::addRow("small-%s", qPrintable(language)) << UiConfig::TALVOGATEWAY << language;
        }
    }

    void everyTextFits()
    {
        QFETCH(UiConfig::SystemType, type);
        QFETCH(QString, language);
        Stage stage;
        const auto rows = Dispenser::sql("SELECT key, " + language + " FROM translations;");
        for (const auto& row : rows)
            stage.translations.texts[row.section('|', 0, 0) + language] = row.section('|', 1);
        stage.translations.language = language;
        // French typography: marks stay with their word, and no typewriter's apostrophe.
        static const QRegularExpression typewritten(" [!?:»]|« |à jour|'");
        for (const auto& each : qAsConst(stage.translations.texts))
            QVERIFY2(language != "french" || !each.contains(typewritten), qPrintable(each));
        const auto text = [&](const QString& key) {
            return stage.translations.texts.value(key + language, "no text for " + key);
        };
        const QString package = "quillmark-base-1.03.00.tar.gz";
        stage.manager.packages
            = QStringList {package, "quillmark-" + QString(130, 'a') + "-long name-1.04.00.tar.gz"};
        stage.manager.versions = {"KRA Pro-1.02.00", "Talvo Gateway-1.03.00-long-name"};
        stage.manager.images = {"2.15"};
        stage.manager.media = false;
        stage.type = type;
        stage.open();
        look(stage, "choice");
        QVERIFY(stage.tap(text("Update Software")));
        look(stage, "scanning");
        QTest::qWait(1000);
        look(stage, "no-medium");
        stage.manager.media = true;
        QVERIFY(stage.tap(text("Back")) && stage.tap(text("Update Software")));
        QTRY_VERIFY(stage.tap(package));
        look(stage, "update");
        QVERIFY(stage.tap(text("Install Software")));
        look(stage, "importing");
        auto* launcher = stage.launcher("import");
        emit launcher->endLaunch("");
        emit launcher->endLaunch("");
        look(stage, "installed");
        QVERIFY(stage.tap(text("Back")) && stage.tap(text("Advanced Options")));
        stage.js("msgPopUp.visible = false");
        look(stage, "advanced");
        QVERIFY(stage.tap(text("Remove")));
        look(stage, "question");
        QVERIFY(stage.tap(text("Yes")) && stage.tap(text("Import New Software")));
        look(stage, "files");
        stage.js("msgPopUp.showMessage(vemTranslations.lookUp("
                 "'Can not delete software version currently running'));"
                 "msgPopUp.showDetail(vemTranslations.lookUp('No new version was added'))");
        look(stage, "bar");
        for (const auto& key : qAsConst(stage.translations.lookUps))
            QVERIFY2(stage.translations.texts.contains(key + language), qPrintable(key));
    }
};

DISPENSER_TEST_MAIN(TextsTest, QApplication)
#include "tst_texts.moc"
