// The content of the file that names the kind of dispenser.

#include "Fuzz.h"
#include "config/UiConfig.h"

#include <QFile>

#include <algorithm>

namespace {

void write(const QByteArray& bytes)
{
    QFile file("/opt/Merivon/systemType.txt");
    HOLDS(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), bytes);
}

// From blank to "~", with the line's end and the tabulator.
bool isPlain(const QByteArray& bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char each) {
        return (each >= ' ' && each <= '~') || each == '\n' || each == '\t';
    });
}

UiConfig::SystemType kindOf(const QByteArray& name)
{
    const QByteArrayList names {"kra", "talvo", "talvogateway"};
    return static_cast<UiConfig::SystemType>(names.indexOf(name) + 1);
}

} // namespace

void tryInput(const QByteArray& input)
{
    write(input);
    UiConfig* const config = UiConfig::getInstance();
    config->initialize();
    const UiConfig::SystemType kind = config->getSystemType();
    if (isPlain(input))
        HOLDS(kind == kindOf(input.trimmed()), input << kind);
    // Other blanks and the mark of an encoding may stand around a name, and anything behind a NUL.
    else if (kind != UiConfig::UNKNOWN)
        HOLDS(input.contains(config->property("systemName").toByteArray()), input << kind);
    const char* const models[] = {"Unknown", "KRA Pro", "Talvo", "Talvo Gateway"};
    HOLDS(config->getSystemModel() == models[kind], input << config->getSystemModel());
}
