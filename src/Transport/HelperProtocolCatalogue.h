#pragma once

#include "Transport/JSONReader.h"
#include "Transport/JSONWriter.h"
#include "Transport/Tagged.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>
#include <variant>
#include <vector>

// The records of the protocol that describe the user's music. The wire key of a field is its name; a required field
// that is missing, or an enumeration's text that isn't known, fails the whole record; keys that a record doesn't know
// are ignored. There are no default values: those in the definitions only keep a fresh record from being indeterminate.
namespace zelk {

enum class Phase : quint8 { searching, downloading, converting, tagging, verifying };

constexpr QLatin1StringView wireName(Phase phase) {
    switch (phase) {
    case Phase::searching:
        return QLatin1StringView("searching");
    case Phase::downloading:
        return QLatin1StringView("downloading");
    case Phase::converting:
        return QLatin1StringView("converting");
    case Phase::tagging:
        return QLatin1StringView("tagging");
    case Phase::verifying:
        return QLatin1StringView("verifying");
    }
    return {};
}

enum class Finish : quint8 { ok, lowConfidence, failed, skipped };

constexpr QLatin1StringView wireName(Finish finish) {
    switch (finish) {
    case Finish::ok:
        return QLatin1StringView("ok");
    case Finish::lowConfidence:
        return QLatin1StringView("low-confidence");
    case Finish::failed:
        return QLatin1StringView("failed");
    case Finish::skipped:
        return QLatin1StringView("skipped");
    }
    return {};
}

enum class DiskCheckResult : quint8 { present, missing, broken };

constexpr QLatin1StringView wireName(DiskCheckResult result) {
    switch (result) {
    case DiskCheckResult::present:
        return QLatin1StringView("present");
    case DiskCheckResult::missing:
        return QLatin1StringView("missing");
    case DiskCheckResult::broken:
        return QLatin1StringView("broken");
    }
    return {};
}

enum class PlaylistSourceId : quint8 { apple, spotify };

constexpr QLatin1StringView wireName(PlaylistSourceId source) {
    switch (source) {
    case PlaylistSourceId::apple:
        return QLatin1StringView("apple");
    case PlaylistSourceId::spotify:
        return QLatin1StringView("spotify");
    }
    return {};
}

enum class SourceId : quint8 { soulseek, bandcamp, soundcloud, youtube };

constexpr QLatin1StringView wireName(SourceId source) {
    switch (source) {
    case SourceId::soulseek:
        return QLatin1StringView("soulseek");
    case SourceId::bandcamp:
        return QLatin1StringView("bandcamp");
    case SourceId::soundcloud:
        return QLatin1StringView("soundcloud");
    case SourceId::youtube:
        return QLatin1StringView("youtube");
    }
    return {};
}

enum class QualityFloor : quint8 { flac, mp3_320, any };

constexpr QLatin1StringView wireName(QualityFloor floor) {
    switch (floor) {
    case QualityFloor::flac:
        return QLatin1StringView("flac");
    case QualityFloor::mp3_320:
        return QLatin1StringView("mp3-320");
    case QualityFloor::any:
        return QLatin1StringView("any");
    }
    return {};
}

enum class AccountService : quint8 { spotify, soundcloud, acoustid, applemusic, proxy };

constexpr QLatin1StringView wireName(AccountService service) {
    switch (service) {
    case AccountService::spotify:
        return QLatin1StringView("spotify");
    case AccountService::soundcloud:
        return QLatin1StringView("soundcloud");
    case AccountService::acoustid:
        return QLatin1StringView("acoustid");
    case AccountService::applemusic:
        return QLatin1StringView("applemusic");
    case AccountService::proxy:
        return QLatin1StringView("proxy");
    }
    return {};
}

enum class ProxyStatusValue : quint8 { off, connecting, connected, down, error };

constexpr QLatin1StringView wireName(ProxyStatusValue status) {
    switch (status) {
    case ProxyStatusValue::off:
        return QLatin1StringView("off");
    case ProxyStatusValue::connecting:
        return QLatin1StringView("connecting");
    case ProxyStatusValue::connected:
        return QLatin1StringView("connected");
    case ProxyStatusValue::down:
        return QLatin1StringView("down");
    case ProxyStatusValue::error:
        return QLatin1StringView("error");
    }
    return {};
}

// A reference to a cover image, told apart on the wire by "kind". A kind that isn't known reads as none, so that a
// newer engine's track shows without artwork and isn't lost; so does a text that is no URL.
struct ArtworkRef {
    // Kept as text, valid and encoded: a library has a hundred thousand of them, of which a screenful is ever fetched.
    struct Url {
        QString text;
        QUrl url() const { return QUrl(text); }
        bool operator==(const Url &) const = default;
    };
    struct AppleMusic {
        QString persistentID;
        bool operator==(const AppleMusic &) const = default;
    };
    struct Mosaic {
        QStringList trackIds;
        bool operator==(const Mosaic &) const = default;
    };
    struct None {
        bool operator==(const None &) const = default;
    };

