#include "State/TrackState.h"

namespace zelk {

namespace {

StatusRole roleOf(Finish status) {
    switch (status) {
    case Finish::ok:
        return StatusRole::done;
    case Finish::lowConfidence:
        return StatusRole::review;
    case Finish::failed:
        return StatusRole::failed;
    case Finish::skipped:
        return StatusRole::skipped;
    }
    Q_UNREACHABLE();
}

} // namespace

StatusRole TrackState::statusRole() const {
    return match(
        *this, [](const Queued &) { return StatusRole::queued; },
        [](const CheckingDisk &) { return StatusRole::working; }, [](const Present &) { return StatusRole::present; },
        [](const Working &) { return StatusRole::working; }, [](const AwaitingReview &) { return StatusRole::review; },
        [](const Done &done) { return roleOf(done.status); }, [](const Failed &) { return StatusRole::failed; });
}

bool TrackState::isFinished() const {
    return match(
        *this, [](const Queued &) { return false; }, [](const CheckingDisk &) { return false; },
        [](const Present &) { return true; }, [](const Working &) { return false; },
        [](const AwaitingReview &) { return false; }, [](const Done &) { return true; },
        [](const Failed &) { return true; });
}

std::optional<double> TrackState::progressFraction(double downloadFraction) const {
    using Fraction = std::optional<double>;
    return match(
        *this, [](const Queued &) { return Fraction(0); }, [](const CheckingDisk &) { return Fraction(); },
        [](const Present &) { return Fraction(1); },
        [&](const Working &working) {
            return working.phase == Phase::downloading ? Fraction(downloadFraction) : Fraction();
        },
        [](const AwaitingReview &) { return Fraction(); }, [](const Done &) { return Fraction(1); },
        [](const Failed &) { return Fraction(); });
}

const TrackMeta *TrackState::displayMeta() const {
    const auto of = [](const Boxed<TrackMeta> &meta) { return meta ? &*meta : nullptr; };
    const auto none = static_cast<const TrackMeta *>(nullptr);
    return match(
        *this, [&](const Queued &) { return none; }, [&](const CheckingDisk &) { return none; },
        [&](const Present &present) { return of(present.meta); }, [&](const Working &) { return none; },
        [&](const AwaitingReview &) { return none; }, [&](const Done &done) { return of(done.meta); },
        [&](const Failed &) { return none; });
}

TrackTally tallyOf(const TrackState &state) {
    return match(
        state, [](const TrackState::Queued &) { return TrackTally::waiting; },
        [](const TrackState::CheckingDisk &) { return TrackTally::active; },
        [](const TrackState::Present &) { return TrackTally::complete; },
        [](const TrackState::Working &) { return TrackTally::active; },
        [](const TrackState::AwaitingReview &) { return TrackTally::review; },
        [](const TrackState::Done &done) {
            return done.status == Finish::failed ? TrackTally::failed : TrackTally::complete;
        },
        [](const TrackState::Failed &) { return TrackTally::failed; });
}

} // namespace zelk
