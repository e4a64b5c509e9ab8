#pragma once

#include "Transport/HelperProtocolCatalogue.h"
#include "Transport/HelperProtocolConfig.h"

namespace zelk {

// The cases of ServerEvent, where their names are looked up: ServerEvent::Step. They stand in a class of their own
// because a variant wants them complete.
struct ServerEventCases {
    enum class LogLevel : quint8 { debug, info, warn, error };
    // How a track with status ok came to be there: its file stood and passed verification, or it was fetched now.
    enum class TrackFinishKind : quint8 { verified, downloaded };
    // The best match that the engine rejected.
    struct ReviewBest {
        double confidence = 0; // 0 to 1
        QString title;
        QString url;
        bool operator==(const ReviewBest &) const = default;
    };

    struct SyncStarted {
        static constexpr QLatin1StringView eventName{"syncStarted"};
        QString correlationId;
        QString runId;
        qint64 totalPlaylists = 0;
        bool operator==(const SyncStarted &) const = default;
    };
    struct PlaylistStarted {
        static constexpr QLatin1StringView eventName{"playlistStarted"};
        QString correlationId;
        QString playlistId;
        qint64 index = 0;
        QString name;
        std::vector<TrackDTO> tracks;
        bool operator==(const PlaylistStarted &) const = default;
    };
    struct TrackStarted {
        static constexpr QLatin1StringView eventName{"trackStarted"};
        QString correlationId;
        QString trackId;
        qint64 index = 0;
        QString label;
        bool operator==(const TrackStarted &) const = default;
    };
    struct DiskCheck {
        static constexpr QLatin1StringView eventName{"diskCheck"};
        QString correlationId;
        QString trackId;
        DiskCheckResult result{};
        Boxed<TrackMeta> meta;
        bool operator==(const DiskCheck &) const = default;
    };
    struct Step {
        static constexpr QLatin1StringView eventName{"step"};
        QString correlationId;
        QString trackId;
        Phase phase{};
        std::optional<QString> detail;
        bool operator==(const Step &) const = default;
    };
    struct DownloadProgress {
        static constexpr QLatin1StringView eventName{"downloadProgress"};
        QString correlationId;
        QString trackId;
        double percent = 0; // 0 to 100
        std::optional<QString> sizeText;
        std::optional<QString> speedText;
        bool operator==(const DownloadProgress &) const = default;
    };
    struct NeedsReview {
        static constexpr QLatin1StringView eventName{"needsReview"};
        QString correlationId;
        QString trackId;
        QString label;
        Boxed<ReviewBest> best;
        std::vector<CandidateDTO> candidates;
        bool operator==(const NeedsReview &) const = default;
    };
    struct TrackFinished {
        static constexpr QLatin1StringView eventName{"trackFinished"};
        QString correlationId;
        QString trackId;
        Finish status{};
        std::optional<QString> detail;
        std::optional<TrackFinishKind> kind;
        Boxed<TrackMeta> meta;
        bool operator==(const TrackFinished &) const = default;
    };
    struct PlaylistFinished {
        static constexpr QLatin1StringView eventName{"playlistFinished"};
        QString correlationId;
        QString playlistId;
        Finish status{};
        bool operator==(const PlaylistFinished &) const = default;
    };
    struct OrphansFound {
        static constexpr QLatin1StringView eventName{"orphansFound"};
        QString correlationId;
        std::optional<QString> playlistId;
        QStringList paths;
        bool operator==(const OrphansFound &) const = default;
    };
    struct Log {
        static constexpr QLatin1StringView eventName{"log"};
        std::optional<QString> correlationId;
        LogLevel level{};
        QString message;
        bool operator==(const Log &) const = default;
    };
    struct SyncDone {
        static constexpr QLatin1StringView eventName{"syncDone"};
        QString correlationId;
        QString runId;
        SyncSummary summary;
        bool operator==(const SyncDone &) const = default;
    };
    struct ToolProgress {
        static constexpr QLatin1StringView eventName{"toolProgress"};
        QString tool;
        ToolPhase phase{};
        std::optional<double> percent; // 0 to 100
        std::optional<QString> detail;
        bool operator==(const ToolProgress &) const = default;
    };
    struct ProxyStatus {
        static constexpr QLatin1StringView eventName{"proxyStatus"};
        ProxyStatusValue status{};
        std::optional<QString> detail;
        bool operator==(const ProxyStatus &) const = default;
    };
    struct Error {
        static constexpr QLatin1StringView eventName{"error"};
        std::optional<QString> correlationId;
        std::optional<QString> scope;
        std::optional<QString> code;
        QString message;
        bool operator==(const Error &) const = default;
    };
    // An event of a newer engine. It does no harm, which keeps the two compatible.
    struct Unknown {
        QString type;
        JSONValue raw; // its data, null when there is none
        bool operator==(const Unknown &) const = default;
    };

