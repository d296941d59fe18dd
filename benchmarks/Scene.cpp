#include "Scene.h"

#include "config/UiConfig.h"
#include "process/LaunchAsync.h"
#include "software/FileHelper.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QMetaMethod>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTimer>

#include <stdexcept>

namespace {

void registerTypes()
{
    qmlRegisterUncreatableType<UiConfig>("MyLibrary", 1, 0, "SystemType", QString());
    qmlRegisterType<FileHelper>("MyLibrary", 2, 0, "FileHelper");
    qmlRegisterType<LaunchAsync>("MyLibrary", 2, 0, "LaunchAsync");
}

bool hasFunction(const QObject& object, const QByteArray& name)
{
    const QMetaObject* const type = object.metaObject();
    for (int i = 0; i < type->methodCount(); ++i) {
        if (type->method(i).name() == name)
            return true;
    }
    return false;
}

QObject* find(QQuickItem* item, const QByteArray& function)
{
    if (hasFunction(*item, function))
        return item;
    const QList<QQuickItem*> children = item->childItems();
    for (QQuickItem* const child : children) {
        if (QObject* const found = find(child, function))
            return found;
    }
    return nullptr;
}

void require(bool called, const char* function)
{
    if (!called)
        throw std::runtime_error(std::string("the scene has no function ") + function);
}

} // namespace

Scene::Scene()
{
    registerTypes();
    QQmlContext& context = *m_viewer.rootContext();
    const QString pictures = QStringLiteral("/opt/Merivon/Pictures/ServiceUI/");
    context.setContextProperty("manager", &m_manager);
    context.setContextProperty("vemTranslations", &m_translations);
    context.setContextProperty("vemScriptLauncher", &m_launcher);
    context.setContextProperty("MERIVON_LOCATION_PICTURES_UI", pictures);
    context.setContextProperty("MERIVON_LOCATION_VERSIONS", "/opt/Merivon/Versions/");
    context.setContextProperty("MEDIA_DIRECTORY", "/media/technician");
    context.setContextProperty("DEV_MODE", false);
    context.setContextProperty("systemConfig", UiConfig::getInstance());
    m_viewer.setSource(QUrl(QStringLiteral("qrc:/SoftwareUpdater/qml/main.qml")));
    m_viewer.setFlags(Qt::FramelessWindowHint);
    m_viewer.showExpanded();
    runUntil([this] { return m_viewer.isExposed(); });
    runFor(std::chrono::seconds(1));
}

void Scene::show(const char* file)
{
    QQmlComponent component(m_viewer.engine(), QUrl(QLatin1String(file)));
    auto* const item = qobject_cast<QQuickItem*>(component.create());
    if (!item)
        throw std::runtime_error(component.errorString().toStdString());
    item->setParent(&m_viewer);
    item->setParentItem(m_viewer.contentItem());
}

QObject& Scene::itemWith(const char* function)
{
    QObject* const item = find(m_viewer.rootObject(), function);
    require(item != nullptr, function);
    return *item;
}

void Scene::call(const char* function)
{
    require(QMetaObject::invokeMethod(&itemWith(function), function), function);
}

void Scene::call(const char* function, const QVariant& argument)
{
    require(QMetaObject::invokeMethod(&itemWith(function), function, Q_ARG(QVariant, argument)),
            function);
}

void Scene::runUntil(const std::function<bool()>& condition)
{
    const QDeadlineTimer deadline(std::chrono::minutes(1));
    while (!condition()) {
        if (deadline.hasExpired())
            throw std::runtime_error("the scene does not get where it should");
        runFor(std::chrono::milliseconds(5));
    }
}

void Scene::runFor(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}
