#include "State/Records.h"
#include "WindowBench.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

CandidateDTO candidate(const char *id, const QString &title, double confidence) {
    CandidateDTO each = candidateOf(QString::fromLatin1(id));
    each.title = title;
    each.confidence = confidence;
    return each;
}

} // namespace

class TestReviewInspector : public QObject {
    Q_OBJECT

    std::unique_ptr<WindowBench> bench;

    // Rows p#0 to p#2, of which the first `waiting` await review with the candidates given to all of them.
    void review(int waiting, const std::vector<CandidateDTO> &candidates) {
        for (const auto &event : {syncStarted(u"run-1"_s), playlistStarted(u"p"_s, {u"p#0"_s, u"p#1"_s, u"p#2"_s})})
            bench->model.sync()->route(event);
        for (int i = 0; i < waiting; ++i)
            bench->model.sync()->route(needsReview(u"p#%1"_s.arg(i), candidates));
        bench->window.window()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(bench->window.window()));
        bench->model.openReview();
        QTRY_VERIFY(bench->item("reviewInspector"));
        QTRY_COMPARE(bench->item("reviewInspector")->x() + bench->item("reviewInspector")->width(),
                     bench->item("reviewInspector")->parentItem()->width());
    }
    std::vector<CandidateDTO> two() const {
        return {candidate("c1", u"Undertow (Original Mix)"_s, 0.68), candidate("c2", u"Undertow <b>live</b>"_s, 0.31)};
    }
    std::vector<Request> decisions() {
        std::vector<Request> found;
        for (const auto &request : bench->sent()) {
            if (request.method() == Method::reviewDecision)
                found.push_back(request);
        }
        return found;
    }
    static Request decided(const QString &trackId, const ReviewDecision &decision) {
        return Request::reviewDecision(u"run-1"_s, trackId, decision);
    }
    bool shows(const QString &text) { return bench->texts(bench->item("reviewInspector")).contains(text); }

