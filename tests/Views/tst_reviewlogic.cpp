#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "State/Records.h"
#include "Support/ManualClock.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"
#include "Views/ReviewLogic.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

CandidateDTO candidateWith(std::optional<double> confidence) {
    CandidateDTO candidate = candidateOf(u"c"_s);
    candidate.confidence = confidence;
    return candidate;
}

} // namespace

class TestReviewLogic : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<ReviewLogic> logic;

    void run(std::vector<HelperEvent> events) {
        client->emitAll(std::move(events));
        settle();
    }
    /// A run with the rows p#0 to p#3, of which the first `waiting` await review.
    void review(int waiting) {
        run({syncStarted(u"run-1"_s), playlistStarted(u"p"_s, {u"p#0"_s, u"p#1"_s, u"p#2"_s, u"p#3"_s})});
        for (int i = 0; i < waiting; ++i)
            run({needsReview(u"p#%1"_s.arg(i))});
    }
    std::vector<Request> decisions() {
        settle();
        return client->notified();
    }
    static Request decision(const QString &trackId, const ReviewDecision &decision) {
        return Request::reviewDecision(u"run-1"_s, trackId, decision);
    }

private Q_SLOTS:
    void init() {
        client = std::make_shared<ScriptedClient>();
        model = std::make_unique<AppModel>(client, surroundings());
        logic = std::make_unique<ReviewLogic>(*model);
    }
    void cleanup() {
        logic.reset();
        model.reset();
        settle();
        client.reset();
    }

    void confidenceTurnsYellowAtAHalfAndGreenAtThreeQuarters_data() {
        QTest::addColumn<double>("confidence");
        QTest::addColumn<Ink>("ink");
        QTest::newRow("none") << 0.0 << Ink::orange;
        QTest::newRow("just below a half") << 0.4999 << Ink::orange;
        QTest::newRow("a half") << 0.5 << Ink::yellow;
        QTest::newRow("just below three quarters") << 0.7499 << Ink::yellow;
        QTest::newRow("three quarters") << 0.75 << Ink::green;
        QTest::newRow("sure") << 1.0 << Ink::green;
    }

    void confidenceTurnsYellowAtAHalfAndGreenAtThreeQuarters() {
        QFETCH(double, confidence);
        QFETCH(Ink, ink);
        QCOMPARE(confidenceInk(confidence), ink);
        QCOMPARE(candidateFace(candidateWith(confidence), 300).confidenceInk, ink);
    }

    void aCandidateShowsOnlyWhatItHas() {
        CandidateDTO candidate = candidateOf(u"c"_s);
        candidate.source = candidate.format = std::nullopt;
        CandidateFace face = candidateFace(candidate, 300);
        QCOMPARE(face.confidence, QString());
        QCOMPARE(face.sourceTag, QString());
        candidate.confidence = 0.675;
        candidate.format = u"OPUS"_s;
        candidate.bitrateKbps = 160;
        face = candidateFace(candidate, 300);
        QCOMPARE(face.confidence, u"68%"_s);
        QCOMPARE(face.sourceTag, u"OPUS · 160 kbps"_s);
        candidate.source = u"YouTube"_s;
        QCOMPARE(candidateFace(candidate, 300).sourceTag, u"YouTube · OPUS · 160 kbps"_s);
    }

    void aDifferenceOfMoreThanFiveSecondsStandsOut_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::addColumn<Ink>("ink");
        QTest::newRow("equal") << 300.0 << u"±0s"_s << Ink::secondary;
        QTest::newRow("five longer") << 305.0 << u"+5s"_s << Ink::secondary;
        QTest::newRow("five shorter") << 295.0 << u"−5s"_s << Ink::secondary;
        QTest::newRow("a little beyond") << 305.1 << u"+5s"_s << Ink::orange;
        QTest::newRow("much shorter") << 48.0 << u"−252s"_s << Ink::orange;
    }

    void aDifferenceOfMoreThanFiveSecondsStandsOut() {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        QFETCH(Ink, ink);
        CandidateDTO candidate = candidateOf(u"c"_s);
        candidate.durationSec = seconds;
        const CandidateFace face = candidateFace(candidate, 300);
        QCOMPARE(face.delta, text);
        QCOMPARE(face.deltaInk, ink);
    }

    void thePanelShowsTheRowInFocusAndNothingWithoutOne() {
        QVERIFY(!logic->hasTrack());
        QCOMPARE(logic->candidates(), QVariantList());
        QCOMPARE(logic->bestConfidence(), 0.0);
        const QSignalSpy changed(logic.get(), &ReviewLogic::trackChanged);
        review(1);
        model->focusReview(u"p#0"_s);
        QVERIFY(logic->hasTrack() && logic->presented());
        QCOMPARE(logic->title(), u"Title of p#0"_s);
        QCOMPARE(logic->artist(), u"Artist"_s);
        QCOMPARE(logic->duration(), u"5:00"_s);
        QCOMPARE(changed.count(), 1);
        run({trackStarted(u"p#0"_s)});
        QVERIFY(!logic->hasTrack());
        QVERIFY(logic->presented()); // it says that all is done
        QCOMPARE(changed.count(), 2);
    }

    void newCandidatesForTheRowInFocusReplaceTheOldOnes() {
        review(0);
        run({needsReview(u"p#0"_s, {candidateWith(0.3)})});
        model->focusReview(u"p#0"_s);
        const QSignalSpy changed(logic.get(), &ReviewLogic::trackChanged);
        run({needsReview(u"p#0"_s, {candidateWith(0.9), candidateWith(0.5)})});
        QCOMPARE(changed.count(), 1);
        QCOMPARE(logic->candidates().size(), 2);
        run({needsReview(u"p#1"_s, {candidateWith(0.9)})});
        QCOMPARE(changed.count(), 1); // another row is none of the panel's business
    }

    void theBestConfidenceIsTheLargestOfTheCandidates() {
        review(0);
        run({needsReview(u"p#0"_s, {candidateWith(0.3), candidateWith({}), candidateWith(0.68)})});
        model->focusReview(u"p#0"_s);
        QCOMPARE(logic->bestConfidence(), 0.68);
        QCOMPARE(logic->candidates().size(), 3);
        run({needsReview(u"p#1"_s, {candidateWith({})})});
        model->focusReview(u"p#1"_s);
        QCOMPARE(logic->bestConfidence(), 0.0);
        run({needsReview(u"p#1"_s, {candidateWith(1.2)})});
        QCOMPARE(logic->bestConfidence(), 1.0);
    }

    void theStepperShowsWhereThereIsSomewhereToGo() {
        review(1);
        model->openReview();
        QCOMPARE(logic->stepperText(), QString());
        run({needsReview(u"p#1"_s), needsReview(u"p#2"_s)});
        QTRY_COMPARE(logic->stepperText(), u"Review 1 of 3"_s);
        logic->step(-1);
        QCOMPARE(logic->stepperText(), u"Review 3 of 3"_s);
        run({trackStarted(u"p#2"_s)}); // the focused row leaves the queue, two are left
        QCOMPARE(logic->stepperText(), QString());
        QVERIFY(!logic->hasTrack());
        model->openReview();
        QCOMPARE(logic->stepperText(), u"Review 1 of 2"_s);
    }

    void aDecisionMovesToTheHeadOfTheQueueNotToTheNeighbour() {
        review(3);
        model->focusReview(u"p#1"_s);
        logic->skip();
        QCOMPARE(model->focusedReviewTrackId(), std::optional(u"p#0"_s));
        QVERIFY(model->isInspectorPresented());
        QCOMPARE(decisions(), std::vector{decision(u"p#1"_s, ReviewDecision::skip())});
    }

    void aDecisionOnTheOnlyRowClosesThePanelAlthoughTheRowStillWaits() {
        review(1);
        model->openReview();
        logic->acceptBest();
        QVERIFY(!model->isInspectorPresented());
        QVERIFY(!model->focusedReviewTrackId());
        QCOMPARE(model->sync()->reviewCount(), 1);
        QCOMPARE(decisions(), std::vector{decision(u"p#0"_s, ReviewDecision::accept())});
    }

    void aDecisionForgetsTheSelectedCandidateAndASteppedFocusKeepsIt() {
        review(2);
        model->openReview();
        logic->setSelectedCandidateId(u"c-7"_s);
        logic->step(1);
        QCOMPARE(logic->selectedCandidateId(), u"c-7"_s);
        logic->useSelected();
        QCOMPARE(logic->selectedCandidateId(), QString());
        QCOMPARE(decisions(), std::vector{decision(u"p#1"_s, ReviewDecision::candidate(u"c-7"_s))});
    }

    void anAddressIsSentAsItIsTypedAndThenCleared() {
        review(2);
        model->openReview();
        logic->setPastedURL(u" https://host.example/x "_s);
        logic->skip();
        QCOMPARE(logic->pastedURL(), u" https://host.example/x "_s); // only its own decision clears it
        logic->setSelectedCandidateId(u"c-7"_s);
        logic->submitURL();
        QCOMPARE(logic->pastedURL(), QString());
        QCOMPARE(decisions().back(), decision(u"p#1"_s, ReviewDecision::url(u" https://host.example/x "_s)));
    }

    void withoutAnAddressOrARowNothingIsDecided() {
        review(1);
        model->openReview();
        logic->submitURL();
        logic->useSelected();
        run({trackStarted(u"p#0"_s)});
        logic->setPastedURL(u"https://host.example"_s);
        logic->submitURL();
        logic->skip();
        logic->acceptBest();
        QCOMPARE(logic->pastedURL(), u"https://host.example"_s);
        QVERIFY(decisions().empty());
    }

    void closingThePanelKeepsTheFocus() {
        review(1);
        model->openReview();
        logic->close();
        QVERIFY(!model->isInspectorPresented());
        QCOMPARE(model->focusedReviewTrackId(), std::optional(u"p#0"_s));
    }
};

QTEST_MAIN(TestReviewLogic)
#include "tst_reviewlogic.moc"
