#include "FakePlatform.h"

#include <QRegularExpression>

QStringList FakeManager::getNameVersion(const QString& fileName)
{
    static const QRegularExpression package(
        QStringLiteral(".*quillmark-(?<name>.*)-(?<version>[^-]*)\\.tar\\.gz$"));
    const auto match = package.match(fileName);
    return match.hasMatch() ? QStringList {match.captured("name"), match.captured("version")}
                            : QStringList {};
}

void FakeTranslations::setLanguage(const QString& name)
{
    _language = name;
    emit languageChanged();
}

QString FakeTranslations::lookUp(const QString& key)
{
    lookUps << key;
    return texts.value(key + _language, key);
}

int FakeScriptLauncher::executeSystemCommand(const QString& command)
{
    commands << command;
    return 0;
}

void FakeLaunchAsync::launch(const QString& command, const QStringList& args)
{
    launched << command + ' ' + args.join(' ');
    emit beginLaunch();
}
