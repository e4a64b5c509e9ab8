#include "Services/UpdateSchedule.h"
#include "Support/ManualClock.h"

#include <QTemporaryDir>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class TestUpdateSchedule : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> _home;
    std::shared_ptr<UserDefaults> _defaults;
    std::shared_ptr<ManualClock> _clock;
    std::unique_ptr<UpdateSchedule> _schedule;
    QDateTime _now;
    int _due = 0;

    void launch() {
        _schedule.reset();
        _defaults = std::make_shared<UserDefaults>(_home->filePath(u"zelk.conf"_s));
        _schedule = std::make_unique<UpdateSchedule>(
            _defaults, _clock, [this] { return _now; },
            [this] {
                ++_due;
                _schedule->checked();
            });
        _schedule->start();
        turn();
    }
    static void turn() {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }
    void pass(std::chrono::seconds time) {
        _now = _now.addSecs(time.count());
        _clock->advance(time);
        turn();
    }
    void setBack(std::chrono::seconds time) { _now = _now.addSecs(-time.count()); }

private Q_SLOTS:
    void init() {
        _schedule.reset();
        _home = std::make_unique<QTemporaryDir>();
        _clock = std::make_shared<ManualClock>();
        _now = QDateTime(QDate(2030, 5, 1), QTime(12, 0), Qt::UTC);
        _due = 0;
    }

    void theFirstCheckIsDueAtOnceAndTheNextInADay() {
        launch();
        QCOMPARE(_due, 1);
        pass(24h - 1s);
        QCOMPARE(_due, 1);
        pass(1s);
        QCOMPARE(_due, 2);
        pass(24h);
        QCOMPARE(_due, 3);
    }

    void aRestartKeepsTheTimeOfTheLastCheck() {
        launch();
        pass(10h);
        launch();
        QCOMPARE(_due, 1);
        pass(14h - 1s);
        QCOMPARE(_due, 1);
        pass(1s);
        QCOMPARE(_due, 2);
    }

    void aLaunchAfterMoreThanADayChecksOnce() {
        launch();
        _schedule.reset();
        pass(24h * 365);
        launch();
        QCOMPARE(_due, 2);
        pass(24h - 1s);
        QCOMPARE(_due, 2);
    }

    void manyRestartsInADayCheckOnce() {
        for (int i = 0; i < 20; ++i) {
            launch();
            pass(60s);
        }
        QCOMPARE(_due, 1);
    }

    void aCalendarThatWasSetBackDelaysByADayAtMost() {
        launch();
        setBack(24h * 400);
        launch();
        QCOMPARE(_due, 1);
        pass(24h - 1s);
        QCOMPARE(_due, 1);
        pass(1s);
        QCOMPARE(_due, 2);
    }

    void shortRunsAfterItWasSetBackAddUpToADay() {
        launch();
        setBack(24h * 400);
        for (int i = 0; i < 23; ++i) {
            launch();
            pass(1h);
        }
        QCOMPARE(_due, 1);
        pass(1h);
        launch();
        QCOMPARE(_due, 2);
    }

    void aCalendarThatKeepsBeingSetBackBringsNoStorm() {
        for (int i = 0; i < 20; ++i) {
            launch();
            setBack(24h * 2);
        }
        QCOMPARE(_due, 1);
    }

    void settingItBackWhileTheProgramRunsChangesNothing() {
        launch();
        setBack(24h * 400);
        pass(24h);
        QCOMPARE(_due, 2);
    }

    void aCheckThatWasAskedForMovesTheNext() {
        launch();
        pass(20h);
        _schedule->checked();
        pass(24h - 1s);
        QCOMPARE(_due, 1);
        pass(1s);
        QCOMPARE(_due, 2);
    }

    void stoppedItIsSilentUntilItIsStartedAgain() {
        launch();
        _schedule->stop();
        pass(48h);
        _schedule->checked();
        pass(48h);
        QCOMPARE(_due, 1);
        _schedule->start();
        turn();
        QCOMPARE(_due, 2);
    }

    void anUnreadableTimeIsNone_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("words") << u"yesterday"_s;
        QTest::newRow("nothing") << QString();
        QTest::newRow("no such day") << u"2030-02-31T12:00:00Z"_s;
    }
    void anUnreadableTimeIsNone() {
        QFETCH(const QString, text);
        UserDefaults(_home->filePath(u"zelk.conf"_s)).set(u"SULastCheckTime"_s, text);
        launch();
        QCOMPARE(_due, 1);
    }

    void theTimeIsKeptInUniversalTime() {
        _now = QDateTime(QDate(2030, 5, 1), QTime(12, 0), Qt::OffsetFromUTC, 7200);
        launch();
        QCOMPARE(_defaults->value(u"SULastCheckTime"_s).toString(), u"2030-05-01T10:00:00Z"_s);
    }
};

QTEST_GUILESS_MAIN(TestUpdateSchedule)
#include "tst_updateschedule.moc"
