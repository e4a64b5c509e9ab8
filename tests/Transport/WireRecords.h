#pragma once

#include "Transport/HelperProtocolEnvelope.h"
#include "Transport/ServerEvent.h"

// Every record of the wire, for tests that look at each: `each(Type)`. The names are those that the records' fields are
// listed under; tst_wireproperties says so when one is missing here. The cases of events and of requests stand for
// their "data" and "params".

// clang-format off
#define ZELK_WIRE_RECORDS(each) \
    ZELK_WIRE_CATALOGUE(each) ZELK_WIRE_CONFIG(each) ZELK_WIRE_REPLIES(each) ZELK_WIRE_EVENTS(each) ZELK_WIRE_REQUESTS(each)

#define ZELK_WIRE_CATALOGUE(each) \
    each(ArtworkRef) each(PlaylistDTO) each(TrackDTO) each(TrackMeta) each(PreviewTrackDTO) each(CandidateDTO) \
    each(PlaylistSelection) each(SyncOptions) each(ReviewDecision) each(SyncSummary)

#define ZELK_WIRE_CONFIG(each) \
    each(SafeConfig::Quality) each(SafeConfig::Run) each(SafeConfig::UI) each(SafeConfig::Identity) \
    each(SafeConfig::Proxy) each(SafeConfig) each(ConfigPatch) each(ToolStatusDTO) each(ProvisionToolsResult)

#define ZELK_WIRE_REPLIES(each) \
    each(Response::EngineErrorPayload) each(Response) each(PreviewTracksResult) each(ListPlaylistsResult) \
    each(ConfigResult) each(OrphansResult) each(DoctorCheck) each(DoctorResult) each(TestProxyResult) \
    each(ProxyInfoResult)

#define ZELK_WIRE_EVENTS(each) \
    each(ServerEvent::ReviewBest) each(ServerEvent::SyncStarted) each(ServerEvent::PlaylistStarted) \
    each(ServerEvent::TrackStarted) each(ServerEvent::DiskCheck) each(ServerEvent::Step) \
    each(ServerEvent::DownloadProgress) each(ServerEvent::NeedsReview) each(ServerEvent::TrackFinished) \
    each(ServerEvent::PlaylistFinished) each(ServerEvent::OrphansFound) each(ServerEvent::Log) \
    each(ServerEvent::SyncDone) each(ServerEvent::ToolProgress) each(ServerEvent::ProxyStatus) each(ServerEvent::Error)

#define ZELK_WIRE_REQUESTS(each) \
    each(Request::GetConfig) each(Request::SetConfig) each(Request::StoreAccountToken) \
    each(Request::GetSpotifyAuthParams) each(Request::DisconnectAccount) each(Request::ConnectSpotify) \
    each(Request::ListPlaylists) each(Request::GetPlaylistTracks) each(Request::StartSync) each(Request::CancelSync) \
    each(Request::ReviewDecision) each(Request::ListOrphans) each(Request::TrashOrphans) each(Request::RunDoctor) \
    each(Request::DoctorFix) each(Request::ProvisionTools) each(Request::TestProxy) each(Request::ProxyInfo)
// clang-format on

namespace zelk {

// A record as JSON: for the case of an event its fields alone, and not the line.
template<class T>
QByteArray recordJSON(const T &record) {
    if constexpr (JSONRecord<T>) {
        JSONWriter writer;
        writer.beginObject();
        writeFields(writer, record);
        writer.endObject();
        return writer.take();
    } else {
        return writeJSON(record);
    }
}

} // namespace zelk
