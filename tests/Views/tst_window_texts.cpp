#include "Accessible.h"
#include "State/Records.h"
#include "Support/ScriptedClient.h"
#include "WindowBench.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

// What the window says, to the character, where no table says it.
class WindowTextsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void theSidebarSaysWhatItWaitsFor() {
        const auto engine = std::make_shared<ScriptedClient>();
        WindowBench bench(engine);
        QTRY_VERIFY(bench.shows(u"Filter playlists"_s));
        startTask(&bench.model, [&](const std::stop_token &) { return bench.model.library()->refresh(); });
        QTRY_VERIFY(bench.shows(u"Loading playlists…"_s));
        while (engine->held() > 0)
            engine->release(R"({"playlists":[]})");
        QTRY_VERIFY(bench.shows(u"No Playlists Yet"_s));
        QVERIFY(bench.shows(u"Connect Apple Music or Spotify to see your playlists here."_s));
        QVERIFY(bench.shows(u"Open Setup"_s));
    }

    void theEmptyPaneSaysWhatToDo() {
        WindowBench bench;
        bench.loadLibrary();
        QTRY_VERIFY(bench.shows(u"Select a Playlist"_s));
        QVERIFY(
            bench.shows(u"Choose a playlist in the sidebar to see its tracks, then press Sync (⌘R) to download."_s));
    }

    void theSummarysBarIsSpokenInPercent() {
        WindowBench bench;
        bench.beginRun(1, 4);
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::done(Finish::ok));
        const auto isBar = [](QQuickItem *each) { return spoken(each) == u"Overall sync progress"; };
        QTRY_COMPARE(WindowBench::itemsOf(bench.content(), isBar).size(), 1);
        QQuickItem *bar = WindowBench::itemsOf(bench.content(), isBar).first();
        QTRY_COMPARE(spoken(bar, QAccessible::Description), u"25 percent"_s);
    }

    void aDownloadIsSpokenWholeWhateverFits() {
        WindowBench bench;
        bench.beginRun(1, 1);
        bench.route(ServerEvent::DownloadProgress{u"run"_s, u"t0"_s, 42, u"6 MB"_s, u"1.2 MB/s"_s});
        const auto isBar = [](QQuickItem *each) { return spoken(each) == u"Downloading"; };
        QTRY_COMPARE(WindowBench::itemsOf(bench.content(), isBar).size(), 1);
        QQuickItem *bar = WindowBench::itemsOf(bench.content(), isBar).first();
        QCOMPARE(spoken(bar, QAccessible::Description), u"42 percent"_s);
        const auto isDetail = [](QQuickItem *each) { return spoken(each) == u"42% · 6 MB · 1.2 MB/s"; };
        QCOMPARE(WindowBench::itemsOf(bench.content(), isDetail).size(), 1);
    }

    void aPlaylistsEndIsSpokenWithItsName() {
        WindowBench bench;
        bench.beginRun(1, 1);
        bench.route(ServerEvent::PlaylistFinished{u"run"_s, u"list0"_s, Finish::failed});
        QTRY_VERIFY(spoken(bench.item("groupHeader")).contains(u"List 0, Failed"_s));
    }

    void aRowsMenuHasItsEntriesInTheirOrder() {
        WindowBench bench;
        bench.beginRun(1, 2);
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::awaitingReview({candidateOf(u"c"_s)}));
        QTRY_VERIFY(!bench.items("trackRow").isEmpty());
        QTRY_VERIFY(bench.item("reviewButton"));
        bench.click(bench.item("trackRow", 0), {}, Qt::RightButton);
        QTRY_VERIFY(bench.shows(u"Copy Title"_s));
        bench.drawFrame();
        double last = 0;
        for (const QString &title : {u"Retry"_s, u"Review…"_s, u"Skip"_s, u"Copy Title"_s}) {
            const auto isEntry = [&title](QQuickItem *each) {
                return each->inherits("QQuickMenuItem") && each->property("text").toString() == title;
            };
            QTRY_COMPARE(WindowBench::itemsOf(bench.content(), isEntry).size(), 1);
            const double top = WindowBench::itemsOf(bench.content(), isEntry).first()->mapToScene(QPointF()).y();
            QVERIFY2(top > last, qPrintable(title));
            last = top;
        }
    }

    void thePanelsButtonsSayWhatTheyDo() {
        WindowBench bench;
        bench.beginRun(1, 1);
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::awaitingReview({candidateOf(u"c"_s)}));
        bench.model.openReview();
        QTRY_VERIFY(bench.item("reviewInspector"));
        QTRY_VERIFY(bench.shows(u"Accept Best"_s));
        QVERIFY(bench.shows(u"Skip"_s));
        QVERIFY(bench.shows(u"https://"_s));
        QVERIFY(!bench.shows(u"Use Selected"_s) && !bench.shows(u"Use URL"_s));
        QVERIFY(press(bench.item("candidate"), QAccessibleActionInterface::toggleAction()));
        QTRY_VERIFY(bench.shows(u"Use Selected"_s));
    }
};

QTEST_MAIN(WindowTextsTest)
#include "tst_window_texts.moc"
