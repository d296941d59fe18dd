// The store of installed versions and the control of the platform; what is found on removable media
// is in PackageDiscovery.cpp.

#include "software/SoftwareManager.h"

#include "config/UiConfig.h"
#include "config/Version.h"
#include "database/PlatformFolders.h"
#include "database/SystemMessage.h"
#include "process/ProcessEnd.h"
#include "process/ScriptLauncher.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QTimer>

namespace {

const QString controlCommand = QStringLiteral("/usr/local/bin/vemlo");

void record(const QString& text)
{
    SystemMessage::post(SystemMessage::Type::Message, text);
}

// What an entry of the store is listed as, if at all. Kept: of a file's name only the second piece
// counts, so that "MerivonMFV_2_15.hex" is listed as "2".
QStringList listedAs(const QFileInfo& entry)
{
    if (entry.isDir())
        return {entry.fileName()};
    return entry.completeBaseName().split('_').mid(1, 1);
}

bool isListed(const QString& name, const QString& prefix)
{
    return name.contains(prefix, Qt::CaseInsensitive)
        && !name.contains(prefix + QStringLiteral("current"), Qt::CaseInsensitive);
}

} // namespace

QString SoftwareManager::currentVersions()
{
    return QString::fromLatin1(updaterVersion);
}

QVariantList SoftwareManager::getMerivonVersions()
{
    return getMerivonVersions(QStringLiteral("-"));
}

QVariantList SoftwareManager::getMFVVersions()
{
    return getMerivonVersions(QStringLiteral("MerivonMFV_"));
}

QVariantList SoftwareManager::getMerivonVersions(const QString& prefix)
{
    const QFileInfoList entries
        = QDir(PlatformFolders::versionsStore)
              .entryInfoList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot,
                             QDir::Name | QDir::IgnoreCase);
    QStringList versions;
    for (const QFileInfo& entry : entries) {
        if (isListed(entry.fileName(), prefix))
            versions.append(listedAs(entry));
    }
    return QVariant(versions).toList();
}

void SoftwareManager::importSoftwareFromFile(const QString& filePath)
{
    qDebug() << filePath;
    ScriptLauncher launcher;
    if (QFileInfo(filePath).suffix().toLower() == QLatin1String("hex")) {
        // The lone blank is kept, the platform's records of the call hold it: cp reports a source
        // of that name missing and copies the image all the same.
        launcher.launchProgramWithDelay(
            QStringLiteral("/bin/cp"),
            {QStringLiteral("-rf"), filePath, QStringLiteral(" "), PlatformFolders::versionsStore},
            2);
    } else {
        launcher.launchProgramWithDelay(controlCommand, {QStringLiteral("import"), filePath}, 2);
    }
}

void SoftwareManager::logInstall(const QString&) { }

void SoftwareManager::logImport(const QString& filePath)
{
    record(QStringLiteral("Software Imported [%1]").arg(filePath));
}

void SoftwareManager::logDeleted(const QString& filePath)
{
    record(QStringLiteral("Software Deleted [%1]").arg(filePath));
}

void SoftwareManager::stopMerivon()
{
    record(UiConfig::getInstance()->getSystemModel() + QStringLiteral(" shutting down"));
    ScriptLauncher().launchDetachedProcess(controlCommand, {QStringLiteral("stop")});
}

void SoftwareManager::startMerivon()
{
    ScriptLauncher().launchLastAction(controlCommand, {QStringLiteral("start")});
    ProcessEnd::request();
    QCoreApplication::quit();
}

void SoftwareManager::quitAndStartMerivon()
{
    // Whoever ends the updater meanwhile: the platform has to run again.
    ProcessEnd::setLastAction(
        [] { ScriptLauncher::startDetachedProcess(controlCommand, {QStringLiteral("start")}); });
    QTimer::singleShot(500, this, &SoftwareManager::startMerivon);
}

void SoftwareManager::uploadFirmware(quint8&, const QString&, QStringList&) { }
