#include "Views/OrphansLogic.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace zelk {

namespace {

constexpr qsizetype listed = 10;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};

} // namespace

OrphansLogic::OrphansLogic(AppModel &model, std::shared_ptr<FileBrowser> files, QObject *parent)
    : QObject(parent), m_model(model), m_files(std::move(files)) {
    connect(&m_model, &AppModel::orphansChanged, this, &OrphansLogic::attach);
    attach();
}

void OrphansLogic::attach() {
    if (m_orphans == m_model.orphans())
        return;
    m_orphans = m_model.orphans();
    connect(m_orphans, &OrphansStore::pathsChanged, this, &OrphansLogic::follow);
    connect(m_orphans, &OrphansStore::dismissedChanged, this, &OrphansLogic::follow);
    follow();
}

void OrphansLogic::follow() {
    const bool wasShown = std::exchange(m_shown, m_orphans->hasOrphans());
    if (!m_shown && !wasShown)
        return;
    if (m_shown)
        m_paths = m_orphans->paths();
    if (!wasShown)
        m_expanded = false;
    Q_EMIT changed();
}

QString OrphansLogic::message() const {
    return Texts::tr("%n leftover file(s) no longer in your playlists", nullptr, static_cast<int>(m_paths.size()));
}

QStringList OrphansLogic::names() const {
    QStringList result;
    for (const QString &path : m_paths.first(std::min(listed, m_paths.size())))
        result += QFileInfo(QDir::cleanPath(path)).fileName();
    return result;
}

QString OrphansLogic::more() const {
    return m_paths.size() > listed
               ? Texts::tr("and %n more file(s)…", nullptr, static_cast<int>(m_paths.size() - listed))
               : QString();
}

void OrphansLogic::toggle() {
    m_expanded = !m_expanded;
    Q_EMIT changed();
}

void OrphansLogic::keep() {
    if (m_orphans)
        m_orphans->setDismissed(true);
}

void OrphansLogic::moveToTrash() {
    if (m_orphans)
        m_orphans->trashPaths(m_orphans->paths());
}

void OrphansLogic::reveal(int index) {
    if (index >= 0 && index < m_paths.size())
        m_files->reveal(m_paths.at(index));
}

} // namespace zelk
