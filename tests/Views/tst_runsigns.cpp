// What a user sees of a run who is elsewhere.
#include "Support/ManualClock.h"
#include "Support/Settle.h"
#include "Views/RunNotice.h"
#include "Views/RunProgress.h"

#include <QTest>

using namespace zelk;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

using Event = ServerEvent;
using Shown = std::pair<QString, QString>;

namespace {

class SeenNotices final : public DesktopNotifier {
public:
    void notify(const QString &summary, const QString &body) override { shown.append({summary, body}); }
    void withdraw() override { ++withdrawn; }
    QList<Shown> shown;
    int withdrawn = 0;
};

class SeenBar final : public TaskBarProgress {
public:
    void show(double fraction) override { shown.append(fraction); }
    void clear() override { ++cleared; }
    QList<double> shown;
    int cleared = 0;
};

const QString run = u"run"_s;

} // namespace

class TestRunSigns : public QObject {
    Q_OBJECT

    std::unique_ptr<SyncStore> sync;
    std::shared_ptr<SeenNotices> notifier;
    std::shared_ptr<ApplicationActivation> activation;
    std::unique_ptr<RunNotice> notice;
    std::shared_ptr<SeenBar> bar;
    std::shared_ptr<ManualClock> clock;
    std::unique_ptr<RunProgress> progress;
    bool inFront = false;
    int broughtToFront = 0;

    void route(const Event &event) { sync->route(HelperEvent::server(event)); }
    void begin(int rows) {
        std::vector<TrackDTO> tracks;
        for (int i = 0; i < rows; ++i)
            tracks.push_back({u"t%1"_s.arg(i), u"Track"_s, u"Artist"_s, {}, 200, {}});
        sync->markPreparing();
        route(Event::SyncStarted{run, run, 1});
        route(Event::PlaylistStarted{run, u"list"_s, 0, u"List"_s, tracks});
    }
    void finish(int row, Finish how = Finish::ok) {
        Event::TrackFinished event;
        event.correlationId = run;
        event.trackId = u"t%1"_s.arg(row);
        event.status = how;
        route(event);
    }
    void end() { route(Event::SyncDone{run, run, {.ok = 2, .failed = 1}}); }
    void passTime() {
        clock->advance(RunProgress::interval);
        settle();
    }

private Q_SLOTS:
    void init() {
        inFront = false;
        broughtToFront = 0;
        sync = std::make_unique<SyncStore>();
        notifier = std::make_shared<SeenNotices>();
        activation = std::make_shared<ApplicationActivation>();
        notice =
            std::make_unique<RunNotice>(*sync, RunNotice::Surroundings{.notifier = notifier,
                                                                       .activation = activation,
                                                                       .isInFront = [this] { return inFront; },
                                                                       .bringToFront = [this] { ++broughtToFront; }});
        bar = std::make_shared<SeenBar>();
        clock = std::make_shared<ManualClock>();
        progress = std::make_unique<RunProgress>(*sync, bar, clock);
    }
    void cleanup() {
        notice.reset();
        progress.reset();
        sync.reset();
    }

    void aRunThatIsDoneIsToldOnceInTheWordsOfTheWindow() {
        begin(3);
        QVERIFY(notifier->shown.isEmpty());
        end();
        QCOMPARE(notifier->shown, (QList<Shown>{{u"Complete"_s, u"2 done · 1 failed"_s}}));
        end(); // which an engine may well say twice
        QCOMPARE(notifier->shown.size(), 1);
    }

    void aRunThatIsCutShortIsToldWithHowFarItCame() {
        begin(3);
        finish(0);
        finish(1, Finish::failed);
        sync->route(HelperEvent::helperCrashed());
        QCOMPARE(notifier->shown.size(), 1);
        QCOMPARE(notifier->shown.constFirst().first, u"Interrupted"_s);
        QVERIFY2(notifier->shown.constFirst().second.contains(u" / 3 done"_s),
                 qPrintable(notifier->shown.constFirst().second));
    }

    void aRunThatTheUserEndedIsNotTold() {
        begin(1);
        sync->markCancelled();
        QVERIFY(notifier->shown.isEmpty());
    }

