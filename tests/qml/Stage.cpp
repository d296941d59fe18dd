#include "Stage.h"

#include "Dispenser.h"
#include "config/UiConfig.h"
#include "process/LaunchAsync.h"
#include "software/FileHelper.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QTest>

#include <algorithm>

namespace {

void registerTypes()
{
    qmlRegisterUncreatableType<UiConfig>("MyLibrary", 1, 0, "SystemType", "an enum only");
    qmlRegisterType<LaunchAsync>("MyLibrary", 2, 0, "LaunchAsync");
    qmlRegisterType<FileHelper>("MyLibrary", 2, 0, "FileHelper");
}
Q_COREAPP_STARTUP_FUNCTION(registerTypes)

void collect(QQuickItem* item, const char* property, const QVariant& value,
             QList<QQuickItem*>& found)
{
    if (!item->isVisible() || qFuzzyIsNull(item->opacity()))
        return;
    const auto held = item->property(property);
    if (held.isValid() && (!value.isValid() || held == value))
        found << item;
    const auto children = item->childItems();
    for (auto* child : children)
        collect(child, property, value, found);
}

} // namespace

Stage::Stage()
{
    m_view.rootContext()->setContextProperties({
        {"manager", QVariant::fromValue(&m_manager)},
        {"vemTranslations", QVariant::fromValue(&translations)},
        {"vemScriptLauncher", QVariant::fromValue(&m_scripts)},
        {"systemConfig", QVariant::fromValue(UiConfig::getInstance())},
        {"MERIVON_LOCATION_PICTURES_UI", "/opt/Merivon/Pictures/ServiceUI/"},
        {"MERIVON_LOCATION_VERSIONS", Dispenser::versionsStore},
        {"MEDIA_DIRECTORY", Dispenser::mediaFolder().chopped(1)},
        {"DEV_MODE", true},
    });
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    m_view.setSource(QUrl(QStringLiteral("qrc:/SoftwareUpdater/qml/main.qml")));
    m_view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&m_view));
}

QVariant Stage::js(const QString& code, QQuickItem* item) const
{
    auto* scope = item ? item : m_view.rootObject();
    QQmlExpression expression(qmlContext(scope), scope, code);
    auto value = expression.evaluate();
    if (expression.hasError())
        qWarning().noquote() << expression.error().toString();
    return value;
}

QList<QQuickItem*> Stage::visible(const char* property, const QVariant& value,
                                  QQuickItem* top) const
{
    QList<QQuickItem*> found;
    collect(top ? top : m_view.rootObject(), property, value, found);
    return found;
}

QStringList Stage::message() const
{
    QStringList lines;
    const auto texts = visible("fontInfo", {}, popUp());
    for (const auto* item : texts)
        lines << item->property("text").toString();
    lines.removeAll({});
    return lines;
}

bool Stage::offersInstall()
{
    const auto buttons = visible("btnText", translations.lookUp("Install Software"));
    return buttons.size() == 1 && buttons.first()->property("state") == "stateDeselected";
}

bool Stage::tap(const QStringList& texts)
{
    return std::all_of(texts.begin(), texts.end(), [this](const QString& text) {
        const auto canBeTapped = [&] { return shows(text) && !js("busy.enabled").toBool(); };
        const bool isInTime = QTest::qWaitFor(canBeTapped, 20000);
        QTest::qWait(30); // positioners place their items with the next frame
        const auto items = visible("text", text);
        if (!isInTime || items.isEmpty())
            return false;
        const QRectF area(0, 0, items.last()->width(), items.last()->height());
        const auto middle = items.last()->mapRectToScene(area).center().toPoint();
        QTest::mouseClick(&m_view, Qt::LeftButton, {}, middle);
        return true;
    });
}
