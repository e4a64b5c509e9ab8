#include "DialogBench.h"
#include "Mirror.h"
#include "State/Records.h"
#include "Views/QuestionDialog.h"
#include "WindowBench.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Event = ServerEvent;

namespace {

class Bench : public WindowBench {
public:
    Bench() {
        desktop->setReducedMotion(true);
        loadLibrary();
        model.library()->setSelection({u"gigs"_s}); // opens it
        model.sync()->route(syncStarted(u"run"_s));
        model.sync()->route(playlistStarted(u"peak"_s, {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}));
        const PlaylistGroup *group = model.sync()->groups()->at(0);
        group->track(0)->setState(TrackState::working(Phase::searching));
        group->track(1)->setState(TrackState::working(Phase::downloading));
        group->track(1)->setDownloadFraction(0.41);
        group->track(2)->setState(TrackState::present(TrackMeta{u"flac"_s, {}, u"youtube"_s}));
        group->track(3)->setState(TrackState::failed(u"No match found"_s));
        model.sync()->route(needsReview(u"e"_s, {candidateOf(u"c1"_s), candidateOf(u"c2"_s)}));
        model.orphans()->accumulate({u"/music/Gone 1.aiff"_s, u"/music/Gone 2.aiff"_s});
        model.sync()->setBanner(SyncBanner::info(u"The engine was restarted."_s));
        QTRY_VERIFY(item("orphansBanner"));
        click(item("orphansToggle"));
        settle();
    }
    void settle() const {
        drawFrame();
        settleDown();
        drawFrame();
    }
    double middle(const char *name) const { return item(name)->mapToScene(QPointF(item(name)->width() / 2, 0)).x(); }
};

} // namespace

class RightToLeftTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"qrc:.*"_s)); }
    void cleanup() { settleDown(); }

    void everythingInTheWindowStandsOnTheOtherSide() {
        Bench bench;
        const double width = bench.content()->width();
        const auto compare = [&] {
            const auto before = Mirror::lookAt(bench.window.window());
            QVERIFY(before.size() > 60);
            const Mirrored mirrored;
            bench.settle();
            const auto after = Mirror::lookAt(bench.window.window());
            const QStringList wrong = Mirror::faults(before, after, width);
            for (const QString &each : wrong)
                qWarning("%s", qPrintable(each));
            QVERIFY(wrong.isEmpty());
        };
        compare();
        bench.settle();
        bench.model.openReview();
        QTRY_VERIFY(bench.item("candidate"));
        bench.settle();
        compare();
    }

    void theSidebarIsAtTheRightAndTheReviewAtTheLeft() {
        const Mirrored mirrored;
        Bench bench;
        bench.model.openReview();
        QTRY_VERIFY(bench.item("candidate"));
        bench.settle();
        const double width = bench.content()->width();
        QVERIFY(bench.middle("playlistList") > width * 3 / 4);
        QVERIFY(bench.middle("reviewInspector") < width / 4);
        QCOMPARE(bench.item("reviewInspector")->mapToScene(QPointF()).x(), 0.0);
    }

    void theColumnsAreDraggedTheOtherWay() {
        const Mirrored mirrored;
        Bench bench;
        const auto drag = [&bench](const char *name, int by) {
            const QPoint from(static_cast<int>(bench.middle(name)), 300);
            QTest::mousePress(bench.window.window(), Qt::LeftButton, {}, from);
            QTest::mouseMove(bench.window.window(), from + QPoint(by, 0));
            QTest::mouseRelease(bench.window.window(), Qt::LeftButton, {}, from + QPoint(by, 0));
            bench.settle();
        };
        const double before = bench.item("playlistList")->width();
        drag("sidebarEdge", -20);
        QCOMPARE(bench.item("playlistList")->width(), before + 20);
        bench.model.openReview();
        QTRY_VERIFY(bench.item("reviewInspector"));
        bench.window.window()->resize(1500, 720);
        bench.settle();
        const double review = bench.item("reviewInspector")->width();
        drag("inspectorEdge", 20);
        QCOMPARE(bench.item("reviewInspector")->width(), review + 20);
    }

    void theTreeGrowsToTheLeft() {
        const Mirrored mirrored;
        WindowBench bench;
        bench.loadLibrary();
        bench.item("playlistList")->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Left);
        bench.drawFrame();
        QVERIFY(bench.shows(u"Terrace Sunset"_s));
        bench.key(Qt::Key_Right);
        bench.drawFrame();
        QVERIFY(!bench.shows(u"Terrace Sunset"_s));
        QCOMPARE(bench.item("folderChevron")->property("symbol").toString(), u"chevron.left"_s);
    }

    void aDialogIsMirroredToo() {
        DialogBench bench;
        QuestionDialog question(bench.host);
        const auto answer = question.ask({u"May zelk look?"_s, u"It changes nothing."_s, u"Allow"_s, u"Don't Allow"_s});
        QQuickWindow *dialog = DialogBench::shown("questionDialog");
        QVERIFY(dialog && QTest::qWaitForWindowExposed(dialog));
        const auto before = Mirror::lookAt(dialog);
        {
            const Mirrored mirrored;
            settleDown();
            QTRY_COMPARE(Mirror::faults(before, Mirror::lookAt(dialog), dialog->width()), QStringList());
        }
        dialog->close();
    }
};

QTEST_MAIN(RightToLeftTest)
#include "tst_righttoleft.moc"