    static ArtworkRef url(const QUrl &url) { return {Url{url.toString(QUrl::FullyEncoded)}}; }
    static ArtworkRef appleMusic(QString persistentID) { return {AppleMusic{std::move(persistentID)}}; }
    static ArtworkRef mosaic(QStringList trackIds) { return {Mosaic{std::move(trackIds)}}; }
    static ArtworkRef none() { return {}; }

    std::variant<None, Url, AppleMusic, Mosaic> value; // None first: a fresh one is none
    bool operator==(const ArtworkRef &) const = default;
};

std::size_t qHash(const ArtworkRef &ref, std::size_t seed = 0);
void writeWire(JSONWriter &writer, const ArtworkRef &ref);

// The URL of that text, or none if the text isn't one.
ArtworkRef artworkOfUrlText(QString text);

template<class Node>
bool readWire(const Node &node, ArtworkRef &out, JSONFailure &failure) {
    if (!node.isObject())
        return failure.expected(QLatin1StringView("an object"), node.kind());
    auto members = node.members();
    detail::NodeText<Node> kind;
    if (!readKind(members, kind, failure))
        return false;
    if (detail::sameText(kind, QLatin1StringView("url"))) {
        QString text;
        if (!readMember(members, QLatin1StringView("url"), text, failure))
            return false;
        out = artworkOfUrlText(std::move(text));
    } else if (detail::sameText(kind, QLatin1StringView("appleMusic"))) {
        return readMember(members, QLatin1StringView("persistentID"),
                          out.value.emplace<ArtworkRef::AppleMusic>().persistentID, failure);
    } else if (detail::sameText(kind, QLatin1StringView("mosaic"))) {
        return readMember(members, QLatin1StringView("trackIds"), out.value.emplace<ArtworkRef::Mosaic>().trackIds,
                          failure);
    }
    return true;
}

struct PlaylistDTO {
    QString id;
    PlaylistSourceId source{};
    QString name;
    bool isFolder = false;
    std::optional<QString> parentId;
    std::optional<qint64> trackCount;
    ArtworkRef artwork;
    bool operator==(const PlaylistDTO &) const = default;
};
ZELK_JSON_FIELDS(PlaylistDTO, id, source, name, isFolder, parentId, trackCount, artwork)

struct TrackDTO {
    QString id;
    QString title;
    QString artist;
    std::optional<QString> album;
    double durationSec = 0;
    ArtworkRef artwork;
    bool operator==(const TrackDTO &) const = default;
};
ZELK_JSON_FIELDS(TrackDTO, id, title, artist, album, durationSec, artwork)

// What is known of a file on disk, shown as it comes.
struct TrackMeta {
    std::optional<QString> format;  // like "FLAC", "MP3", "Opus"
    std::optional<QString> bitrate; // like "320"
    std::optional<QString> source;  // a download source's name
    bool operator==(const TrackMeta &) const = default;
};
ZELK_JSON_FIELDS(TrackMeta, format, bitrate, source)

struct PreviewTrackDTO {
    enum class OnDisk : quint8 { present, missing };

    QString id;
    QString title;
    QString artist;
    std::optional<QString> album;
    double durationSec = 0;
    ArtworkRef artwork;
    OnDisk onDisk{};
    std::optional<TrackMeta> meta;

