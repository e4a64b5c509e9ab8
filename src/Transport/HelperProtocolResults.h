#pragma once

#include "Transport/HelperProtocolCatalogue.h"
#include "Transport/HelperProtocolConfig.h"

// What the replies to requests carry, where that is more than a record that has a place of its own.
namespace zelk {

struct PreviewTracksResult {
    std::vector<PreviewTrackDTO> tracks;
    bool operator==(const PreviewTracksResult &) const = default;
};
ZELK_JSON_FIELDS(PreviewTracksResult, tracks)

struct ListPlaylistsResult {
    std::vector<PlaylistDTO> playlists;
    bool operator==(const ListPlaylistsResult &) const = default;
};
ZELK_JSON_FIELDS(ListPlaylistsResult, playlists)

struct ConfigResult {
    SafeConfig config;
    bool operator==(const ConfigResult &) const = default;
};
ZELK_JSON_FIELDS(ConfigResult, config)

struct OrphansResult {
    QStringList paths;
    bool operator==(const OrphansResult &) const = default;
};
ZELK_JSON_FIELDS(OrphansResult, paths)

// One finding of the engine's doctor.
struct DoctorCheck {
    QString id;
    std::optional<QString> title;
    QString status; // the engine's own word, kept as it comes; this engine's are "ok", "warn" and "fail"
    std::optional<QString> detail;
    std::optional<bool> fixable; // only true counts as fixable
    bool operator==(const DoctorCheck &) const = default;
};
ZELK_JSON_FIELDS(DoctorCheck, id, title, status, detail, fixable)

struct DoctorResult {
    std::vector<DoctorCheck> checks;
    bool operator==(const DoctorResult &) const = default;
};
ZELK_JSON_FIELDS(DoctorResult, checks)

struct TestProxyResult {
    bool ok = false;
    std::optional<QString> detail;
    bool operator==(const TestProxyResult &) const = default;
};
ZELK_JSON_FIELDS(TestProxyResult, ok, detail)

struct ProxyInfoResult {
    bool ok = false;
    qint64 nodeCount = 0;
    bool operator==(const ProxyInfoResult &) const = default;
};
ZELK_JSON_FIELDS(ProxyInfoResult, ok, nodeCount)

// The result of a call whose result nobody reads: accepts any JSON.
struct EmptyResult {
    bool operator==(const EmptyResult &) const = default;
};

template<class Node>
bool readWire(const Node &, EmptyResult &, JSONFailure &) {
    return true;
}

} // namespace zelk
