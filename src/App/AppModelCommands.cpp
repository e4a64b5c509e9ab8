#include "App/AppModel.h"
#include "Support/FileBrowserOrder.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <exception>
#include <utility>

// The commands of the model: what the user's gestures start.
namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(AppModel)
};

} // namespace

void AppModel::selectionChanged() {
    if (!_library || !_preview)
        return;
    if (_sync->isRunning()) {
        _preview->clear();
        return;
    }
    if (!_sync->groups()->isEmpty())
        _sync->clearResults();
    std::vector<PlaylistDTO> playlists;
    for (const QString &id : _library->selection()) {
        const PlaylistDTO *entry = _library->playlist(id);
        if (entry && !entry->isFolder)
            playlists.push_back(*entry);
    }
    _preview->update(sortedByName(std::move(playlists)));
}

void AppModel::startSync() {
    if (!_library)
        return;
    if (_preview)
        _preview->clear();
    _sync->markPreparing();
    startTask(this, [self = QPointer(this)](std::stop_token) -> QCoro::Task<> {
        bool hasSelection = false;
        std::exception_ptr failure;
        try {
            auto starting = self->_library->startSync();
            hasSelection = co_await starting;
        } catch (...) {
            failure = std::current_exception();
        }
        if (!self)
            co_return;
        // Either way the run stays shown as being prepared, until the user cancels it.
        if (failure)
            self->_sync->setBanner(SyncBanner::error(describe(failure)));
        else if (!hasSelection)
            self->_sync->setBanner(SyncBanner::info(Texts::tr("Select one or more playlists first.")));
    });
}

void AppModel::cancelSync() {
    if (!_client)
        return;
    _sync->markCancelled();
    notifyLater([](const SyncStore &sync) { return Request::cancelSync(sync.runId()); });
}

void AppModel::submitReview(const QString &trackId, const ReviewDecision &decision) {
    if (!_client)
        return;
    notifyLater([trackId, decision](const SyncStore &sync) {
        return Request::reviewDecision(sync.runId(), trackId, decision);
    });
}

void AppModel::notifyLater(std::function<Request(const SyncStore &)> requestNow) {
    startTask(this,
              [self = QPointer(this), client = _client,
               requestNow = std::move(requestNow)](std::stop_token) -> QCoro::Task<> {
                  try {
                      auto notifying = client->notify(requestNow(*self->_sync));
                      co_await notifying;
                  } catch (const std::exception &) {
                      // The run's phase or the row's state says all there is to say, and the user may do it again.
                  }
              });
}

void AppModel::focusReview(const QString &trackId) {
    setFocusedReviewTrackId(trackId);
    setInspectorPresented(true);
}

TrackModel *AppModel::resolvedFocusedReview() const {
    if (!_focusedReviewTrackId)
        return nullptr;
    const auto queue = _sync->reviewQueue();
    const auto found = std::ranges::find(queue, *_focusedReviewTrackId, &TrackModel::id);
    return found == queue.cend() ? nullptr : *found;
}

void AppModel::openReview() {
    if (!resolvedFocusedReview()) {
        const auto queue = _sync->reviewQueue();
        setFocusedReviewTrackId(queue.isEmpty() ? std::nullopt : std::optional(queue.first()->id()));
    }
    setInspectorPresented(_sync->reviewCount() >= 1 || _focusedReviewTrackId);
}

void AppModel::stepReview(int delta) {
    const auto queue = _sync->reviewQueue();
    const auto length = queue.size();
    if (length == 0) {
        setFocusedReviewTrackId(std::nullopt);
        return;
    }
    const auto focused =
        std::ranges::find_if(queue, [this](const TrackModel *track) { return _focusedReviewTrackId == track->id(); });
    const auto position = focused == queue.cend() ? 0 : focused - queue.cbegin();
    setFocusedReviewTrackId(queue[(position + delta % length + length) % length]->id());
}

void AppModel::retryTrack(const QString &) {
    startSync();
}

void AppModel::skipTrack(const QString &trackId) {
    submitReview(trackId, ReviewDecision::skip());
}

void AppModel::setFocusedReviewTrackId(std::optional<QString> trackId) {
    if (trackId == _focusedReviewTrackId)
        return;
    _focusedReviewTrackId = std::move(trackId);
    Q_EMIT focusedReviewTrackIdChanged();
    tellResolvedFocusedReview();
}

void AppModel::followFocusedReview() {
    // The one row decides, so that the thousands of others' events cost a comparison and no walk.
    connect(_sync->groups(), &PlaylistGroups::rowChanged, this,
            [this](const PlaylistGroup *group, int row, TrackModel::Fields fields) {
                if ((fields & TrackModel::Field::Tally) && _focusedReviewTrackId == group->track(row)->id())
                    tellResolvedFocusedReview();
            });
    connect(_sync->groups(), &PlaylistGroups::groupsReset, this, &AppModel::tellResolvedFocusedReview);
}

void AppModel::tellResolvedFocusedReview() {
    const TrackModel *resolved = resolvedFocusedReview();
    if (std::exchange(_toldResolved, resolved) != resolved)
        Q_EMIT resolvedFocusedReviewChanged();
}

} // namespace zelk
