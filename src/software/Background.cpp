#include "software/Background.h"

#include <QCoreApplication>
#include <QDebug>
#include <QEventLoop>
#include <QThread>

#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

namespace {

using Background::Stop;
using Work = std::function<void(const Stop&)>;

// What the two threads know of each other; it lives as long as the longer of them needs it.
class Wait
{
public:
    explicit Wait(QEventLoop* caller) : m_caller(caller) { }

    const Stop& stop() const { return m_stop; }

    // By the work's thread.
    void end()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ended = true;
        m_change.notify_one();
        if (m_caller)
            QMetaObject::invokeMethod(m_caller, &QEventLoop::quit, Qt::QueuedConnection);
    }

    void awaitEnd()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_change.wait(lock, [this] { return m_ended; });
    }

    // By the caller, which waits no longer; whether the work has ended.
    bool leave()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_caller = nullptr;
        m_stop = true;
        return m_ended;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_change;
    QEventLoop* m_caller; // null once it has left
    bool m_ended = false;
    Stop m_stop {false};
};

void doWork(const Work& work, const Stop& stop)
{
    try {
        work(stop);
    } catch (const std::exception& error) {
        qDebug() << "background work failed: " << error.what();
    } catch (...) {
        qDebug() << "background work failed";
    }
}

// False when no thread can be had. Detached: a thread that the kernel holds up can be waited for by
// nobody, and must not hold up the end of the process.
bool start(const std::shared_ptr<Wait>& wait, const Work& work)
{
    try {
        std::thread([wait, work] {
            doWork(work, wait->stop());
            wait->end();
        }).detach();
    } catch (const std::system_error& error) {
        qDebug() << "no thread for background work: " << error.what();
        return false;
    }
    return true;
}

bool isInterfaceThread()
{
    const QCoreApplication* const application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread();
}

bool doInPlace(const Work& work)
{
    doWork(work, Background::never);
    return true;
}

} // namespace

bool Background::run(const Work& work)
{
    if (!isInterfaceThread())
        return doInPlace(work);
    QEventLoop loop;
    const auto wait = std::make_shared<Wait>(&loop);
    if (!start(wait, work))
        return doInPlace(work);
    // A quit that was asked for while no loop ran is still in force, though there is nothing to
    // leave, and keeps this one from running.
    if (loop.exec() == -1 && QThread::currentThread()->loopLevel() == 0)
        wait->awaitEnd();
    return wait->leave();
}
