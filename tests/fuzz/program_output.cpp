// What a program prints: the text that its caller gets.

#include "Fuzz.h"
#include "process/ScriptLauncher.h"

#include <QFile>

namespace {

const QString file = QStringLiteral("/tmp/output");

void write(const QByteArray& bytes)
{
    QFile output(file);
    HOLDS(output.open(QIODevice::WriteOnly) && output.write(bytes) == bytes.size(), bytes);
}

QByteArray upToNul(const QByteArray& bytes)
{
    const int nul = bytes.indexOf('\0');
    return nul < 0 ? bytes : bytes.left(nul);
}

} // namespace

void tryInput(const QByteArray& input)
{
    write(input);
    ScriptLauncher launcher;
    const QString printed = launcher.launchProgram("/bin/cat", {file});
    const QByteArray bytes = upToNul(input.chopped(qMin(1, input.size())));
    HOLDS(printed == textOf(bytes), input << printed);

    const QString text = launcher.launchScript("/bin/cat", {file});
    QString whole = textOf(upToNul(input));
    whole.chop(1);
    HOLDS(text == whole, input << text);
}
