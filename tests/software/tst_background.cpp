#include "Dispenser.h"

#include "software/Background.h"

#include <QCoreApplication>
#include <QTimer>

#include <new>
#include <thread>

class TestBackground : public QObject
{
    Q_OBJECT

private slots:
    // Also events that wait themselves: a touch may read the media while they are read.
    void servesEventsAndLeavesTheWorkBehindWhenTheApplicationQuits()
    {
        const auto stopped = std::make_shared<std::atomic<int>>(0);
        const auto untilStop = [stopped](const Background::Stop& stop) {
            while (!stop)
                std::this_thread::yield();
            return ++*stopped;
        };
        QTimer::singleShot(0, this, [&] {
            QTimer::singleShot(0, this, [&] {
                QTimer::singleShot(0, &QCoreApplication::quit);
                Background::resultOf(untilStop);
            });
            Background::resultOf(untilStop);
        });
        QCOMPARE(QCoreApplication::exec(), 0);
        QTRY_COMPARE(stopped->load(), 2);
    }

    void survivesWorkThatFails()
    {
        const auto exhausted = [](const Background::Stop&) -> int { throw std::bad_alloc(); };
        QVERIFY(!Background::resultOf(exhausted));
    }
};

DISPENSER_TEST_MAIN(TestBackground, QCoreApplication)

#include "tst_background.moc"
