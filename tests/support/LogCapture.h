#pragma once

#include <QRegularExpression>
#include <QStringList>

#include <mutex>

// Takes the process's log lines, of any thread, from its making to the end of its scope.
class LogCapture
{
public:
    LogCapture()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        taken.clear();
    }
    ~LogCapture() { qInstallMessageHandler(m_previous); }
    Q_DISABLE_COPY_MOVE(LogCapture)

    QStringList lines() const
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return taken;
    }
    bool has(const QString& line) const { return lines().contains(line); }
    int count(const QString& part) const { return lines().filter(part).size(); }

private:
    static void take(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& line)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        taken.append(line);
    }

    inline static std::mutex mutex;
    inline static QStringList taken;
    const QtMessageHandler m_previous = qInstallMessageHandler(take);
};
