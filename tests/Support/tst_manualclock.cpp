#include "Support/ManualClock.h"
#include "Support/Task.h"

#include <QTest>

#include <atomic>
#include <thread>

using namespace zelk;
using namespace std::chrono_literals;

class TestManualClock : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void timeStandsStillUntilItIsTold() {
        ManualClock clock;
        QCOMPARE(clock.now(), Clock::Time(0));
        clock.advance(3s);
        clock.advance(5ms);
        QCOMPARE(clock.now(), Clock::Time(3005ms));
    }

    void dueAlarmsRingInTheOrderOfTheirDeadlines() {
        ManualClock clock;
        QList<int> rung;
        const auto late = clock.after(3s, [&] { rung.append(3); });
        const auto early = clock.after(1s, [&] { rung.append(1); });
        const auto middle = clock.after(2s, [&] { rung.append(2); });
        const auto alsoMiddle = clock.after(2s, [&] { rung.append(22); });
        const auto notDue = clock.after(4s, [&] { rung.append(4); });
        QCOMPARE(clock.pendingAlarms(), 5);
        clock.advance(3s);
        QVERIFY2(rung.isEmpty(), "an alarm rang inside of the call");
        QTRY_COMPARE(rung, (QList{1, 2, 22, 3}));
        QCOMPARE(clock.pendingAlarms(), 1);
        QCOMPARE(clock.untilNextAlarm(), std::optional<Clock::Duration>(1s));
    }

    void anAlarmRingsOnce() {
        ManualClock clock;
        int rung = 0;
        const auto alarm = clock.after(1s, [&] { ++rung; });
        clock.advance(1s);
        clock.advance(5s);
        QCoreApplication::processEvents();
        QCOMPARE(rung, 1);
        QVERIFY(!clock.untilNextAlarm());
    }

    void aDroppedAlarmNeverRings() {
        ManualClock clock;
        bool rang = false;
        auto before = clock.after(1s, [&] { rang = true; });
        before.reset();
        QCOMPARE(clock.pendingAlarms(), 0);
        auto after = clock.after(1s, [&] { rang = true; });
        clock.advance(2s);
        after.reset();
        QCoreApplication::processEvents();
        QVERIFY(!rang);
    }

    void anAlarmMayBeDroppedByWhatItRingsFor() {
        ManualClock clock;
        bool rang = false;
        std::unique_ptr<Clock::Alarm> alarm;
        alarm = clock.after(1s, [&, kept = QByteArray(100, 'x')] {
            alarm.reset();
            rang = kept.size() == 100;
        });
        clock.advance(1s);
        QTRY_VERIFY(rang);
    }

    void aDelayOfNothingRingsOnTheNextTurn() {
        ManualClock clock;
        int rung = 0;
        const auto now = clock.after(0s, [&] { ++rung; });
        const auto past = clock.after(-1s, [&] { ++rung; });
        QCOMPARE(rung, 0);
        QTRY_COMPARE(rung, 2);
    }

    void anAlarmOutlivesItsClockInSilence() {
        auto clock = std::make_unique<ManualClock>();
        bool rang = false;
        const auto alarm = clock->after(1s, [&] { rang = true; });
        clock.reset();
        QCoreApplication::processEvents();
        QVERIFY(!rang);
    }

    void aSleepEndsWhenItsTimeHasPassed() {
        const auto clock = std::make_shared<ManualClock>();
        bool ended = false;
        startTask(this, [clock, &ended](std::stop_token stop) -> QCoro::Task<> {
            auto sleeping = clock->sleep(1h, stop);
            co_await sleeping;
            ended = true;
        });
        QTRY_COMPARE(clock->pendingAlarms(), 1);
        clock->advance(59min);
        QCoreApplication::processEvents();
        QVERIFY(!ended);
        clock->advance(1min);
        QTRY_VERIFY(ended);
    }

    void anAlarmRingsOnTheExecutorThatSetIt() {
        ManualClock clock;
        const auto executor = SerialExecutor::make(QStringLiteral("elsewhere"));
        std::unique_ptr<Clock::Alarm> alarm;
        std::atomic_bool rangThere = false;
        std::atomic_bool isGone = false;
        executor->post([&] { alarm = clock.after(1s, [&] { rangThere = executor->isCurrent(); }); });
        QTRY_COMPARE(clock.pendingAlarms(), 1);
        clock.advance(1s);
        QTRY_VERIFY(rangThere);
        executor->post([&] {
            alarm.reset();
            isGone = true;
        });
        QTRY_VERIFY(isGone);
    }
};

QTEST_GUILESS_MAIN(TestManualClock)
#include "tst_manualclock.moc"
