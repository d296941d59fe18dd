#pragma once

#include "database/DatabaseBase.h"
#include "database/LogDelay.h"
#include "database/ThreadConnection.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>

#include <functional>
#include <memory>
#include <optional>

// One statement on the calling thread's connection, which waits for as long as another process
// holds the database locked. To be destroyed before the connection is closed.
class SqlQuery
{
public:
    SqlQuery() : m_query(std::make_unique<QSqlQuery>(ThreadConnection::database()))
    {
        m_query->setForwardOnly(true);
    }

    ~SqlQuery()
    {
        m_query->finish();
        m_query->clear();
    }

    Q_DISABLE_COPY_MOVE(SqlQuery)

    // Both return false, with a line in the log, on any failure but a lock.
    bool prepare(QString sql)
    {
        return whileLocked([this, sql] { return tryPrepare(sql); });
    }

    bool exec()
    {
        return whileLocked([this] { return tryExec(); });
    }

    // The rows: next() and value(i) of the query below.
    QSqlQuery* operator->() { return m_query.get(); }

private:
    bool whileLocked(const std::function<bool()>& step)
    {
        // Without limit: a setting or a message that waits is better than one that is lost.
        while (!step()) {
            if (m_query->lastError().databaseText() != QLatin1String("database is locked"))
                return false;
            QThread::msleep(500);
        }
        return true;
    }

    bool tryPrepare(const QString& sql)
    {
        QElapsedTimer timer;
        timer.start();
        const bool prepared = m_query->prepare(sql);
        if (DatabaseBase::_debug) {
            qDebug() << "[" << timer.elapsed() << "ms]" << ThreadConnection::name()
                     << "SQL: prepared" << prepared << sql;
        }
        if (m_query->lastError().isValid())
            qWarning() << "SQLERROR:" << m_query->lastError().text();
        return prepared;
    }

    bool tryExec()
    {
        QElapsedTimer timer;
        timer.start();
        m_result = m_query->exec();
        if (m_result && !m_lock)
            m_lock.emplace(LogDelay::Lock);
        if (DatabaseBase::_debug) {
            qDebug() << "[" << timer.elapsed() << "ms]" << ThreadConnection::name()
                     << "SQL: executed " << m_result;
        }
        if (!m_result) {
            // "/n" is what the platform's log readers look for; it was never a line break.
            qCritical() << "SQLERROR: [" << timer.elapsed() << "ms]" << ThreadConnection::name()
                        << "/n" << m_statement;
        }
        return m_result;
    }

    const ThreadConnection::Hold m_hold;
    std::optional<LogDelay> m_lock; // a statement that was executed reads until it is finished
    std::unique_ptr<QSqlQuery> m_query;
    bool m_result = false;
    QString m_statement; // kept empty: the line above shows it, and has always shown it empty
};