    // The same track without what is known of its file.
    TrackDTO track() const { return {id, title, artist, album, durationSec, artwork}; }
    bool operator==(const PreviewTrackDTO &) const = default;
};
ZELK_JSON_FIELDS(PreviewTrackDTO, id, title, artist, album, durationSec, artwork, onDisk, meta)

constexpr QLatin1StringView wireName(PreviewTrackDTO::OnDisk onDisk) {
    switch (onDisk) {
    case PreviewTrackDTO::OnDisk::present:
        return QLatin1StringView("present");
    case PreviewTrackDTO::OnDisk::missing:
        return QLatin1StringView("missing");
    }
    return {};
}

// One possible match offered for review.
struct CandidateDTO {
    QString id;
    QString title;
    QString channel;
    double durationSec = 0;
    std::optional<QString> source;
    std::optional<QString> format;
    std::optional<qint64> bitrateKbps;
    std::optional<double> confidence; // 0 to 1
    std::optional<QString> reason;
    std::optional<QString> url;
    bool operator==(const CandidateDTO &) const = default;
};
ZELK_JSON_FIELDS(CandidateDTO, id, title, channel, durationSec, source, format, bitrateKbps, confidence, reason, url)

// What the user picked.
struct PlaylistSelection {
    PlaylistSourceId source{};
    QString id;
    std::optional<QString> name;
    bool operator==(const PlaylistSelection &) const = default;
};
ZELK_JSON_FIELDS(PlaylistSelection, source, id, name)

struct SyncOptions {
    std::optional<bool> dryRun;
    std::optional<bool> review;
    std::optional<qint64> concurrency;
    std::optional<bool> cleanup;
    std::optional<bool> upgrade;
    std::optional<QualityFloor> qualityFloor;
    bool operator==(const SyncOptions &) const = default;
};
ZELK_JSON_FIELDS(SyncOptions, dryRun, review, concurrency, cleanup, upgrade, qualityFloor)

// What the user decided about a doubtful match, told apart on the wire by "kind". Unlike an artwork's, a kind that
// isn't known is a failure: a decision must not be taken for another.
struct ReviewDecision {
    struct Accept {
        bool operator==(const Accept &) const = default;
    };
    struct Skip {
        bool operator==(const Skip &) const = default;
    };
    struct Url {
        QString url;
        bool operator==(const Url &) const = default;
    };
    struct Candidate {
        QString candidateId;
        bool operator==(const Candidate &) const = default;
    };

    static ReviewDecision accept() { return {Accept{}}; }
    static ReviewDecision skip() { return {Skip{}}; }
    static ReviewDecision url(QString url) { return {Url{std::move(url)}}; }
    static ReviewDecision candidate(QString candidateId) { return {Candidate{std::move(candidateId)}}; }

    std::variant<Accept, Skip, Url, Candidate> value;
    bool operator==(const ReviewDecision &) const = default;
};

void writeWire(JSONWriter &writer, const ReviewDecision &decision);

template<class Node>
bool readWire(const Node &node, ReviewDecision &out, JSONFailure &failure) {
    if (!node.isObject())
        return failure.expected(QLatin1StringView("an object"), node.kind());
    auto members = node.members();
    detail::NodeText<Node> kind;
    if (!readKind(members, kind, failure))
        return false;
    if (detail::sameText(kind, QLatin1StringView("accept"))) {
        out.value = ReviewDecision::Accept{};
    } else if (detail::sameText(kind, QLatin1StringView("skip"))) {
        out.value = ReviewDecision::Skip{};
    } else if (detail::sameText(kind, QLatin1StringView("url"))) {
        return readMember(members, QLatin1StringView("url"), out.value.emplace<ReviewDecision::Url>().url, failure);
    } else if (detail::sameText(kind, QLatin1StringView("candidate"))) {
        return readMember(members, QLatin1StringView("candidateId"),
                          out.value.emplace<ReviewDecision::Candidate>().candidateId, failure);
    } else {
        failure.because(QLatin1StringView("Unknown ReviewDecision kind: "), detail::toQString(kind));
        return failure.under(QLatin1StringView("kind"));
    }
    return true;
}

// The counts of a finished run.
struct SyncSummary {
    qint64 present = 0;
    qint64 ok = 0;
    qint64 flagged = 0;
    qint64 failed = 0;
    qint64 skipped = 0;
    qint64 upgraded = 0;
    qint64 removed = 0;
    bool operator==(const SyncSummary &) const = default;
};
ZELK_JSON_FIELDS(SyncSummary, present, ok, flagged, failed, skipped, upgraded, removed)

} // namespace zelk
