#pragma once

#include <QDebug>
#include <QString>

// A line of the log, put together as with qDebug() and written when it goes out of scope.
//
// Code that runs with a transaction open writes its lines so: the log handler may copy a line into
// the database while it keeps every other thread from logging. A thread that had to log with the
// write lock in hand, and one that waits for that lock inside the handler, would wait for ever.
class LogLine
{
public:
    explicit LogLine(QtMsgType type = QtDebugMsg) : m_type(type) { }
    ~LogLine();
    Q_DISABLE_COPY_MOVE(LogLine)

    template <typename Value> LogLine& operator<<(const Value& value)
    {
        m_stream << value;
        return *this;
    }

    // While one lives on a thread, the lines of that thread are kept; its end writes them, in
    // order. Not to be nested.
    class Deferral
    {
    public:
        Deferral();
        ~Deferral();
        Q_DISABLE_COPY_MOVE(Deferral)
    };

private:
    QtMsgType m_type;
    QString m_text;
    QDebug m_stream {&m_text};
};
