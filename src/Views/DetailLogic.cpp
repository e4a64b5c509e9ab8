#include "Views/DetailLogic.h"

#include "Transport/Tagged.h"
#include "Views/PlaylistGroupHeader.h"
#include "Views/SidebarTree.h"
#include "Views/SummaryTexts.h"

#include <QClipboard>
#include <QGuiApplication>

namespace zelk {

DetailLogic::DetailLogic(AppModel &model, QObject *parent)
    : QObject(parent), m_model(model), m_tracks([this](const QString &playlistId) { return playlistMeta(playlistId); }),
      m_tick([this] { updateSummary(); }) {
    const SyncStore *sync = m_model.sync();
    connect(&m_model, &AppModel::startupErrorChanged, this, [this] {
        Q_EMIT startupErrorChanged();
        updateFace();
    });
    connect(&m_model, &AppModel::libraryChanged, this, &DetailLogic::attach);
    connect(&m_model, &AppModel::previewChanged, this, &DetailLogic::attachPreview);
    connect(&m_model, &AppModel::resolvedFocusedReviewChanged, this, &DetailLogic::followReview);
    connect(sync->groups(), &PlaylistGroups::countChanged, this, &DetailLogic::updateFace);
    connect(sync->groups(), &PlaylistGroups::countsChanged, this, [this] { m_tick.request(); });
    connect(sync, &SyncStore::phaseChanged, this, [this, sync] {
        m_tracks.setHalted(sync->phase() == SyncPhase::interrupted);
        m_tick.request();
    });
    connect(sync, &SyncStore::summaryChanged, this, [this] { m_tick.request(); });
    attach();
    attachPreview();
    updateSummary();
}

void DetailLogic::attach() {
    if (m_library != m_model.library()) {
        m_library = m_model.library();
        connect(m_library, &LibraryStore::selectionChanged, this, &DetailLogic::updateFace);
        connect(m_library, &LibraryStore::playlistsChanged, this, [this] {
            updateFace();
            m_tracks.playlistsChanged();
        });
    }
    updateFace();
}

void DetailLogic::attachPreview() {
    if (m_preview != m_model.preview()) {
        m_preview = m_model.preview();
        connect(m_preview->groups(), &PlaylistGroups::countsChanged, this, [this] { m_tick.request(); });
        connect(m_preview->groups(), &PlaylistGroups::countChanged, this, [this] { m_tick.request(); });
        connect(m_preview, &PreviewStore::isLoadingChanged, this, &DetailLogic::previewLoadingChanged);
    }
    updateFace();
}

void DetailLogic::updateFace() {
    Face face = Empty;
    if (m_model.startupError())
        face = Unavailable;
    else if (!m_model.sync()->groups()->isEmpty())
        face = Run;
    else if (m_library && m_preview && SidebarTree::selectedPlaylistCount(*m_library) > 0)
        face = Preview;
    else if (!m_library)
        face = Waiting;
    m_tracks.setGroups(face == Run ? m_model.sync()->groups() : face == Preview ? m_preview->groups() : nullptr);
    if (m_face == face)
        return;
    m_face = face;
    // The bar of the new face must not begin with what it said when it was last seen.
    updateSummary();
    Q_EMIT faceChanged();
}

void DetailLogic::updateSummary() {
    const SyncStore &sync = *m_model.sync();
    const SummaryTexts::RunCounts counts{sync.overallCompleted(), sync.overallTotal(), sync.reviewCount(),
                                         sync.failedCount()};
    m_runSummary = SummaryTexts::runLine(sync.summary(), counts);
    m_overallFraction = counts.total > 0 ? static_cast<double>(counts.completed) / counts.total : 0;
    const int tracks = m_preview ? m_preview->trackCount() : 0;
    m_previewCounts = SummaryTexts::previewCounts(m_preview ? m_preview->groups()->count() : 0, tracks);
    m_previewSummary = SummaryTexts::previewLine(tracks, m_preview ? m_preview->onDiskCount() : 0);
    Q_EMIT summaryChanged();
    Q_EMIT menuChanged();
}

QString DetailLogic::phaseText() const {
    return SummaryTexts::phaseText(m_model.sync()->phase());
}

QString DetailLogic::overallPercentText() const {
    return percentText(m_overallFraction);
}

TrackListModel::PlaylistMeta DetailLogic::playlistMeta(const QString &playlistId) const {
    const PlaylistDTO *playlist = m_library ? m_library->playlist(playlistId) : nullptr;
    if (!playlist)
        return {};
    return {.source = playlist->source, .artwork = playlist->artwork};
}

void DetailLogic::followReview() {
    const TrackModel *focused = m_model.resolvedFocusedReview();
    m_tracks.setUnderReview(focused);
    const int index = focused ? m_tracks.indexOf(focused->id()) : -1;
    if (index >= 0)
        Q_EMIT revealRequested(index);
}

bool DetailLogic::needsReview(int index) const {
    const TrackModel *track = m_tracks.trackAt(index);
    return track && caseOf<TrackState::AwaitingReview>(track->state());
}

void DetailLogic::activate(int index) {
    if (PlaylistGroup *group = m_tracks.groupAt(index))
        group->setCollapsed(!group->isCollapsed());
    else if (needsReview(index))
        review(index);
    else if (const TrackModel *track = m_tracks.trackAt(index); track && caseOf<TrackState::Failed>(track->state()))
        retry();
}

void DetailLogic::setCollapsed(int index, bool collapsed) {
    if (PlaylistGroup *group = m_tracks.groupAt(index))
        group->setCollapsed(collapsed);
}

void DetailLogic::review(int index) {
    if (const TrackModel *track = m_tracks.trackAt(index))
        m_model.focusReview(track->id());
}

bool DetailLogic::openMenu(int index) {
    const TrackModel *track = m_tracks.trackAt(index);
    if (!track)
        return false;
    m_menuTrackId = track->id();
    m_menuTitle = track->dto().title;
    Q_EMIT menuChanged();
    return true;
}

bool DetailLogic::menuOffersReview() const {
    return needsReview(m_tracks.indexOf(m_menuTrackId));
}

void DetailLogic::reviewMenuTrack() {
    m_model.focusReview(m_menuTrackId);
}

void DetailLogic::skipMenuTrack() {
    m_model.skipTrack(m_menuTrackId);
}

void DetailLogic::copyMenuTitle() {
    QGuiApplication::clipboard()->setText(m_menuTitle);
}

} // namespace zelk
