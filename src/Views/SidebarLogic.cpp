#include "Views/SidebarLogic.h"

#include <QScopedValueRollback>

#include "Styling/Tokens.h"
#include "Support/Task.h"
#include "Transport/Tagged.h"
#include "Views/SidebarTree.h"

#include <algorithm>

namespace zelk {

SidebarLogic::SidebarLogic(AppModel &model, std::shared_ptr<Clock> clock, QObject *parent)
    : QObject(parent), m_model(model), m_typeAhead(std::move(clock)) {
    connect(&m_model, &AppModel::libraryChanged, this, &SidebarLogic::attach);
    attach();
}

void SidebarLogic::attach() {
    if (m_library == m_model.library())
        return;
    m_library = m_model.library();
    connect(m_library, &LibraryStore::playlistsChanged, this, &SidebarLogic::rebuild);
    connect(m_library, &LibraryStore::loadStateChanged, this, &SidebarLogic::updateFace);
    connect(m_library, &LibraryStore::selectionChanged, this, &SidebarLogic::selectionChanged);
    m_playlists.setSelection(m_library->selection());
    rebuild();
}

void SidebarLogic::updateFace() {
    Face face = List;
    QString failure;
    if (!m_library) {
        face = Waiting;
    } else if (const auto *failed = caseOf<LoadState::Failed>(m_library->loadState())) {
        face = Failed;
        failure = failed->text;
    } else if (caseOf<LoadState::Loading>(m_library->loadState()) && m_library->playlists().empty()) {
        face = Loading;
    } else if (m_library->roots().empty()) {
        face = Empty;
    }
    if (m_face == face && m_failure == failure)
        return;
    m_face = face;
    m_failure = failure;
    Q_EMIT faceChanged();
}

void SidebarLogic::rebuild() {
    updateFace();
    if (!m_library)
        return;
    const SidebarTree::Scope scope = SidebarTree::scopeOf(m_searchText);
    const QString query = SidebarTree::queryOf(m_searchText);
    std::vector<SidebarRow> rows;
    for (const PlaylistSourceId source : SidebarTree::sources(*m_library)) {
        if (!SidebarTree::shows(scope, source))
            continue;
        SidebarRow section{.kind = SidebarRow::Kind::section,
                           .id = {},
                           .source = source,
                           .name = Tokens::Source::displayName(source),
                           .count = SidebarTree::playlistCount(*m_library, source)};
        rows.push_back(std::move(section));
        for (const SidebarTree::Visible &visible :
             SidebarTree::visibleRows(*m_library, source, query, m_manualExpansion)) {
            const PlaylistDTO &playlist = *visible.playlist;
            SidebarRow row{.kind = playlist.isFolder ? SidebarRow::Kind::folder : SidebarRow::Kind::playlist,
                           .id = playlist.id,
                           .source = playlist.source,
                           .name = playlist.name,
                           .artwork = playlist.artwork,
                           .count = playlist.isFolder ? std::nullopt : playlist.trackCount,
                           .depth = visible.depth,
                           .expanded = playlist.isFolder && isExpanded(playlist.id),
                           .expandable = query.isEmpty()};
            rows.push_back(std::move(row));
        }
    }
    m_playlists.setRows(std::move(rows));
}

void SidebarLogic::setSearchText(const QString &text) {
    if (m_searchText == text)
        return;
    m_searchText = text;
    rebuild();
    Q_EMIT searchTextChanged();
}

bool SidebarLogic::isExpanded(const QString &id) const {
    return !SidebarTree::queryOf(m_searchText).isEmpty() || m_manualExpansion.contains(id);
}

void SidebarLogic::selectionChanged() {
    const QSet<QString> selection = m_library->selection();
    m_playlists.setSelection(selection);
    const QSet<QString> folders = SidebarTree::foldersOf(*m_library, selection);
    // A library may list one id twice, as a folder and as what is in it: folders are replaced once.
    if (folders.isEmpty() || m_isReplacing) {
        m_model.selectionChanged();
        return;
    }
    const QSet<QString> expanded = SidebarTree::expandFolders(*m_library, selection);
    if (expanded == selection) {
        m_model.selectionChanged();
        return;
    }
    m_manualExpansion.unite(folders);
    rebuild();
    // Comes back here without a folder.
    const QScopedValueRollback replacing(m_isReplacing, true);
    m_library->setSelection(expanded);
}

void SidebarLogic::press(int index, int modifiers) {
    const SidebarRow *row = m_playlists.rowAt(index);
    if (!m_library || !row || row->id.isEmpty())
        return;
    const QString id = row->id;
    QSet<QString> selection;
    const int anchor = m_playlists.indexOf(m_anchor);
    if ((modifiers & Qt::ShiftModifier) && anchor >= 0) {
        if (modifiers & Qt::ControlModifier)
            selection = m_library->selection();
        for (int i = std::min(anchor, index); i <= std::max(anchor, index); ++i) {
            if (const QString &each = m_playlists.rowAt(i)->id; !each.isEmpty())
                selection.insert(each);
        }
    } else if (modifiers & Qt::ControlModifier) {
        selection = m_library->selection();
        if (!selection.remove(id))
            selection.insert(id);
        m_anchor = id;
    } else {
        selection = {id};
        m_anchor = id;
    }
    m_library->setSelection(selection);
}

void SidebarLogic::moved(int index, int modifiers) {
    if ((modifiers & Qt::ControlModifier) && !(modifiers & Qt::ShiftModifier))
        return;
    press(index, modifiers);
}

void SidebarLogic::selectAll() {
    if (!m_library)
        return;
    QSet<QString> selection;
    for (const SidebarRow &row : m_playlists.rows()) {
        if (!row.id.isEmpty())
            selection.insert(row.id);
    }
    m_library->setSelection(selection);
}

int SidebarLogic::enter(int index) {
    const SidebarRow *row = m_playlists.rowAt(index);
    if (!row || row->kind != SidebarRow::Kind::folder)
        return -1;
    if (!row->expanded) {
        setExpanded(index, true);
        return -1;
    }
    const SidebarRow *next = m_playlists.rowAt(index + 1);
    return next && next->depth > row->depth ? index + 1 : -1;
}

int SidebarLogic::leave(int index) {
    const SidebarRow *row = m_playlists.rowAt(index);
    if (!row)
        return -1;
    if (row->kind == SidebarRow::Kind::folder && row->expanded && row->expandable) {
        setExpanded(index, false);
        return -1;
    }
    int around = row->depth > 0 ? index - 1 : -1;
    while (around >= 0 && m_playlists.rowAt(around)->depth >= row->depth)
        --around;
    return around;
}

int SidebarLogic::find(const QString &typed, int from) {
    return m_typeAhead.find(typed, from, m_playlists.rowCount(), [this](int index) {
        return m_playlists.canBeCurrent(index) ? m_playlists.rowAt(index)->name : QString();
    });
}

void SidebarLogic::toggleExpansion(int index) {
    if (const SidebarRow *row = m_playlists.rowAt(index))
        setExpanded(index, !row->expanded);
}

void SidebarLogic::setExpanded(int index, bool expanded) {
    const SidebarRow *row = m_playlists.rowAt(index);
    if (!row || row->kind != SidebarRow::Kind::folder || !row->expandable || row->expanded == expanded)
        return;
    if (expanded)
        m_manualExpansion.insert(row->id);
    else
        m_manualExpansion.remove(row->id);
    rebuild();
}

void SidebarLogic::refresh() {
    if (LibraryStore *library = m_library)
        startTask(library, [library](const std::stop_token &) { return library->refresh(); });
}

void SidebarLogic::openSetup() {
    m_model.beginOnboarding(SetupCoordinator::Mode::reRun);
}

} // namespace zelk
