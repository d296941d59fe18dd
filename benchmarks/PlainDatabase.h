#pragma once

#include <QByteArray>

struct sqlite3;
struct sqlite3_stmt;

// A database through SQLite's C interface with nothing around it: what the updater's own way costs
// is measured against this. Every failure throws std::runtime_error with SQLite's words.
class PlainDatabase
{
public:
    // The key is a pass phrase or a raw key as rawKeyOf gives it.
    PlainDatabase(const QByteArray& path, const QByteArray& key);
    ~PlainDatabase();
    PlainDatabase(const PlainDatabase&) = delete;
    PlainDatabase& operator=(const PlainDatabase&) = delete;

    // The first column of the first row; empty without one.
    QByteArray text(const QByteArray& sql);
    // Runs all the statements of a text.
    void run(const QByteArray& sql);

    // The raw form of the platform's key for the salt of a file. Must not be called while this
    // process has the file open.
    static QByteArray rawKeyOf(const QByteArray& path);

private:
    friend class PlainStatement;
    sqlite3* m_database = nullptr;
};

class PlainStatement
{
public:
    PlainStatement(PlainDatabase& database, const QByteArray& sql);
    ~PlainStatement();
    PlainStatement(const PlainStatement&) = delete;
    PlainStatement& operator=(const PlainStatement&) = delete;

    // Runs the statement (again) and gives the first column of its first row; empty without one.
    QByteArray text();

private:
    sqlite3* m_database;
    sqlite3_stmt* m_statement = nullptr;
};