    void anEndWithoutARunIsNotTold() {
        end();
        sync->clearResults();
        sync->route(HelperEvent::helperCrashed());
        QVERIFY(notifier->shown.isEmpty());
    }

    void whoLooksAtTheWindowIsToldNothing() {
        inFront = true;
        begin(1);
        end();
        QVERIFY(notifier->shown.isEmpty());
        inFront = false; // nor when they turn away afterwards
        settle();
        QVERIFY(notifier->shown.isEmpty());
    }

    void everyRunIsToldAnew() {
        begin(1);
        end();
        const int before = notifier->withdrawn;
        begin(1);
        QCOMPARE(notifier->withdrawn, before + 1); // what was said is of the run before
        end();
        QCOMPARE(notifier->shown.size(), 2);
    }

    void pickingTheMessageBringsTheWindow() {
        Q_EMIT notifier->activated();
        QCOMPARE(broughtToFront, 1);
    }

    void whoComesToTheWindowNeedsNoMessage() {
        begin(1);
        end();
        const int before = notifier->withdrawn;
        Q_EMIT activation->didBecomeActive();
        QCOMPARE(notifier->withdrawn, before + 1);
    }

    void theBarIsThereWhileThereIsARun() {
        settle();
        QVERIFY(bar->shown.isEmpty());
        sync->markPreparing();
        QCOMPARE(bar->shown, QList<double>{0});
        begin(2);
        end();
        QCOMPARE(bar->cleared, 1);
        passTime();
        QCOMPARE(bar->shown, QList<double>{0});
        QCOMPARE(bar->cleared, 1);
    }

    void everyEndOfARunTakesTheBarAway_data() {
        QTest::addColumn<SyncPhase>("phase");
        QTest::newRow("done") << SyncPhase::done;
        QTest::newRow("cancelled") << SyncPhase::cancelled;
        QTest::newRow("interrupted") << SyncPhase::interrupted;
        QTest::newRow("cleared") << SyncPhase::idle;
    }
    void everyEndOfARunTakesTheBarAway() {
        QFETCH(SyncPhase, phase);
        begin(2);
        finish(0);
        if (phase == SyncPhase::done)
            end();
        else if (phase == SyncPhase::cancelled)
            sync->markCancelled();
        else if (phase == SyncPhase::interrupted)
            sync->route(HelperEvent::helperCrashed());
        else
            sync->clearResults();
        QCOMPARE(sync->phase(), phase);
        QCOMPARE(bar->cleared, 1);
        QCOMPARE(clock->pendingAlarms(), 0); // and nothing is left to come
    }

    void theBarMovesFourTimesASecondAtMost() {
        begin(10);
        passTime();
        passTime();
        QCOMPARE(bar->shown, QList<double>{0});
        for (int row = 0; row < 5; ++row)
            finish(row);
        settle();
        QCOMPARE(bar->shown, (QList<double>{0, 0.1}));
        clock->advance(RunProgress::interval - 1ms);
        settle();
        QCOMPARE(bar->shown, (QList<double>{0, 0.1}));
        clock->advance(1ms);
        settle();
        QCOMPARE(bar->shown, (QList<double>{0, 0.1, 0.5}));
    }

    void theBarSaysNothingTwiceAndRestsWhenNothingHappens() {
        begin(1000);
        passTime();
        passTime();
        QCOMPARE(clock->pendingAlarms(), 0);
        finish(0); // one in a thousand is no whole percent
        passTime();
        QCOMPARE(bar->shown, QList<double>{0});
        passTime();
        QCOMPARE(clock->pendingAlarms(), 0);
    }

    void quittingInARunTakesTheBarAway() {
        begin(2);
        progress.reset();
        QCOMPARE(bar->cleared, 1);
        progress = std::make_unique<RunProgress>(*sync, bar, clock);
        QCOMPARE(bar->shown.size(), 2); // and a run under way is found
    }
};

QTEST_GUILESS_MAIN(TestRunSigns)
#include "tst_runsigns.moc"
