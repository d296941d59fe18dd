#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/Event.h"
#include "app/Logger.h"
#include "app/MessageHandler.h"
#include "app/Preload.h"
#include "app/QtQuick2ApplicationViewer.h"
#include "app/StandardOutput.h"
#include "config/UiConfig.h"
#include "config/Version.h"
#include "database/PlatformFolders.h"
#include "database/TableTranslations.h"
#include "process/LaunchAsync.h"
#include "process/ProcessEnd.h"
#include "process/ScriptLauncher.h"
#include "software/FileHelper.h"
#include "software/MediaFolder.h"
#include "software/SoftwareManager.h"

#include <QCursor>
#include <QDebug>
#include <QQmlContext>
#include <QQmlEngine>
#include <QtQml>

#include <cstdlib>

namespace {

constexpr char qmlModule[] = "MyLibrary";

void logBanner(const UiConfig& config)
{
    const int systemType = config.property("systemType").toInt();
    qDebug() << "SoftwareUpdater v" << updaterVersion
             << ", type: " << static_cast<UiConfig::SystemType>(systemType);
}

// Offers the file to each controller and prints what the uploads say, an empty line for nothing.
void uploadFirmware(SoftwareManager& manager, const QFileInfo& file)
{
    QStringList output;
    for (quint8 controller : {quint8(1), quint8(4)})
        manager.uploadFirmware(controller, file.absoluteFilePath(), output);
    StandardOutput::write(output.join('\n').toUtf8() + '\n');
}

void registerSceneTypes()
{
    qmlRegisterType<FileHelper>(qmlModule, 2, 0, "FileHelper");
    qmlRegisterType<LaunchAsync>(qmlModule, 2, 0, "LaunchAsync");
}

void publishSettings(QQmlContext& scene, bool devMode)
{
    const QString pictures = QStringLiteral("/opt/Merivon/Pictures/ServiceUI/");
    scene.setContextProperty("MERIVON_LOCATION_PICTURES_UI", pictures);
    scene.setContextProperty("MERIVON_LOCATION_VERSIONS", PlatformFolders::versionsStore);
    scene.setContextProperty("MEDIA_DIRECTORY", MediaFolder::path());
    // Once more, after the media folder: kept, the order of these names is the platform's.
    scene.setContextProperty("MERIVON_LOCATION_PICTURES_UI", pictures);
    scene.setContextProperty("DEV_MODE", devMode);
    scene.setContextProperty("systemConfig", UiConfig::getInstance());
}

// The touch screen has no pointer and the window no frame.
void showOnTouchScreen(QtQuick2ApplicationViewer& viewer)
{
    viewer.setCursor(Qt::BlankCursor);
    QGuiApplication::setOverrideCursor(Qt::BlankCursor);
    viewer.setFlags(Qt::FramelessWindowHint);
    viewer.showExpanded();
}

// The program from the application object's life on. Everything that lives long is a local here
// and dies in reverse order; the platform is not started again by that, the scene does so.
int runUpdater(int& argc, char** argv)
{
    // No widget is ever shown, and the style that is the default takes more memory.
    QApplication::setStyle(QStringLiteral("windows"));
    Application app(argc, argv);
    qmlRegisterUncreatableType<UiConfig>(qmlModule, 1, 0, "SystemType",
                                         "Cannot create SystemType enum");
    logBanner(*UiConfig::getInstance());

    SoftwareManager manager;
    const CommandLine commandLine = CommandLine::read(argc, argv);
    if (commandLine.firmwareValid)
        uploadFirmware(manager, commandLine.firmwareFile);
    if (commandLine.exitAfterArguments)
        return EXIT_SUCCESS;

    Preload::fonts();
    ProcessEnd::watch();
    Event event;
    QObject::connect(&event, &Event::shutTheAppDown, &app, &SingleApplication::quitApp);
    manager.stopMerivon();
    registerSceneTypes();

    TableTranslations translations(nullptr);
    QtQuick2ApplicationViewer viewer;
    ScriptLauncher launcher;
    QQmlContext& scene = *viewer.rootContext();
    scene.setContextProperty("manager", &manager);
    scene.setContextProperty("vemTranslations", &translations);
    scene.setContextProperty("vemScriptLauncher", &launcher);
    publishSettings(scene, commandLine.devMode);

    viewer.setSource(QUrl(QStringLiteral("qrc:/SoftwareUpdater/qml/main.qml")));
    QObject::connect(viewer.engine(), &QQmlEngine::quit, &app, &QCoreApplication::quit);
    showOnTouchScreen(viewer);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    StandardOutput::prepare();
    qInstallMessageHandler(myMessageHandler);
    Logger::getLogDevMessages();
    CommandLine::choosePlatform(argc, argv);
    ProcessEnd::now(runUpdater(argc, argv));
}
