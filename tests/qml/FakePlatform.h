#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVariant>
#include <functional>

// What the native side publishes to the scene, without a platform behind it: a test sets what it
// finds and reads what the scene asked of it. `meanwhile` is what happens while a call blocks.

class FakeManager : public QObject
{
    Q_OBJECT
public:
    bool media = true;
    QStringList packages;
    QVariantList versions;
    QVariantList images;
    QStringList calls;
    std::function<void()> meanwhile = [] {};
    int reads = 0;

    Q_INVOKABLE bool mediaDeviceExist() { return media; }
    Q_INVOKABLE QStringList findAvailableSoftware()
    {
        meanwhile();
        return packages;
    }
    Q_INVOKABLE QVariantList getMerivonVersions()
    {
        ++reads;
        meanwhile();
        return versions;
    }
    Q_INVOKABLE QVariantList getMFVVersions() { return images; }
    Q_INVOKABLE QString currentVersions() { return QStringLiteral("1.03.00"); }
    Q_INVOKABLE QString getFileName(const QString& path) { return path.section('/', -1); }
    Q_INVOKABLE QStringList getNameVersion(const QString& file)
    {
        return {file.section('-', 1, -2), file.section('-', -1).chopped(7)};
    }
    Q_INVOKABLE void importSoftwareFromFile(const QString& path)
    {
        calls << "importFile " + path;
        meanwhile();
    }
    Q_INVOKABLE void logImport(const QString& path) { calls << "logImport " + path; }
    Q_INVOKABLE void logInstall(const QString& version)
    {
        calls << "logInstall " + version;
        meanwhile();
    }
    Q_INVOKABLE void logDeleted(const QString& version) { calls << "logDeleted " + version; }
    Q_INVOKABLE void quitAndStartMerivon() { calls << "quitAndStartMerivon"; }
};

class FakeTranslations : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString languageBinder MEMBER m_nothing NOTIFY languageChanged)
public:
    // Key and language ("Backfrench") to text; what is missing shows as its key.
    QHash<QString, QString> texts;
    QString language;
    QStringList lookUps;
    QString slowKey;
    std::function<void()> meanwhile = [] {};

    Q_INVOKABLE QString lookUp(const QString& key)
    {
        lookUps << key;
        if (key == slowKey)
            meanwhile();
        return texts.value(key + language, key);
    }

signals:
    void languageChanged();

private:
    QString m_nothing;
};

class FakeScriptLauncher : public QObject
{
    Q_OBJECT
public:
    QStringList commands;
    std::function<void()> meanwhile = [] {};
    Q_INVOKABLE void executeSystemCommand(const QString& command)
    {
        commands << command;
        meanwhile();
    }
};

// The test ends a launch by emitting endLaunch itself.
class FakeLaunchAsync : public QObject
{
    Q_OBJECT
public:
    QStringList launched;
    Q_INVOKABLE void launch(const QString& command, const QStringList& args)
    {
        launched << command + ' ' + args.join(' ');
        emit beginLaunch();
    }

signals:
    void beginLaunch();
    void endLaunch(const QString& result);
};
