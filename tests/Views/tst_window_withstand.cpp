#include "Accessible.h"
#include "State/Records.h"
#include "WindowBench.h"

#include "Views/ListWindow.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Event = ServerEvent;

namespace {

void beginRun(WindowBench &bench, const QString &name, const std::vector<TrackDTO> &tracks) {
    bench.route(Event::SyncStarted{u"run"_s, u"run"_s, 1});
    bench.route(Event::PlaylistStarted{u"run"_s, u"list"_s, 0, name, tracks});
}

QQuickItem *rowOf(const WindowBench &bench, const QString &title) {
    for (QQuickItem *row : bench.items("trackRow")) {
        if (bench.texts(row).contains(title))
            return row;
    }
    return nullptr;
}

QQuickItem *textOf(QQuickItem *row, const QString &text) {
    return WindowBench::itemsOf(row,
                                [&text](QQuickItem *each) {
                                    return each->inherits("QQuickText") && each->property("text").toString() == text;
                                })
        .value(0);
}

} // namespace

class WindowWithstandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void aPlaylistOfTwentyThousandRowsEndsWithItsLast() {
        WindowBench bench;
        bench.loadLibrary();
        bench.beginRun(1, 20'000);
        QTRY_VERIFY(rowOf(bench, u"Track 0"_s));
        QQuickItem *table = bench.item("trackTable");
        QTRY_COMPARE(table->property("contentHeight").toDouble(), 12 + 80 + 28 + 20'000 * 34.0 + 12 + 12);
        table->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_End);
        QTRY_VERIFY(rowOf(bench, u"Track 19999"_s));
        QQuickItem *last = rowOf(bench, u"Track 19999"_s);
        QTRY_VERIFY(last->mapToItem(table, QPointF(0, last->height())).y() <= table->height());
        bench.route(Event::TrackFinished{u"run"_s, u"t19999"_s, Finish::ok, {}, {}, {}});
        QTRY_VERIFY(bench.texts(last).contains(u"Done"_s));
        bench.key(Qt::Key_Home);
        QTRY_VERIFY(bench.item("groupHeader"));
        QTRY_VERIFY(rowOf(bench, u"Track 0"_s));
        QVERIFY(bench.content()->findChildren<QQuickItem *>(u"trackRow"_s).size() < 60);
    }

    void everyTitleIsShownAsItIsOnOneLine_data() {
        QTest::addColumn<QString>("title");
        QTest::newRow("500 characters") << u"Long title "_s.repeated(46).left(500);
        QTest::newRow("500 without a space") << QString(500, u'W');
        QTest::newRow("right to left") << u"שיר לשבת · أغنية"_s;
        QTest::newRow("combining marks") << u"Z̷̧̢̛̲a̵̡͓l̸̨g̵̢o̴"_s;
        QTest::newRow("emoji") << u"🎛️👩🏽‍🎤🏳️‍🌈 Night"_s;
        QTest::newRow("tags") << u"<b>Bold</b> <img src='http://127.0.0.1:1/x'>"_s;
        QTest::newRow("entities") << u"Drum &amp; Bass &lt;3"_s;
        QTest::newRow("direction overrides") << u"abc\u202Edef\u202C"_s;
        QTest::newRow("two lines") << u"First\nSecond"_s;
    }
    void everyTitleIsShownAsItIsOnOneLine() {
        QFETCH(QString, title);
        WindowBench bench;
        bench.loadLibrary();
        TrackDTO track = trackOf(u"a"_s);
        track.title = track.artist = title;
        track.album = title;
        beginRun(bench, title, {track, trackOf(u"b"_s)});
        QTRY_VERIFY(rowOf(bench, title));
        QQuickItem *row = rowOf(bench, title);
        bench.drawFrame();
        QCOMPARE(row->height(), 34.0);
        QCOMPARE(spoken(row), title);
        QCOMPARE(bench.texts(row).mid(0, 3), QStringList({title, title, title}));
        double end = 0;
        for (QQuickItem *text :
             WindowBench::itemsOf(row, [&title](QQuickItem *each) { return each->property("text") == title; })) {
            QCOMPARE(text->property("textFormat").toInt(), 0); // plain
            QCOMPARE(text->property("lineCount").toInt(), 1);
            const double x = text->mapToItem(row, QPointF(0, 0)).x();
            QVERIFY(x >= end); // and none runs into the next
            end = x + text->property("paintedWidth").toDouble();
            QVERIFY(end <= x + text->width() + 1);
        }
        QVERIFY(bench.texts(bench.item("groupHeader")).contains(title));
    }

    void aDurationThatIsNoneReadsAsADash_data() {
        QTest::addColumn<double>("seconds");
        QTest::newRow("negative") << -5.0;
        QTest::newRow("zero") << 0.0;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
        QTest::newRow("negative infinite") << -std::numeric_limits<double>::infinity();
        QTest::newRow("not a number") << std::nan("");
    }
    void aDurationThatIsNoneReadsAsADash() {
        QFETCH(double, seconds);
        WindowBench bench;
        bench.loadLibrary();
        TrackDTO track = trackOf(u"a"_s);
        track.durationSec = seconds;
        beginRun(bench, u"List"_s, {track});
        QTRY_VERIFY(rowOf(bench, track.title));
        QVERIFY(textOf(rowOf(bench, track.title), u"—"_s));
    }

