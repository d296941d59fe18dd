#pragma once

#include <QByteArray>
#include <QSqlError>

#include <optional>

struct sqlite3;

// The pass phrase of one connection and what has become of it: the raw key is given to SQLCipher
// in its place, and files that are attached without a key get one from the same pass phrase.
//
// Its functions return the error, an invalid one on success.
class ConnectionKey
{
public:
    // Starts anew, with a connection that was opened just now.
    void setDatabase(sqlite3* database);

    // Gives the main database a pass phrase. A wrong one is told by the first statement that reads,
    // as by SQLCipher; a lock is an error here, after which the same or another one can be given.
    // Once a pass phrase has opened the file it stays: giving it again does nothing, and another
    // one is an error, because SQLCipher would take it and write pages under two keys.
    QSqlError give(const QByteArray& passPhrase);

    // To be called before the parameters of the key change: a raw key would not follow them.
    void expectParameters();

    // To be called when SQLCipher was given a key that is not known here.
    void forget();

    // Whether attach() can be used.
    bool isKnown() const { return m_passPhrase.has_value(); }

    // Attaches a file, with the connection's pass phrase and the file's own salt.
    QSqlError attach(const QByteArray& file, const QByteArray& schema) const;

private:
    QSqlError error(const char* what) const;
    QSqlError tryPending();
    QByteArray keyFor(const QByteArray& salt) const;
    QSqlError setKey(const QByteArray& key);

    sqlite3* m_database = nullptr;
    std::optional<QByteArray> m_passPhrase;
    bool m_raw = false; // SQLCipher has the raw key, not the pass phrase
    bool m_opened = false; // the file was read with it
};
