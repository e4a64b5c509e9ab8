#include "State/PreviewStore.h"

#include <QPointer>

#include <algorithm>
#include <exception>
#include <utility>

namespace zelk {

namespace {

QString keyOf(const std::vector<PlaylistDTO> &selection) {
    QStringList ids;
    for (const PlaylistDTO &playlist : selection)
        ids.append(playlist.id);
    return ids.join(u'|');
}

std::unique_ptr<PlaylistGroup> groupOf(const PlaylistDTO &playlist, std::size_t position,
                                       const std::vector<PreviewTrackDTO> &tracks) {
    std::vector<std::unique_ptr<TrackModel>> rows;
    rows.reserve(tracks.size());
    for (const PreviewTrackDTO &track : tracks)
        rows.push_back(std::make_unique<TrackModel>(track));
    return std::make_unique<PlaylistGroup>(playlist.id, playlist.name, static_cast<qint64>(position), std::move(rows));
}

} // namespace

PreviewStore::PreviewStore(std::shared_ptr<HelperClienting> client, std::shared_ptr<Clock> clock,
                           Clock::Duration debounce, QObject *parent)
    : QObject(parent), _client(std::move(client)), _clock(std::move(clock)), _debounce(debounce),
      _groups(new PlaylistGroups(this)) {}

void PreviewStore::update(std::vector<PlaylistDTO> selection) {
    const QString key = keyOf(selection);
    if (_loadedKey == key && !_groups->isEmpty())
        return;
    _fetchTask.cancel();
    if (selection.empty()) {
        show({}, key);
        return;
    }
    setLoading(true);
    _fetchTask = startTask(this,
                           [self = QPointer(this), clock = _clock, debounce = _debounce, key,
                            playlists = std::move(selection)](std::stop_token stop) -> QCoro::Task<> {
                               auto sleeping = clock->sleep(debounce, stop);
                               co_await sleeping; // a cancelled one ends the task
                               auto fetching = fetch(self, playlists, key, stop);
                               co_await fetching;
                           });
}

QCoro::Task<> PreviewStore::fetch(QPointer<PreviewStore> self, std::vector<PlaylistDTO> playlists, QString key,
                                  std::stop_token stop) {
    const auto client = self->_client;
    // A request goes on when its task is cancelled, and its reply is thrown away: given up, the reply would be a line
    // that nobody knows. It ends with the store.
    const auto lifetime = self->_lifetime.token();
    std::vector<std::unique_ptr<PlaylistGroup>> built;
    for (std::size_t position = 0; position < playlists.size(); ++position) {
        const PlaylistDTO &playlist = playlists[position];
        std::vector<PreviewTrackDTO> tracks;
        std::exception_ptr failure;
        try {
            auto asking = client->getPlaylistTracks(playlist.source, playlist.id, playlist.name, lifetime);
            tracks = co_await asking;
        } catch (...) {
            failure = std::current_exception();
        }
        // The task ends with the store, so what was not cancelled is still there.
        if (stop.stop_requested())
            co_return;
        if (failure)
            self->_logger.error(
                QStringLiteral("getPlaylistTracks failed for %1: %2").arg(playlist.id, logText(failure)));
        built.push_back(groupOf(playlist, position, tracks));
    }
    self->show(std::move(built), key);
}

void PreviewStore::clear() {
    _fetchTask.cancel();
    _fetchTask = TaskHandle();
    show({}, std::nullopt);
}

void PreviewStore::show(std::vector<std::unique_ptr<PlaylistGroup>> groups, std::optional<QString> key) {
    _groups->reset(std::move(groups));
    _loadedKey = std::move(key);
    setLoading(false);
}

void PreviewStore::setLoading(bool isLoading) {
    if (isLoading == _isLoading)
        return;
    _isLoading = isLoading;
    Q_EMIT isLoadingChanged();
}

int PreviewStore::onDiskCount() const {
    qsizetype count = 0;
    for (const PlaylistGroup *group : _groups->groups()) {
        count += std::ranges::count_if(group->tracks(), [](const TrackModel *track) {
            return caseOf<TrackState::Present>(track->state()) != nullptr;
        });
    }
    return static_cast<int>(count);
}

} // namespace zelk
