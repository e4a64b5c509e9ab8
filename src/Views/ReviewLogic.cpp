#include "Views/ReviewLogic.h"

#include "Styling/Format.h"
#include "Transport/Tagged.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

// Beyond that many seconds of difference a candidate is likely another version.
constexpr double toleratedDelta = 5;

} // namespace

Ink confidenceInk(double confidence) {
    if (confidence >= 0.75)
        return Ink::green;
    return confidence >= 0.5 ? Ink::yellow : Ink::orange;
}

CandidateFace candidateFace(const CandidateDTO &candidate, double trackSeconds) {
    CandidateFace face;
    face.id = candidate.id;
    face.title = candidate.title;
    if (candidate.confidence) {
        face.confidence = QCoreApplication::translate("zelk", "%1%").arg(Format::percent(*candidate.confidence));
        face.confidenceInk = confidenceInk(*candidate.confidence);
    }
    QStringList tag;
    if (candidate.source)
        tag += *candidate.source;
    if (candidate.format)
        tag += *candidate.format;
    if (candidate.bitrateKbps)
        tag += u"%1 kbps"_s.arg(*candidate.bitrateKbps);
    face.sourceTag = tag.join(u" · "_s);
    const double delta = candidate.durationSec - trackSeconds;
    face.delta = Format::deltaSeconds(delta);
    face.deltaInk = std::abs(delta) <= toleratedDelta ? Ink::secondary : Ink::orange;
    return face;
}

ReviewLogic::ReviewLogic(AppModel &model, QObject *parent)
    : QObject(parent), m_model(model), m_tick([this] { updateStepper(); }) {
    connect(&m_model, &AppModel::isInspectorPresentedChanged, this, &ReviewLogic::presentedChanged);
    connect(&m_model, &AppModel::resolvedFocusedReviewChanged, this, [this] {
        Q_EMIT trackChanged();
        updateStepper();
    });
    connect(m_model.sync()->groups(), &PlaylistGroups::rowChanged, this,
            [this](const PlaylistGroup *group, int row, TrackModel::Fields fields) {
                // A row that comes to be reviewed, or no longer is, is another row in focus; told above.
                const bool isOtherContent = (fields & TrackModel::Field::State) && !(fields & TrackModel::Field::Tally);
                if (isOtherContent && m_model.focusedReviewTrackId() == group->track(row)->id())
                    Q_EMIT trackChanged();
            });
    connect(m_model.sync()->groups(), &PlaylistGroups::countsChanged, this, [this] { m_tick.request(); });
    updateStepper();
}

QString ReviewLogic::title() const {
    return hasTrack() ? track()->dto().title : QString();
}

QString ReviewLogic::artist() const {
    return hasTrack() ? track()->dto().artist : QString();
}

QString ReviewLogic::album() const {
    return hasTrack() ? track()->dto().album.value_or(QString()) : QString();
}

ArtworkRef ReviewLogic::artwork() const {
    return hasTrack() ? track()->dto().artwork : ArtworkRef::none();
}

QString ReviewLogic::duration() const {
    return hasTrack() ? Format::duration(track()->dto().durationSec) : QString();
}

const std::vector<CandidateDTO> *ReviewLogic::waitingCandidates() const {
    const TrackModel *focused = track();
    const auto *waiting = focused ? caseOf<TrackState::AwaitingReview>(focused->state()) : nullptr;
    return waiting ? &waiting->candidates : nullptr;
}

double ReviewLogic::bestConfidence() const {
    double best = 0;
    if (const auto *waiting = waitingCandidates()) {
        for (const CandidateDTO &candidate : *waiting)
            best = std::max(best, candidate.confidence.value_or(0));
    }
    return std::clamp(best, 0.0, 1.0);
}

int ReviewLogic::bestPercent() const {
    return Format::percent(bestConfidence());
}

bool ReviewLogic::hasCandidates() const {
    const auto *waiting = waitingCandidates();
    return waiting && !waiting->empty();
}

QVariantList ReviewLogic::candidates() const {
    QVariantList faces;
    if (const auto *waiting = waitingCandidates()) {
        for (const CandidateDTO &candidate : *waiting)
            faces += QVariant::fromValue(candidateFace(candidate, track()->dto().durationSec));
    }
    return faces;
}

void ReviewLogic::updateStepper() {
    const auto queue = m_model.sync()->reviewQueue();
    const auto position = queue.indexOf(m_model.resolvedFocusedReview());
    const QString text =
        queue.size() > 1 && position >= 0
            ? QCoreApplication::translate("zelk", "Review %1 of %2").arg(position + 1).arg(queue.size())
            : QString();
    if (text == m_stepperText)
        return;
    m_stepperText = text;
    Q_EMIT stepperChanged();
}

void ReviewLogic::setSelectedCandidateId(const QString &id) {
    if (id == m_selectedCandidateId)
        return;
    m_selectedCandidateId = id;
    Q_EMIT selectedCandidateIdChanged();
}

void ReviewLogic::setPastedURL(const QString &url) {
    if (url == m_pastedURL)
        return;
    m_pastedURL = url;
    Q_EMIT pastedURLChanged();
}

void ReviewLogic::skip() {
    decide(ReviewDecision::skip());
}

void ReviewLogic::acceptBest() {
    decide(ReviewDecision::accept());
}

void ReviewLogic::useSelected() {
    if (!m_selectedCandidateId.isEmpty())
        decide(ReviewDecision::candidate(m_selectedCandidateId));
}

void ReviewLogic::submitURL() {
    if (!hasTrack() || m_pastedURL.isEmpty())
        return;
    decide(ReviewDecision::url(m_pastedURL));
    setPastedURL({});
}

void ReviewLogic::decide(const ReviewDecision &decision) {
    const TrackModel *decided = track();
    if (!decided)
        return;
    m_model.submitReview(decided->id(), decision);
    setSelectedCandidateId({});
    // The decided row waits on until the engine's next word about it, and so it is left out by hand.
    auto rest = m_model.sync()->reviewQueue();
    rest.removeIf([id = decided->id()](const TrackModel *row) { return row->id() == id; });
    if (rest.isEmpty()) {
        m_model.setFocusedReviewTrackId(std::nullopt);
        m_model.setInspectorPresented(false);
    } else {
        m_model.setFocusedReviewTrackId(rest.first()->id());
    }
}

} // namespace zelk
