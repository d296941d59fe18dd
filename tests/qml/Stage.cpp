#include "Stage.h"

#include "Dispenser.h"
#include "software/FileHelper.h"
#include <QPixmap>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QScreen>

namespace {

void registerTypes()
{
    qmlRegisterUncreatableType<UiConfig>("MyLibrary", 1, 0, "SystemType", "an enum only");
    qmlRegisterType<FakeLaunchAsync>("MyLibrary", 2, 0, "LaunchAsync");
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

void Stage::open(const QByteArray& qml)
{
    const bool small = type == UiConfig::TALVOGATEWAY;
    for (const auto* width : {"screenWidth", "serviceWidth"})
        m_config.insert(width, small ? 800 : 1920);
    for (const auto* height : {"screenHeight", "serviceHeight"})
        m_config.insert(height, small ? 480 : 1080);
    m_config.insert("systemType", int(type));
    m_config.insert("systemName", "talvo");
    m_view = std::make_unique<QQuickView>();
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->rootContext()->setContextProperties({
        {"manager", QVariant::fromValue(&manager)},
        {"vemTranslations", QVariant::fromValue(&translations)},
        {"vemScriptLauncher", QVariant::fromValue(&scripts)},
        {"systemConfig", QVariant::fromValue(&m_config)},
        {"MERIVON_LOCATION_PICTURES_UI", "/opt/Merivon/Pictures/ServiceUI/"},
        {"MERIVON_LOCATION_VERSIONS", "/opt/Merivon/Versions/"},
        {"MEDIA_DIRECTORY", Dispenser::mediaFolder().chopped(1)},
        {"DEV_MODE", developing},
    });
    const QUrl main(QStringLiteral("qrc:/SoftwareUpdater/qml/main.qml"));
    auto* component = new QQmlComponent(m_view->engine(), m_view.get());
    if (qml.isEmpty())
        component->loadUrl(main);
    else
        component->setData("import QtQuick 2.15\nimport \"../../Libs/VemloQT/qml\"\n"
                           "import \"../../ServiceUI/qml\"\n"
                               + qml,
                           main);
    m_view->setContent(main, component, component->create());
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void Stage::open(UiConfig::SystemType systemType, const QString& buttonText)
{
    type = systemType;
    open();
    QVERIFY(tap(buttonText));
}

void Stage::chooseSoftware(const QString& name)
{
    for (const auto& each : {OnTheStick::package, OnTheStick::image, OnTheStick::foreignImage})
        manager.packages << "/media/" + each;
    open(UiConfig::TALVO, "Update Software");
    QTRY_VERIFY(button(name));
    QVERIFY(tap(name));
    QVERIFY(isInstallOn());
}

QVariant Stage::js(const QString& code) const
{
    QQmlExpression expression(qmlContext(root()), root(), code);
    auto value = expression.evaluate();
    if (expression.hasError())
        qWarning().noquote() << expression.error().toString();
    return value;
}

QList<QQuickItem*> Stage::visible(const char* property, const QVariant& value) const
{
    QList<QQuickItem*> found;
    collect(root(), property, value, found);
    return found;
}

QQuickItem* Stage::button(const QString& text) const
{
    const auto found = visible("btnText", text) + visible("text", text);
    const auto item = std::find_if(found.begin(), found.end(), [](const QQuickItem* each) {
        return !each->inherits("QQuickText");
    });
    return item == found.end() ? nullptr : *item;
}

bool Stage::tap(const QQuickItem* item)
{
    QTest::qWait(30); // positioners place their items with the next frame
    if (!item || !QTest::qWaitFor([this] { return takesTouches(); }, 10000))
        return false;
    tap(middle(item));
    return true;
}

bool Stage::takesTouches() const
{
    return !is("typeof busy !== 'undefined' && busy.shut");
}

QPoint Stage::middle(const QQuickItem* item)
{
    return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
}

void Stage::tap(const QPoint& point)
{
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, point);
}

void Stage::queueTapsEverywhere()
{
    for (int y = 12; y < m_view->height(); y += 24) {
        for (int x = 12; x < m_view->width(); x += 24) {
            for (const auto what : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
                const auto held = what == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
                QCoreApplication::postEvent(
                    m_view.get(),
                    new QMouseEvent(what, {qreal(x), qreal(y)}, Qt::LeftButton, held, {}));
            }
        }
    }
}

void Stage::tapEverywhere()
{
    queueTapsEverywhere();
    QCoreApplication::sendPostedEvents(m_view.get());
}

FakeLaunchAsync* Stage::launcher(const QString& argument) const
{
    const auto all = root()->findChildren<FakeLaunchAsync*>();
    for (auto* launcher : all) {
        if (launcher->launched.join('\n').contains(argument))
            return launcher;
    }
    return nullptr;
}

void Stage::save(const QString& path) const
{
    QVERIFY(m_view->screen()->grabWindow(m_view->winId()).save(path));
}
