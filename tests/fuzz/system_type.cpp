// The content of the file that names the kind of dispenser.

#include "Dispenser.h"
#include "Fuzz.h"
#include "config/UiConfig.h"

void tryInput(const QByteArray& input)
{
    Dispenser::writeFile("/opt/Merivon/systemType.txt", input);
    UiConfig* const config = UiConfig::getInstance();
    config->initialize();
    // Blanks and the mark of an encoding may stand around a name, and anything behind a NUL.
    const QString name = QString::fromUtf8(input).trimmed();
    const int kind = QStringList({"kra", "talvo", "talvogateway"}).indexOf(name) + 1;
    HOLDS(config->getSystemType() == kind, input << config->getSystemType());
}
