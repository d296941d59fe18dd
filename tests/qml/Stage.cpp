#include "Stage.h"

#include "software/FileHelper.h"
#include <QPixmap>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QScreen>
#include <QTest>

namespace {

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

void Stage::registerTypes()
{
    qmlRegisterUncreatableType<FakeConfig>("MyLibrary", 1, 0, "SystemType", "an enum only");
    qmlRegisterType<FakeLaunchAsync>("MyLibrary", 2, 0, "LaunchAsync");
    qmlRegisterType<FileHelper>("MyLibrary", 2, 0, "FileHelper");
}

void Stage::open(const QByteArray& qml)
{
    m_view = std::make_unique<QQuickView>();
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->rootContext()->setContextProperties({
        {"manager", QVariant::fromValue(&manager)},
        {"vemTranslations", QVariant::fromValue(&translations)},
        {"vemScriptLauncher", QVariant::fromValue(&scripts)},
        {"systemConfig", QVariant::fromValue(&config)},
        {"MERIVON_LOCATION_PICTURES_UI", "/opt/Merivon/Pictures/ServiceUI/"},
        {"MERIVON_LOCATION_VERSIONS", "/opt/Merivon/Versions/"},
        {"MEDIA_DIRECTORY", mediaDirectory},
        {"DEV_MODE", developing},
    });
    const QUrl main(QStringLiteral("qrc:/SoftwareUpdater/qml/main.qml"));
    if (qml.isEmpty()) {
        m_view->setSource(main);
    } else {
        auto* component = new QQmlComponent(m_view->engine(), m_view.get());
        component->setData("import QtQuick 2.15\nimport \"../../Libs/VemloQT/qml\"\n"
                           "import \"../../ServiceUI/qml\"\n"
                               + qml,
                           main);
        m_view->setContent(main, component, component->create());
    }
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    QVERIFY(root());
}

QVariant Stage::js(const QString& code) const
{
    QQmlExpression expression(qmlContext(root()), root(), code);
    const auto value = expression.evaluate();
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
    QList<QQuickItem*> found;
    for (const auto* property : {"btnText", "radioButtonText", "text"})
        found += visible(property, text);
    for (auto* item : found) {
        if (!item->inherits("QQuickText"))
            return item;
    }
    return nullptr;
}

bool Stage::tap(const QString& buttonText)
{
    auto* item = button(buttonText);
    if (item)
        tap(item->mapToScene({item->width() / 2, item->height() / 2}));
    return item;
}

void Stage::tap(const QPointF& point)
{
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, point.toPoint());
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
