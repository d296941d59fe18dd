#include "app/SingleApplication.h"

#include <QDebug>

#include <exception>

SingleApplication::SingleApplication(int& argc, char** argv) : QApplication(argc, argv) { }

void SingleApplication::appendThread(QThread* thread)
{
    threads.append(thread);
}

void SingleApplication::shutdownThreads()
{
    qDebug() << "shutting down threads";
    // By a copy: the events served in the loop may register further threads.
    const QList<QPointer<QThread>> registered = threads;
    for (const QPointer<QThread>& thread : registered) {
        if (!thread)
            continue;
        // The identifier is the caller's, not the worker's: kept, readers of the log expect it.
        qDebug() << "quitting thread" << QThread::currentThreadId();
        thread->quit();
        while (thread && thread->isRunning() && !thread->isFinished())
            QCoreApplication::processEvents();
    }
}

bool SingleApplication::notify(QObject* receiver, QEvent* event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& exception) {
        qDebug() << "Exception thrown:" << exception.what();
    } catch (...) {
        qDebug() << "... exception thrown";
    }
    return false;
}

void SingleApplication::quitApp()
{
    qDebug() << "quitting";
    shutdownThreads();
    QCoreApplication::quit();
}