    void aHugeDurationStaysInItsColumn() {
        WindowBench bench;
        bench.loadLibrary();
        TrackDTO track = trackOf(u"a"_s);
        track.durationSec = 1e12;
        beginRun(bench, u"List"_s, {track});
        QTRY_VERIFY(rowOf(bench, track.title));
        bench.drawFrame();
        QCOMPARE(rowOf(bench, track.title)->height(), 34.0);
        for (QQuickItem *text : WindowBench::itemsOf(rowOf(bench, track.title), [](QQuickItem *each) {
                 return each->inherits("QQuickText") && each->property("text").toString().contains(u':');
             }))
            QVERIFY(text->property("paintedWidth").toDouble() <= 40 + 1);
    }

    void aCrashInTheMiddleOfAReviewLeavesThePanelSound() {
        WindowBench bench;
        bench.loadLibrary();
        beginRun(bench, u"List"_s, {trackOf(u"a"_s), trackOf(u"b"_s), trackOf(u"c"_s)});
        bench.model.sync()->route(needsReview(u"a"_s, {candidateOf(u"c1"_s)}));
        bench.model.sync()->route(needsReview(u"b"_s, {candidateOf(u"c2"_s)}));
        bench.model.openReview();
        QTRY_VERIFY(bench.item("reviewInspector"));
        QTRY_VERIFY(bench.shows(u"Review 1 of 2"_s));
        const QQuickItem *panel = bench.item("reviewInspector");
        QTRY_COMPARE(panel->x() + panel->width(), bench.content()->width());
        static_cast<MockHelperClient &>(*bench.model.client()).emit(HelperEvent::helperCrashed());
        QTRY_COMPARE(bench.model.sync()->phase(), SyncPhase::interrupted);
        QTRY_VERIFY(bench.shows(u"Interrupted"_s));
        // The rows stay, and so does what was being looked at.
        QCOMPARE(bench.items("trackRow").size(), 3);
        QVERIFY(bench.item("reviewInspector"));
        QVERIFY(bench.texts(bench.item("reviewInspector")).contains(u"Title of a"_s));
        QCOMPARE(bench.items("candidate").size(), 1);
        bench.click(bench.item("nextReview"));
        QTRY_VERIFY(bench.texts(bench.item("reviewInspector")).contains(u"Title of b"_s));
        bench.click(bench.item("closeInspector"));
        QTRY_VERIFY(!bench.item("reviewInspector"));
        // A new run begins as if nothing had been.
        beginRun(bench, u"Again"_s, {trackOf(u"a"_s)});
        QTRY_COMPARE(bench.items("trackRow").size(), 1);
        QTRY_VERIFY(bench.shows(u"Syncing"_s));
    }

    void theSmallestWindowHoldsEverythingInItsPlace() {
        WindowBench bench;
        bench.loadLibrary();
        bench.window.window()->resize(880, 600);
        bench.beginRun(1, 40);
        bench.model.sync()->groups()->at(0)->track(1)->setState(TrackState::awaitingReview({candidateOf(u"c"_s)}));
        bench.model.openReview();
        QTRY_VERIFY(bench.item("reviewInspector"));
        QTRY_COMPARE(bench.item("reviewInspector")->mapToScene(QPointF(300, 0)).x(), 880.0);
        QTRY_COMPARE(bench.item("trackTable")->width(), 880.0 - 240 - 300);
        bench.drawFrame();
        // What is left of the columns stands side by side within the row.
        QQuickItem *row = rowOf(bench, u"Track 1"_s);
        QVERIFY(row);
        double end = 0;
        for (const QString &text : {u"Track 1"_s}) {
            QQuickItem *cell = textOf(row, text);
            QVERIFY2(cell, qPrintable(text));
            const double x = cell->mapToItem(row, QPointF(0, 0)).x();
            QVERIFY(x >= end && cell->width() > 0);
            end = x + cell->width();
        }
        QQuickItem *review = bench.item("reviewButton");
        QVERIFY(review->mapToItem(row, QPointF(0, 0)).x() >= end);
        QVERIFY(review->mapToItem(row, QPointF(review->width(), 0)).x() <= row->width());
        // What was dropped is still said.
        TrackModel *done = bench.model.sync()->groups()->at(0)->track(0);
        done->setState(TrackState::done(Finish::ok, TrackMeta{u"flac"_s, {}, u"bandcamp"_s}));
        QTRY_COMPARE(spoken(rowOf(bench, u"Track 0"_s), QAccessible::Description), u"FLAC · Bandcamp"_s);
    }
};

QTEST_MAIN(WindowWithstandTest)
#include "tst_window_withstand.moc"