    bool operator==(const ServerEventCases &) const = default;
};

// What the engine says without being asked: one line {"event":…,"correlationId":…,"data":{…}}. The fields of a case are
// the keys of its "data", but for correlationId, which comes from the line itself: the cases of a run carry it as plain
// text, empty when the line has none; log and error may be outside of any run; the others don't carry it at all.
struct ServerEvent : ServerEventCases {
    using Value = std::variant<SyncStarted, PlaylistStarted, TrackStarted, DiskCheck, Step, DownloadProgress,
                               NeedsReview, TrackFinished, PlaylistFinished, OrphansFound, Log, SyncDone, ToolProgress,
                               ProxyStatus, Error, Unknown>;

    template<class Case>
        requires isCaseOf<Value, Case>
    ServerEvent(Case event) : value(std::move(event)) {}
    template<class Case>
    explicit ServerEvent(std::in_place_type_t<Case> which) : value(which) {}

    // The event's line without the line feed: the engine's end. Throws JSONError for a number that is not finite.
    QByteArray encodedLine() const;

    Value value; // for match() and caseOf(), see Tagged.h
    bool operator==(const ServerEvent &) const = default;
};
static_assert(sizeof(ServerEvent) < 200, "Events travel by value in bursts of hundreds of thousands");

constexpr QLatin1StringView wireName(ServerEvent::LogLevel level) {
    switch (level) {
    case ServerEvent::LogLevel::debug:
        return QLatin1StringView("debug");
    case ServerEvent::LogLevel::info:
        return QLatin1StringView("info");
    case ServerEvent::LogLevel::warn:
        return QLatin1StringView("warn");
    case ServerEvent::LogLevel::error:
        return QLatin1StringView("error");
    }
    return {};
}

constexpr QLatin1StringView wireName(ServerEvent::TrackFinishKind kind) {
    switch (kind) {
    case ServerEvent::TrackFinishKind::verified:
        return QLatin1StringView("verified");
    case ServerEvent::TrackFinishKind::downloaded:
        return QLatin1StringView("downloaded");
    }
    return {};
}

ZELK_JSON_FIELDS(ServerEvent::ReviewBest, confidence, title, url)
ZELK_JSON_FIELDS(ServerEvent::SyncStarted, runId, totalPlaylists)
ZELK_JSON_FIELDS(ServerEvent::PlaylistStarted, playlistId, index, name, tracks)
ZELK_JSON_FIELDS(ServerEvent::TrackStarted, trackId, index, label)
ZELK_JSON_FIELDS(ServerEvent::DiskCheck, trackId, result, meta)
ZELK_JSON_FIELDS(ServerEvent::Step, trackId, phase, detail)
ZELK_JSON_FIELDS(ServerEvent::DownloadProgress, trackId, percent, sizeText, speedText)
ZELK_JSON_FIELDS(ServerEvent::NeedsReview, trackId, label, best, candidates)
ZELK_JSON_FIELDS(ServerEvent::TrackFinished, trackId, status, detail, kind, meta)
ZELK_JSON_FIELDS(ServerEvent::PlaylistFinished, playlistId, status)
ZELK_JSON_FIELDS(ServerEvent::OrphansFound, playlistId, paths)
ZELK_JSON_FIELDS(ServerEvent::Log, level, message)
ZELK_JSON_FIELDS(ServerEvent::SyncDone, runId, summary)
ZELK_JSON_FIELDS(ServerEvent::ToolProgress, tool, phase, percent, detail)
ZELK_JSON_FIELDS(ServerEvent::ProxyStatus, status, detail)
ZELK_JSON_FIELDS(ServerEvent::Error, scope, code, message)

void writeWire(JSONWriter &writer, const ServerEvent &event);

} // namespace zelk
