#pragma once

#include "State/StateEnums.h"
#include "Transport/Boxed.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <optional>
#include <variant>
#include <vector>

namespace zelk {

/// The life of one row in one value. Everything that is shown of a row follows from it.
struct TrackState {
    /// Not reached yet.
    struct Queued {
        bool operator==(const Queued &) const = default;
    };
    /// The engine has started on the track and looks for it on disk.
    struct CheckingDisk {
        bool operator==(const CheckingDisk &) const = default;
    };
    /// The file is in the library already.
    struct Present {
        Boxed<TrackMeta> meta;
        bool operator==(const Present &) const = default;
    };
    struct Working {
        Phase phase{};
        std::optional<QString> detail;
        bool operator==(const Working &) const = default;
    };
    /// The engine waits for the user's decision.
    struct AwaitingReview {
        std::vector<CandidateDTO> candidates;
        bool operator==(const AwaitingReview &) const = default;
    };
    struct Done {
        Finish status{};
        Boxed<TrackMeta> meta;
        bool operator==(const Done &) const = default;
    };
    struct Failed {
        QString reason;
        bool operator==(const Failed &) const = default;
    };

    static TrackState queued() { return {Queued{}}; }
    static TrackState checkingDisk() { return {CheckingDisk{}}; }
    static TrackState present(Boxed<TrackMeta> meta = {}) { return {Present{std::move(meta)}}; }
    static TrackState working(Phase phase, std::optional<QString> detail = {}) {
        return {Working{phase, std::move(detail)}};
    }
    static TrackState awaitingReview(std::vector<CandidateDTO> candidates) {
        return {AwaitingReview{std::move(candidates)}};
    }
    static TrackState done(Finish status, Boxed<TrackMeta> meta = {}) { return {Done{status, std::move(meta)}}; }
    static TrackState failed(QString reason) { return {Failed{std::move(reason)}}; }

    StatusRole statusRole() const;
    /// Present, done or failed: nothing more will happen to the track in this run.
    bool isFinished() const;
    /// Between 0 and 1; absent where no figure makes sense. `downloadFraction` is the row's.
    std::optional<double> progressFraction(double downloadFraction) const;
    /// What is known of the file, if the state says so; null otherwise. Good as long as this value.
    const TrackMeta *displayMeta() const;

    std::variant<Queued, CheckingDisk, Present, Working, AwaitingReview, Done, Failed>
        value; // for match() and caseOf()
    bool operator==(const TrackState &) const = default;
};

/// What a row counts as in the sums of its group. A row is in exactly one of these.
enum class TrackTally : quint8 {
    waiting,  ///< queued
    active,   ///< working or checking the disk
    review,   ///< awaiting the user's decision; not a finished row of low confidence
    complete, ///< finished, and not by a failure
    failed,   ///< finished by a failure, whichever way it was told
};

TrackTally tallyOf(const TrackState &state);

} // namespace zelk
