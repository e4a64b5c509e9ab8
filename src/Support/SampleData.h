#pragma once

#include "Transport/HelperEvent.h"
#include "Transport/HelperProtocolEnvelope.h"

// Fixed records for previews and tests: two playlists, one of them with three tracks, and the events of one run over
// it. The application never links this.
namespace zelk::SampleData {

QString playlistId();
QString trackId(qint64 row);

const std::vector<PlaylistDTO> &playlists();
const std::vector<TrackDTO> &tracks();
const std::vector<PreviewTrackDTO> &previewTracks();
// What getPlaylistTracks answers: previewTracks as a PreviewTracksResult.
const JSONValue &previewTracksResult();
const SafeConfig &sampleConfig();
// A run of the three tracks: the first is downloaded, the second goes to review, the third is already on disk.
const std::vector<HelperEvent> &syncScript();

} // namespace zelk::SampleData
