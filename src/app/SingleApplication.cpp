#include "app/SingleApplication.h"

#include "process/ProcessEnd.h"

#include <QDebug>

#include <exception>

SingleApplication::SingleApplication(int& argc, char** argv) : QApplication(argc, argv)
{
    connect(this, &QGuiApplication::lastWindowClosed, &ProcessEnd::request);
    connect(this, &QCoreApplication::aboutToQuit, &ProcessEnd::request);
}

void SingleApplication::appendThread(QThread* thread)
{
    threads.append(thread);
}

void SingleApplication::shutdownThreads()
{
    qDebug() << "shutting down threads";
    // By index: the events served in the loop may register further threads, which end as well.
    for (int i = 0; i < threads.size(); ++i) {
        const QPointer<QThread> thread = threads.at(i);
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
        // An exception passes only through functions that have unwind tables, and of Qt's libraries
        // for the board QtCore alone has them. What is neither window nor widget needs no more.
        if (receiver->isWidgetType() || receiver->isWindowType())
            return QApplication::notify(receiver, event);
        return QCoreApplication::notify(receiver, event); // NOLINT(bugprone-parent-virtual-call)
    } catch (const std::exception& exception) {
        qDebug() << "Exception thrown:" << exception.what();
    } catch (...) {
        qDebug() << "... exception thrown";
    }
    return false;
}

void SingleApplication::quitApp()
{
    ProcessEnd::request();
    qDebug() << "quitting";
    shutdownThreads();
    QCoreApplication::quit();
}
