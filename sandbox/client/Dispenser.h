#pragma once

#include <QString>
#include <QStringList>
#include <QTest>

// The simulated dispenser as a test sees it from inside `sandbox/enter`: its databases through the
// `sqlcipher` program, the record of its control command, and the faults it can be told to have.
namespace Dispenser {

inline const QString sharedDatabase
    = QStringLiteral("/opt/Merivon/Database/merivon_database_enc.db");
inline const QString defaultsDatabase
    = QStringLiteral("/opt/Merivon/Versions/Merivon-current/Database/merivon_defaults.db");
inline const QString databaseKey = QStringLiteral("d8pantry%");
inline const QString versionsStore = QStringLiteral("/opt/Merivon/Versions/");
inline const QString scriptsFolder
    = QStringLiteral("/opt/Merivon/Versions/Merivon-current/ServiceUI/Scripts/");

// True inside `sandbox/enter`. A test's main asks it first, so that no test ever runs bare.
bool isHere();

// The folder of the removable media, "/media/" and the login name; each stick is a folder in it.
QString mediaFolder();

// Runs SQL through the `sqlcipher` program on a database file and gives its output lines (columns
// separated by "|"), an independent witness of what the updater's own driver wrote. Fails the
// running test with the program's error text when the program reports one.
QStringList sql(const QString& statements, const QString& database = sharedDatabase);

// Every call of a recording stand-in so far, oldest first: "PROGRAM ARG ARG...", where an argument
// that holds blanks or characters special to the shell is quoted as the shell would take it.
// PROGRAM is "vemlo" or "reboot". Without the time stamps of the record file itself.
QStringList record();
void clearRecord();

// Waits until the record holds a line, at most some seconds; detached programs write it late.
bool waitForRecord(const QString& line);

// Tells the control command to misbehave: one rule a line, "SUBCOMMAND FAULT [VALUE]", as
// sandbox/README.md lists them ("import delay 10", "install error", "import die 9", ...).
void setFaults(const QStringList& rules);
void clearFaults();

// True when this process has a file open.
bool isOpenHere(const QString& path);

// Writes a file with its folders; an executable one when it is a script.
void writeFile(const QString& path, const QByteArray& content);
void writeScript(const QString& path, const QByteArray& body);

} // namespace Dispenser

// QTEST_GUILESS_MAIN for tests that need no screen, refusing to run outside the dispenser.
#define DISPENSER_TEST_MAIN(TestClass, ApplicationClass)                                           \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        if (!Dispenser::isHere()) {                                                                \
            fputs("run me inside sandbox/enter\n", stderr);                                        \
            return 1;                                                                              \
        }                                                                                          \
        ApplicationClass app(argc, argv);                                                          \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
