#pragma once

#include "Views/MeasuredListModel.h"

#include "Transport/HelperProtocolCatalogue.h"

#include <QColor>

namespace zelk {

// One row of the sidebar as the model holds it.
struct SidebarRow {
    enum class Kind { section, folder, playlist };

    Kind kind = Kind::playlist;
    QString id; // empty for a section
    PlaylistSourceId source{};
    QString name;
    ArtworkRef artwork{};
    std::optional<qint64> count; // a playlist's tracks, a section's playlists
    int depth = 0;
    bool expanded = false;
    bool expandable = true; // false while a filter holds every folder open
    bool operator==(const SidebarRow &) const = default;

    // Whether both stand for the same thing, however it reads.
    bool isSame(const SidebarRow &other) const {
        return kind == other.kind && id == other.id && source == other.source && depth == other.depth;
    }
};

// What one row of the sidebar shows.
class SidebarEntry : public zelk::ListEntry {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the list")
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString caption READ caption NOTIFY changed) // the count under or beside the name
    Q_PROPERTY(QString spoken READ spoken NOTIFY changed)
    Q_PROPERTY(QString hint READ hint NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(zelk::ArtworkRef artwork READ artwork NOTIFY changed)
    Q_PROPERTY(QColor sourceColor READ sourceColor NOTIFY changed)
    Q_PROPERTY(int depth READ depth NOTIFY changed)
    Q_PROPERTY(bool expanded READ expanded NOTIFY changed)
    Q_PROPERTY(bool expandable READ expandable NOTIFY changed)
    Q_PROPERTY(QString expandLabel READ expandLabel NOTIFY changed)
    Q_PROPERTY(bool selected READ selected NOTIFY selectedChanged)

public:
    void load(const SidebarRow &row);
    void setSelected(bool selected);

    QString name() const { return m_row.name; }
    QString caption() const;
    QString spoken() const;
    QString hint() const;
    QString symbol() const;
    ArtworkRef artwork() const { return m_row.artwork; }
    QColor sourceColor() const;
    int depth() const { return m_row.depth; }
    bool expanded() const { return m_row.expanded; }
    bool expandable() const { return m_row.expandable; }
    QString expandLabel() const;
    bool selected() const { return m_selected; }

Q_SIGNALS:
    void changed();
    void selectedChanged();

private:
    SidebarRow m_row;
    bool m_selected = false;
};

} // namespace zelk
