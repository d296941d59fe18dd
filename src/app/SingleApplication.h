#pragma once

#include <QApplication>
#include <QList>
#include <QPointer>
#include <QThread>

// The application object's workings, whatever the program is called: it ends registered worker
// threads before it quits, and an exception thrown by an event handler does not end the program.
class SingleApplication : public QApplication
{
    Q_OBJECT

public:
    // As QApplication: takes its own options out of the arguments, which must outlive the object.
    // Closing the last window and leaving the event loop are requests to end the process.
    SingleApplication(int& argc, char** argv);

    // Registers a worker thread to be ended by shutdownThreads(). The thread stays the caller's;
    // one that is deleted meanwhile is forgotten. Nothing in this program registers one: kept for
    // worker threads that other code may bring.
    void appendThread(QThread* thread);

    // Tells each registered thread to quit, in the order of registration, and serves this thread's
    // events until it has ended. There is no time limit here: a thread that never ends its event
    // loop keeps the caller here, in a program that calls ProcessEnd::watch() until the end is
    // forced, half a second after it was asked for.
    void shutdownThreads();

    // As QApplication; an exception that escapes the handler is logged at debug level, and the
    // event counts as not handled (false). Called on every thread that delivers events.
    bool notify(QObject* receiver, QEvent* event) override;

public slots:
    // Requests the end of the process, ends the registered threads, then the event loop with result
    // 0. What takes longer than ProcessEnd leaves it is cut short.
    void quitApp();

private:
    QList<QPointer<QThread>> threads;
};
