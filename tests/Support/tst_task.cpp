#include "Platform/BootClock.h"
#include "Support/Task.h"

#include <QTest>

#include <stdexcept>

using namespace zelk;
using namespace std::chrono_literals;

class TestTask : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTaskBeginsOnTheNextTurnOfTheLoop() {
        bool began = false;
        startTask(this, [&](std::stop_token) -> QCoro::Task<> {
            began = true;
            co_return;
        });
        QVERIFY(!began);
        QTRY_VERIFY(began);
    }

    void tasksBeginInTheOrderOfTheirStarting() {
        QList<int> order;
        for (int i = 0; i < 10; ++i)
            startTask(this, [&order, i](std::stop_token) -> QCoro::Task<> {
                order.append(i);
                co_return;
            });
        QTRY_COMPARE(order, (QList{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    }

    void aTaskCancelledBeforeItBeganDoesNothing() {
        bool began = false;
        auto handle = startTask(this, [&](std::stop_token) -> QCoro::Task<> {
            began = true;
            co_return;
        });
        handle.cancel();
        QTest::qWait(5);
        QVERIFY(!began);
        QVERIFY(handle.isCancelled());
    }

    void aTaskEndsWithItsOwner() {
        auto owner = std::make_unique<QObject>();
        const auto clock = std::make_shared<BootClock>();
        bool cancelled = false;
        startTask(owner.get(), [clock, &cancelled](std::stop_token stop) -> QCoro::Task<> {
            try {
                auto sleeping = clock->sleep(1h, stop);
                co_await sleeping;
            } catch (const Cancelled &) {
                cancelled = true;
            }
        });
        QTest::qWait(1);
        owner.reset();
        QTRY_VERIFY(cancelled);
    }

    void aTaskEndsWithItsScope() {
        auto scope = std::make_unique<TaskScope>();
        const auto clock = std::make_shared<BootClock>();
        bool cancelled = false;
        startTask(scope.get(), [clock, &cancelled](std::stop_token stop) -> QCoro::Task<> {
            try {
                auto sleeping = clock->sleep(1h, stop);
                co_await sleeping;
            } catch (const Cancelled &) {
                cancelled = true;
            }
        });
        QTest::qWait(1);
        scope.reset();
        QTRY_VERIFY(cancelled);
    }

    void aFailureThatNobodyTakesIsLogged() {
        QTest::ignoreMessage(QtCriticalMsg, "a task ended with a failure that nobody took: it broke");
        startTask(this, [](std::stop_token) -> QCoro::Task<> {
            throw std::runtime_error("it broke");
            co_return;
        });
        QTest::qWait(5);
    }

    void droppingTheHandleLetsTheTaskGoOn() {
        const auto clock = std::make_shared<BootClock>();
        bool ended = false;
        {
            const auto handle = startTask(this, [clock, &ended](std::stop_token stop) -> QCoro::Task<> {
                auto sleeping = clock->sleep(2ms, stop);
                co_await sleeping;
                ended = true;
            });
        }
        QTRY_VERIFY(ended);
    }

    void aSleepOfNothingEndsOnTheNextTurn() {
        const auto clock = std::make_shared<BootClock>();
        bool ended = false;
        startTask(this, [clock, &ended](std::stop_token stop) -> QCoro::Task<> {
            auto sleeping = clock->sleep(0ms, stop);
            co_await sleeping;
            ended = true;
        });
        QTRY_VERIFY(ended);
    }

    void aDroppedAlarmNeverRings() {
        BootClock clock;
        bool rang = false;
        auto alarm = clock.after(1ms, [&] { rang = true; });
        alarm.reset();
        QTest::qWait(10);
        QVERIFY(!rang);
    }

    void anAlarmMayBeDroppedByWhatItRingsFor() {
        BootClock clock;
        bool rang = false;
        std::unique_ptr<Clock::Alarm> alarm;
        alarm = clock.after(1ms, [&] {
            alarm.reset();
            rang = true;
        });
        QTRY_VERIFY(rang);
    }

    void theClockNeverGoesBackAndASleepLastsAtLeastItsTime() {
        const auto clock = std::make_shared<BootClock>();
        const auto before = clock->now();
        bool ended = false;
        startTask(this, [clock, &ended](std::stop_token stop) -> QCoro::Task<> {
            auto sleeping = clock->sleep(20ms, stop);
            co_await sleeping;
            ended = true;
        });
        QTRY_VERIFY(ended);
        QVERIFY(clock->now() - before >= 20ms);
    }
};

QTEST_GUILESS_MAIN(TestTask)
#include "tst_task.moc"
