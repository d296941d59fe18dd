#include "Dispenser.h"

#include "software/Background.h"

#include <QCoreApplication>
#include <QTimer>

#include <future>
#include <stdexcept>
#include <thread>

namespace {

using Background::Stop;

// Work that somebody else ends; nothing when that is a stop.
std::optional<bool> endedBy(const std::shared_ptr<std::atomic<bool>>& event)
{
    return Background::resultOf([event](const Stop& stop) {
        while (!*event && !stop)
            std::this_thread::yield();
        return !stop;
    });
}

std::shared_ptr<std::atomic<bool>> newEvent()
{
    return std::make_shared<std::atomic<bool>>(false);
}

} // namespace

class TestBackground : public QObject
{
    Q_OBJECT

private slots:
    // The first wait is in the second, which begins and ends within it, and in reverse.
    void servesEventsThatWaitThemselves()
    {
        const auto first = newEvent();
        const auto second = newEvent();
        QTimer::singleShot(0, this, [&] {
            QTimer::singleShot(0, this, [&] { *first = *second = true; });
            QVERIFY(endedBy(second).value());
        });
        QVERIFY(endedBy(first).value());
        QVERIFY(*second);
    }

    // Also out of two waits, and without the loop that the quit is meant for; a quit that came
    // before any loop ends none.
    void leavesTheWorkBehindWhenTheApplicationQuits()
    {
        std::promise<void> stopped;
        const auto stop = [&stopped](const Stop& asked) {
            while (!asked)
                std::this_thread::yield();
            stopped.set_value();
            return true;
        };
        int unfinished = 0;
        QTimer::singleShot(0, this, [&] {
            QTimer::singleShot(0, this, [&] {
                QTimer::singleShot(0, &QCoreApplication::quit);
                unfinished += !endedBy(newEvent());
                unfinished += !endedBy(newEvent());
            });
            unfinished += !Background::resultOf(stop);
        });
        QCOMPARE(QCoreApplication::exec(), 0);
        QCOMPARE(unfinished, 3);
        stopped.get_future().wait();

        QTimer::singleShot(0, &QCoreApplication::quit);
        QVERIFY(!endedBy(newEvent()));
        const auto onlyResult = [](const Stop&) { return 5; };
        QCOMPARE(Background::resultOf(onlyResult).value(), 5);
    }

    void worksInPlaceOnOtherThreadsAndSurvivesAnException()
    {
        std::thread([] {
            const auto here = std::this_thread::get_id();
            const auto there = [](const Stop&) { return std::this_thread::get_id(); };
            QVERIFY(Background::resultOf(there) == here);
        }).join();
        QVERIFY(!Background::resultOf([](const Stop&) -> int { throw std::runtime_error("x"); }));
    }
};

DISPENSER_TEST_MAIN(TestBackground, QCoreApplication)

#include "tst_background.moc"
