#include "Views/SidebarEntry.h"

#include "Styling/Tokens.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};
} // namespace

void SidebarEntry::load(const SidebarRow &row) {
    if (m_row == row)
        return;
    m_row = row;
    Q_EMIT changed();
}

void SidebarEntry::setSelected(bool selected) {
    if (m_selected == selected)
        return;
    m_selected = selected;
    Q_EMIT selectedChanged();
}

QString SidebarEntry::caption() const {
    if (!m_row.count)
        return {};
    return m_row.kind == SidebarRow::Kind::section ? QString::number(*m_row.count)
                                                   : Texts::tr("%n track(s)", nullptr, static_cast<int>(*m_row.count));
}

QString SidebarEntry::spoken() const {
    if (m_row.kind != SidebarRow::Kind::playlist)
        return m_row.name;
    return Texts::tr("%1, %2, %3 tracks")
        .arg(m_row.name, Tokens::Source::displayName(m_row.source), QString::number(m_row.count.value_or(0)));
}

QString SidebarEntry::hint() const {
    return m_row.kind == SidebarRow::Kind::folder ? Texts::tr("Select all playlists in “%1”").arg(m_row.name)
                                                  : QString();
}

QString SidebarEntry::symbol() const {
    switch (m_row.kind) {
    case SidebarRow::Kind::section:
        return Tokens::Source::logoAsset(m_row.source);
    case SidebarRow::Kind::folder:
        return u"folder"_s;
    case SidebarRow::Kind::playlist:
        return Tokens::Source::sfSymbol(m_row.source);
    }
    return {};
}

QColor SidebarEntry::sourceColor() const {
    return Tokens::Source::accent(m_row.source);
}

QString SidebarEntry::expandLabel() const {
    return (m_row.expanded ? Texts::tr("Collapse %1") : Texts::tr("Expand %1")).arg(m_row.name);
}

} // namespace zelk