private Q_SLOTS:
    void init() { bench = std::make_unique<WindowBench>(); }
    void cleanup() {
        bench.reset();
        QCoreApplication::processEvents();
    }

    void thePanelIsAwayUntilAReviewIsOpened() { QVERIFY(!bench->item("reviewInspector")); }

    void thePanelShowsTheTrackAndItsCandidatesAsPlainText() {
        review(2, two());
        QVERIFY(shows(u"Review"_s));
        QTRY_VERIFY(shows(u"Review 1 of 2"_s));
        QVERIFY(shows(u"Title of p#0"_s));
        QVERIFY(shows(u"Artist"_s));
        QVERIFY(shows(u"5:00"_s));
        QVERIFY(shows(u"Undertow <b>live</b>"_s));
        QVERIFY(shows(u"68%"_s));
        QVERIFY(shows(u"Or paste a direct URL"_s));
        QCOMPARE(bench->items("candidate").size(), 2);
        const auto *meter = QAccessible::queryAccessibleInterface(bench->item("confidenceMeter"));
        QCOMPARE(meter->text(QAccessible::Name), u"Match confidence"_s);
        QCOMPARE(meter->text(QAccessible::Description), u"68 percent"_s);
    }

    void oneRowHasNoStepper() {
        review(1, two());
        QVERIFY(!bench->item("nextReview"));
        QVERIFY(!bench->item("reviewPosition"));
    }

    void theStepperGoesRoundByMouseAndKeys() {
        review(2, two());
        QTRY_VERIFY(bench->item("nextReview"));
        bench->click(bench->item("nextReview"));
        QVERIFY(shows(u"Review 2 of 2"_s));
        bench->click(bench->item("nextReview"));
        QVERIFY(shows(u"Review 1 of 2"_s));
        bench->key(Qt::Key_BracketLeft, Qt::ControlModifier | Qt::AltModifier);
        QVERIFY(shows(u"Review 2 of 2"_s));
        bench->key(Qt::Key_BracketRight, Qt::ControlModifier | Qt::AltModifier);
        QVERIFY(shows(u"Review 1 of 2"_s));
    }

    void theButtonsStandInOneRow() {
        review(1, two());
        auto *const memory = bench->window.window()->property("memory").value<QObject *>();
        QVERIFY(memory->setProperty("inspectorWidth", 300));
        bench->window.window()->resize(1040, 700);
        bench->click(bench->item("candidate", 0));
        bench->drawFrame();
        QCOMPARE(bench->item("reviewInspector")->width(), 300.0);
        const QQuickItem *const skip = bench->item("reviewSkip");
        QCOMPARE(skip->parentItem()->height(), 52.0);
        double right = 0;
        for (const char *name : {"reviewSkip", "reviewUseSelected", "reviewAcceptBest"}) {
            const QRectF place = bench->item(name)->mapRectToScene(QRectF(QPointF(), bench->item(name)->size()));
            QCOMPARE(place.y(), skip->mapToScene(QPointF()).y());
            QVERIFY(right == 0 || place.x() >= right + 8);
            right = place.right();
        }
    }

    void aClickPicksACandidateAndASecondOneKeepsIt() {
        review(2, two());
        QVERIFY(!bench->item("reviewUseSelected"));
        for (int i = 0; i < 2; ++i) {
            bench->click(bench->item("candidate", 1));
            const auto *row = QAccessible::queryAccessibleInterface(bench->item("candidate", 1));
            QVERIFY(row->state().checked);
            QCOMPARE(row->role(), QAccessible::RadioButton);
        }
        bench->click(bench->item("reviewUseSelected"));
        QCOMPARE(decisions(), std::vector{decided(u"p#0"_s, ReviewDecision::candidate(u"c2"_s))});
        QVERIFY(shows(u"Title of p#1"_s));
        QVERIFY(!bench->item("reviewUseSelected"));
    }

    void aCandidateIsPickedByKeyboardAlone() {
        review(1, two());
        bench->item("candidate", 0)->forceActiveFocus(Qt::TabFocusReason);
        bench->key(Qt::Key_Tab);
        QVERIFY(bench->item("candidate", 1)->hasActiveFocus());
        bench->key(Qt::Key_Space);
        QVERIFY(bench->item("reviewUseSelected"));
        bench->key(Qt::Key_Tab);
        QVERIFY(bench->item("pastedURL")->hasActiveFocus());
    }

    void anAddressIsOfferedUnlessACandidateIsPickedAndReturnSendsItAllTheSame() {
        review(2, two());
        bench->click(bench->item("pastedURL"));
        for (const char c : {'x', 'y'})
            QTest::keyClick(bench->window.window(), c);
        QVERIFY(bench->item("reviewUseURL"));
        bench->click(bench->item("candidate", 0));
        QVERIFY(!bench->item("reviewUseURL"));
        QVERIFY(bench->item("reviewUseSelected"));
        bench->click(bench->item("pastedURL"));
        bench->key(Qt::Key_Return);
        QCOMPARE(decisions(), std::vector{decided(u"p#0"_s, ReviewDecision::url(u"xy"_s))});
        QCOMPARE(bench->item("pastedURL")->property("text").toString(), QString());
    }

    void withoutCandidatesTheBestCanNotBeAcceptedAndTheRestWorks() {
        review(2, {});
        QVERIFY(shows(u"No candidates returned. Paste a direct URL below to use instead."_s));
        QVERIFY(!shows(u"Candidates"_s));
        QVERIFY(!bench->item("reviewAcceptBest")->isEnabled());
        bench->click(bench->item("reviewSkip"));
        QCOMPARE(decisions(), std::vector{decided(u"p#0"_s, ReviewDecision::skip())});
        bench->click(bench->item("pastedURL"));
        QTest::keyClick(bench->window.window(), 'x');
        bench->click(bench->item("reviewUseURL"));
        QCOMPARE(decisions().back(), decided(u"p#1"_s, ReviewDecision::url(u"x"_s)));
    }

    void theLastDecisionClosesThePanelAndReopenedItSaysThatAllIsDone() {
        review(1, two());
        bench->click(bench->item("reviewAcceptBest"));
        QTRY_VERIFY(!bench->item("reviewInspector"));
        bench->model.sync()->route(trackStarted(u"p#0"_s));
        bench->model.setInspectorPresented(true);
        QTRY_VERIFY(bench->item("reviewInspector"));
        QTRY_VERIFY(shows(u"All Caught Up"_s));
        QVERIFY(shows(u"No matches need review."_s));
        QVERIFY(!bench->item("reviewSkip"));
    }

    void aRowThatLeavesByItselfTurnsThePanelToItsEmptyFaceAlthoughOthersWait() {
        review(2, two());
        bench->model.sync()->route(trackStarted(u"p#0"_s));
        QTRY_VERIFY(shows(u"All Caught Up"_s));
        QVERIFY(!bench->item("reviewPosition"));
        bench->model.openReview();
        QTRY_VERIFY(shows(u"Title of p#1"_s));
    }

    void escapeAndTheCrossCloseThePanel() {
        review(1, two());
        bench->key(Qt::Key_Escape);
        QTRY_VERIFY(!bench->item("reviewInspector"));
        QCOMPARE(bench->model.focusedReviewTrackId(), std::optional(u"p#0"_s));
        bench->model.openReview();
        QTRY_VERIFY(bench->item("closeInspector"));
        bench->drawFrame();
        bench->click(bench->item("closeInspector"));
        QTRY_VERIFY(!bench->item("reviewInspector"));
    }

    void thePanelKeepsBetweenItsWidthsAndTheSidebarGivesWayFirst() {
        review(1, two());
        auto *window = bench->window.window();
        window->resize(880, 600);
        QTRY_COMPARE(bench->item("reviewInspector")->width(), 300);
        window->resize(1600, 800);
        QTRY_COMPARE(bench->item("reviewInspector")->width(), 340);
        QTRY_COMPARE(bench->item("reviewInspector")->x(), 1600 - 340);
        QQuickItem *edge = bench->item("inspectorEdge");
        const auto at = edge->mapToScene(QPointF(edge->width() / 2, 400)).toPoint();
        QTest::mousePress(window, Qt::LeftButton, {}, at);
        QTest::mouseMove(window, at - QPoint(300, 0));
        QTest::mouseRelease(window, Qt::LeftButton, {}, at - QPoint(300, 0));
        QTRY_COMPARE(bench->item("reviewInspector")->width(), 420);
    }
};

QTEST_MAIN(TestReviewInspector)
#include "tst_reviewinspector.moc"
