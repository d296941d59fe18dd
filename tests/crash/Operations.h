#pragma once

#include "Replay.h"

#include <QStringList>

// An operation on the shared database whose crash points are tried.
struct Operation
{
    const char* name;
    QString preparation; // SQL, on a fresh shared database with ours of table t
    void (*run)();
    // What it commits, one transaction after the other, as SQL of our own; none when it stores
    // settings one by one in an empty dictionary, whatever they are.
    QStringList transactions;
};

const std::vector<Operation>& operations();
// Ends the program when there is none of the name.
const Operation& operationNamed(const QString& name);

// SQL that makes table t as it is in the defaults.
QString defaultsOfT();

// An operation done once on a fresh shared database, by this program started again with "--run" and
// the operation's name, and all that it did to the database's files.
struct Recording
{
    Files before;
    std::vector<Step> steps;
    Files after;
    QStringList transactions;
};

inline const QString databaseFolder = QStringLiteral("/opt/Merivon/Database");

// Ends the program when the operation does not work.
Recording record(const Operation& operation);
