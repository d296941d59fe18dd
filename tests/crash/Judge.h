#pragma once

#include "Replay.h"

#include <QHash>
#include <QStringList>

// Says of the states of a database how many of some transactions they hold.
class Judge
{
public:
    // The files before the first transaction, and each transaction as SQL. None may come back to an
    // earlier content.
    Judge(const Files& before, const QStringList& transactions);

    int transactions() const { return m_contents.size() - 1; }

    struct Finding
    {
        int transactions; // that the state holds, from the first on; -1 for a faulty state
        QByteArray fault;
    };

    // A good state opens, is whole by SQLite's own check, and has all tables as before the first
    // transaction or as after one of them.
    Finding judge(const Files& files) const;
    // The same, but each different state is judged once; and how many were.
    Finding look(const Files& files);
    int looks() const { return m_found.size(); }

private:
    QByteArray m_key;
    QList<QByteArray> m_contents; // before the first transaction and after each
    QHash<QByteArray, Finding> m_found; // by the state's hash
};
