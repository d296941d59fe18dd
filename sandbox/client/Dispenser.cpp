#include "Dispenser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>

namespace Dispenser {

namespace {
const QString simulationFolder = QStringLiteral("/opt/Merivon/Simulation/");
const QString recordFile = simulationFolder + QStringLiteral("record");
const QString faultsFile = simulationFolder + QStringLiteral("faults");

// An empty line is a row of its own: an empty value.
QStringList linesOf(const QByteArray& text)
{
    QStringList lines = QString::fromUtf8(text).split('\n');
    if (lines.constLast().isEmpty())
        lines.removeLast();
    return lines;
}
} // namespace

bool isHere()
{
    return QFileInfo(simulationFolder).isDir();
}

QString mediaFolder()
{
    return QStringLiteral("/media/") + QDir::home().dirName() + '/';
}

QStringList sql(const QString& statements, const QString& database)
{
    QProcess program;
    program.start(QStringLiteral("sqlcipher"), {QStringLiteral("-bail"), database});
    const QString key = QStringLiteral("PRAGMA key='%1';\n.timeout 20000\n").arg(databaseKey);
    program.write((key + statements + QStringLiteral("\n;\n")).toUtf8());
    program.closeWriteChannel();
    program.waitForFinished(-1);
    const QByteArray errors = program.error() == QProcess::FailedToStart
        ? program.errorString().toUtf8()
        : program.readAllStandardError();
    if (!errors.isEmpty())
        QTest::qFail(errors.constData(), __FILE__, __LINE__);
    return linesOf(program.readAllStandardOutput());
}

QStringList record()
{
    QFile file(recordFile);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList calls;
    const QStringList lines = linesOf(file.readAll());
    for (const QString& line : lines)
        calls.append(line.section('\t', 1));
    return calls;
}

void clearRecord()
{
    QFile(recordFile).resize(0);
}

bool waitForRecord(const QString& line)
{
    return QTest::qWaitFor([&] { return record().contains(line); }, 10000);
}

void setFaults(const QStringList& rules)
{
    writeFile(faultsFile, rules.join('\n').toUtf8() + '\n');
}

void clearFaults()
{
    QFile::remove(faultsFile);
}

bool isOpenHere(const QString& path)
{
    const QFileInfoList descriptors = QDir(QStringLiteral("/proc/self/fd"))
                                          .entryInfoList(QDir::NoDotAndDotDot | QDir::AllEntries);
    return std::any_of(descriptors.begin(), descriptors.end(), [&](const QFileInfo& descriptor) {
        return descriptor.symLinkTarget() == path;
    });
}

void writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

void writeScript(const QString& path, const QByteArray& body)
{
    writeFile(path, "#!/bin/sh\n" + body + '\n');
    QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner | QFile::ExeUser);
}

} // namespace Dispenser
