// What a program prints: the text that its caller gets, which ends at a NUL.

#include "Dispenser.h"
#include "Fuzz.h"
#include "process/ScriptLauncher.h"

void tryInput(const QByteArray& input)
{
    const QString file = QStringLiteral("/tmp/output");
    Dispenser::writeFile(file, input);
    ScriptLauncher launcher;
    const QString printed = launcher.launchProgram("/bin/cat", {file});
    HOLDS(printed == QString::fromUtf8(input.chopped(qMin(1, input.size()))), input << printed);

    const QString text = launcher.launchScript("/bin/cat", {file});
    QString whole = QString::fromUtf8(input);
    whole.chop(1);
    HOLDS(text == whole, input << text);
}
