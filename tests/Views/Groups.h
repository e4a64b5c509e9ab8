#pragma once

#include "State/PlaylistGroups.h"

namespace zelk {

// A group with that many queued rows, whose ids are "<id>/<row>".
inline std::unique_ptr<PlaylistGroup> makeGroup(const QString &id, int rows) {
    std::vector<std::unique_ptr<TrackModel>> tracks;
    tracks.reserve(static_cast<std::size_t>(rows));
    for (int row = 0; row < rows; ++row) {
        const QString trackId = id + QLatin1Char('/') + QString::number(row);
        tracks.push_back(std::make_unique<TrackModel>(trackId, trackId, QStringLiteral("Artist"), 200));
    }
    return std::make_unique<PlaylistGroup>(id, id, 0, std::move(tracks));
}

} // namespace zelk
