#include "app/Logger.h"

#include "database/TableDictionary.h"

std::atomic<bool> Logger::logDevMessages = false;

void Logger::getLogDevMessages()
{
    TableDictionary dictionary(nullptr);
    const QString value = dictionary.getDictionaryValue(QStringLiteral("logDevMessages"));
    logDevMessages = value.toLower() == QLatin1String("true");
}
