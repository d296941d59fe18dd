#pragma once

#include <QRegularExpression>
#include <QStringList>

#include <cstdio>
#include <mutex>

// Takes the process's log lines, of any thread, from its making to the end of its scope.
class LogCapture
{
public:
    LogCapture() : m_previous(qInstallMessageHandler(take))
    {
        const std::lock_guard<std::mutex> lock(mutex());
        taken().clear();
    }
    ~LogCapture() { qInstallMessageHandler(m_previous); }
    Q_DISABLE_COPY_MOVE(LogCapture)

    QStringList lines() const
    {
        const std::lock_guard<std::mutex> lock(mutex());
        return taken();
    }
    bool has(const QString& line) const { return lines().contains(line); }
    int count(const QString& part) const { return lines().filter(part).size(); }

private:
    static QStringList& taken()
    {
        static QStringList lines;
        return lines;
    }
    static std::mutex& mutex()
    {
        static std::mutex it;
        return it;
    }
    static void take(QtMsgType type, const QMessageLogContext&, const QString& message)
    {
        if (type == QtFatalMsg)
            std::fputs(qPrintable(message + '\n'), stderr);
        const std::lock_guard<std::mutex> lock(mutex());
        taken().append(message);
    }

    QtMessageHandler m_previous;
};
