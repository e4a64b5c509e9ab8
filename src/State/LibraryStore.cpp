#include "State/LibraryStore.h"

#include "State/EitherShape.h"

#include <QPointer>

#include <exception>
#include <utility>

namespace zelk {

LibraryStore::LibraryStore(std::shared_ptr<HelperClienting> client, QObject *parent)
    : QObject(parent), _client(std::move(client)) {}

QCoro::Task<> LibraryStore::refresh(std::optional<PlaylistSourceId> source) {
    const QPointer<LibraryStore> self(this);
    setLoadState(LoadState::loading());
    std::vector<PlaylistDTO> playlists;
    std::exception_ptr failure;
    try {
        auto asking = requestInEitherShape(_client, Request::listPlaylists(source), &ListPlaylistsResult::playlists,
                                           _lifetime.token());
        playlists = co_await asking;
    } catch (...) {
        failure = std::current_exception();
    }
    if (!self)
        co_return;
    if (failure) {
        setLoadState(LoadState::failed(describe(failure)));
        co_return;
    }
    setPlaylists(std::move(playlists));
    setLoadState(LoadState::loaded());
}

QCoro::Task<bool> LibraryStore::startSync(std::optional<SyncOptions> options) {
    auto payload = selectionPayload();
    if (payload.empty())
        co_return false;
    auto request = Request::startSync(std::move(payload), std::move(options));
    auto sending = _client->send(std::move(request), HelperClienting::standardTimeout, _lifetime.token());
    co_await sending;
    co_return true;
}

void LibraryStore::setSelection(QSet<QString> selection) {
    if (selection == _selection)
        return;
    _selection = std::move(selection);
    Q_EMIT selectionChanged();
    tellSelectedTrackCount();
}

void LibraryStore::setPlaylists(std::vector<PlaylistDTO> playlists) {
    if (playlists == _playlists)
        return;
    _playlists = std::move(playlists);
    _roots.clear();
    _firstById.clear();
    _childrenById.clear();
    for (std::size_t position = 0; position < _playlists.size(); ++position) {
        const PlaylistDTO &playlist = _playlists[position];
        if (!_firstById.contains(playlist.id))
            _firstById.insert(playlist.id, position);
        (playlist.parentId ? _childrenById[*playlist.parentId] : _roots).push_back(position);
    }
    Q_EMIT playlistsChanged();
    tellSelectedTrackCount();
}

void LibraryStore::setLoadState(LoadState state) {
    if (state == _loadState)
        return;
    _loadState = std::move(state);
    Q_EMIT loadStateChanged();
}

void LibraryStore::tellSelectedTrackCount() {
    const qint64 count = selectedTrackCount();
    if (std::exchange(_toldTrackCount, count) != count)
        Q_EMIT selectedTrackCountChanged();
}

bool LibraryStore::isLoading() const {
    return caseOf<LoadState::Loading>(_loadState);
}
bool LibraryStore::isLoaded() const {
    return caseOf<LoadState::Loaded>(_loadState);
}

QString LibraryStore::failure() const {
    const auto *failed = caseOf<LoadState::Failed>(_loadState);
    return failed ? failed->text : QString();
}

std::vector<const PlaylistDTO *> LibraryStore::entries(const std::vector<std::size_t> &positions) const {
    std::vector<const PlaylistDTO *> found;
    found.reserve(positions.size());
    for (const std::size_t position : positions)
        found.push_back(&_playlists[position]);
    return found;
}

std::vector<const PlaylistDTO *> LibraryStore::roots() const {
    return entries(_roots);
}

std::vector<const PlaylistDTO *> LibraryStore::children(const QString &id) const {
    const auto positions = _childrenById.constFind(id);
    if (positions == _childrenById.cend())
        return {};
    return entries(*positions);
}

const PlaylistDTO *LibraryStore::playlist(const QString &id) const {
    const auto position = _firstById.constFind(id);
    return position == _firstById.cend() ? nullptr : &_playlists[*position];
}

std::vector<PlaylistSelection> LibraryStore::selectionPayload() const {
    std::vector<PlaylistSelection> payload;
    for (const QString &id : _selection) {
        const PlaylistDTO *entry = playlist(id);
        if (entry && !entry->isFolder)
            payload.push_back({entry->source, entry->id, entry->name});
    }
    return payload;
}

qint64 LibraryStore::selectedTrackCount() const {
    qint64 count = 0;
    for (const QString &id : _selection) {
        const PlaylistDTO *entry = playlist(id);
        count += entry ? entry->trackCount.value_or(0) : 0;
    }
    return count;
}

} // namespace zelk
