#pragma once

#include "Dispenser.h"

#include <QFile>
#include <QProcess>
#include <QTest>

// Another program that holds a database locked, from the end of the constructor until release() or
// for a number of seconds.
class ExternalLock
{
public:
    explicit ExternalLock(const QString& database = Dispenser::sharedDatabase, int seconds = 0)
    {
        const QString held = QStringLiteral("/tmp/held");
        QFile::remove(held);
        m_program.start("sqlcipher", {database});
        m_program.write("PRAGMA key='d8pantry%';\n.timeout 20000\nBEGIN EXCLUSIVE;\n.shell touch "
                        + held.toUtf8() + '\n');
        if (seconds > 0)
            m_program.write(".shell sleep " + QByteArray::number(seconds) + "\nCOMMIT;\n");
        m_program.waitForBytesWritten();
        if (!QTest::qWaitFor([&] { return QFile::exists(held); }, 20000))
            QTest::qFail("the lock could not be taken", __FILE__, __LINE__);
    }

    ~ExternalLock() { release(); }
    Q_DISABLE_COPY_MOVE(ExternalLock)

    void release()
    {
        if (m_program.state() == QProcess::NotRunning)
            return;
        m_program.write("COMMIT;\n");
        m_program.closeWriteChannel();
        m_program.waitForFinished(-1);
    }

private:
    QProcess m_program;
};
