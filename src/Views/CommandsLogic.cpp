#include "Views/CommandsLogic.h"

#include "Support/Task.h"
#include "Support/TildePath.h"
#include "Views/SidebarTree.h"

#include <QCoreApplication>

#include <utility>

namespace zelk {

CommandsLogic::CommandsLogic(AppModel &model, Outside outside, QObject *parent)
    : QObject(parent), m_model(model), m_outside(std::move(outside)), m_tick([this] { countReviews(); }) {
    connect(m_model.sync(), &SyncStore::phaseChanged, this, &CommandsLogic::phaseChanged);
    connect(m_model.sync()->groups(), &PlaylistGroups::countsChanged, this, [this] { m_tick.request(); });
    connect(&m_model, &AppModel::libraryChanged, this, &CommandsLogic::attach);
    attach();
    countReviews();
}

void CommandsLogic::attach() {
    if (m_library == m_model.library())
        return;
    m_library = m_model.library();
    connect(m_library, &LibraryStore::selectionChanged, this, &CommandsLogic::followSelection);
    connect(m_library, &LibraryStore::playlistsChanged, this, &CommandsLogic::followSelection);
    followSelection();
}

void CommandsLogic::countReviews() {
    const int count = m_model.sync()->reviewCount();
    if (m_reviewCount == count)
        return;
    m_reviewCount = count;
    Q_EMIT reviewCountChanged();
}

void CommandsLogic::followSelection() {
    const bool has = m_library && SidebarTree::selectedPlaylistCount(*m_library) > 0;
    if (m_hasSelection == has)
        return;
    m_hasSelection = has;
    Q_EMIT selectionChanged();
}

QString CommandsLogic::reviewText() const {
    return QCoreApplication::translate("zelk", "%n review(s)", nullptr, m_reviewCount);
}

void CommandsLogic::revealOutput() {
    const SettingsStore *settings = m_model.settings();
    if (settings && settings->config() && settings->config()->outputDir)
        m_outside.files->reveal(expandedTilde(*settings->config()->outputDir));
}

void CommandsLogic::openHelp() {
    m_outside.openUrl(QUrl(QStringLiteral(ZELK_WEBSITE)));
}

void CommandsLogic::refreshLibrary() {
    if (LibraryStore *library = m_library)
        startTask(library, [library](const std::stop_token &) { return library->refresh(); });
}

} // namespace zelk
