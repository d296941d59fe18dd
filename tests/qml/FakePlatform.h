#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVariant>

// What the native side publishes to the scene, without a platform behind it: a test sets what it
// finds and reads what the scene asked of it.

class FakeManager : public QObject
{
    Q_OBJECT
public:
    bool media = true;
    QStringList packages;
    QVariantList versions;
    QVariantList images;
    QStringList calls;

    Q_INVOKABLE bool mediaDeviceExist() { return media; }
    Q_INVOKABLE QStringList findAvailableSoftware() { return packages; }
    Q_INVOKABLE QVariantList getMerivonVersions() { return versions; }
    Q_INVOKABLE QVariantList getMFVVersions() { return images; }
    Q_INVOKABLE QString currentVersions() { return QStringLiteral("1.03.00"); }
    Q_INVOKABLE QString getFileName(const QString& path) { return path.section('/', -1); }
    Q_INVOKABLE QStringList getNameVersion(const QString& fileName);
    Q_INVOKABLE void importSoftwareFromFile(const QString& path) { calls << "importFile " + path; }
    Q_INVOKABLE void logImport(const QString& path) { calls << "logImport " + path; }
    Q_INVOKABLE void logInstall(const QString& version) { calls << "logInstall " + version; }
    Q_INVOKABLE void logDeleted(const QString& version) { calls << "logDeleted " + version; }
    Q_INVOKABLE void quitAndStartMerivon() { calls << "quitAndStartMerivon"; }
};

class FakeTranslations : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString languageBinder READ languageBinder NOTIFY languageChanged)
public:
    // Key and language ("french", ...) to text; what is missing shows as its key.
    QHash<QString, QString> texts;
    QStringList lookUps;

    QString languageBinder() const { return {}; }
    void setLanguage(const QString& name);
    Q_INVOKABLE QString lookUp(const QString& key);

signals:
    void languageChanged();

private:
    QString _language;
};

class FakeScriptLauncher : public QObject
{
    Q_OBJECT
public:
    QStringList commands;
    Q_INVOKABLE int executeSystemCommand(const QString& command);
};

// The test ends a launch by emitting endLaunch itself.
class FakeLaunchAsync : public QObject
{
    Q_OBJECT
public:
    QStringList launched;
    Q_INVOKABLE void launch(const QString& command, const QStringList& args);

signals:
    void beginLaunch();
    void endLaunch(const QString& result);
};

class FakeConfig : public QObject
{
    Q_OBJECT
    Q_PROPERTY(SystemType systemType MEMBER systemType CONSTANT)
    Q_PROPERTY(QString systemName MEMBER systemName CONSTANT)
    Q_PROPERTY(int screenWidth MEMBER width CONSTANT)
    Q_PROPERTY(int screenHeight MEMBER height CONSTANT)
    Q_PROPERTY(int serviceWidth MEMBER width CONSTANT)
    Q_PROPERTY(int serviceHeight MEMBER height CONSTANT)
public:
    enum SystemType { UNKNOWN, KRA, TALVO, TALVOGATEWAY, MXD };
    Q_ENUM(SystemType)
    SystemType systemType = TALVO;
    QString systemName;
    int width = 1920;
    int height = 1080;
};
