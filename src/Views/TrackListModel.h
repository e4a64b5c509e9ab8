#pragma once

#include "State/PlaylistGroups.h"
#include "Views/FrameTick.h"
#include "Views/MeasuredListModel.h"
#include "Views/TableGeometry.h"

#include <QHash>
#include <QPointer>

#include <functional>

namespace zelk {

// The rows of all groups of a run or a preview as one flat list: header card, column head, rows, and the room after
// them. Says exactly which rows changed, gathered to at most once in 16 ms; a group that collapses takes its rows out.
class TrackListModel : public zelk::MeasuredListModel {
    Q_OBJECT
    QML_ANONYMOUS
    // Whether a download has shown since these groups began.
    Q_PROPERTY(bool showsDownloads READ showsDownloads NOTIFY showsDownloadsChanged)

public:
    enum Role {
        KindRole = Qt::UserRole,
        StateRole,
        ProgressRole,
        CountsRole,
        BadgeRole,
        CollapsedRole,
        SourceRole,
        ReviewRole
    };
    // Which delegate shows an element.
    enum Kind { GroupHeader, ColumnHeads, Row };
    // What a group's card takes from its playlist.
    struct PlaylistMeta {
        PlaylistSourceId source = PlaylistSourceId::apple;
        ArtworkRef artwork;
    };
    using PlaylistLookup = std::function<PlaylistMeta(const QString &playlistId)>;

    explicit TrackListModel(PlaylistLookup playlistMeta, QObject *parent = nullptr);

    // Null for none. The groups must outlive this or be taken back.
    void setGroups(PlaylistGroups *groups);
    PlaylistGroups *groups() const { return m_groups; }
    bool showsDownloads() const { return m_showsDownloads; }

    // The group or the row of an element; null where it is something else.
    PlaylistGroup *groupAt(int index) const;
    TrackModel *trackAt(int index) const;
    // The element of a row, -1 while it doesn't show.
    int indexOf(const QString &trackId) const;

    // The source and the cover of every playlist may be another one.
    void playlistsChanged();
    // The row that is drawn as under review; null for none.
    void setUnderReview(const TrackModel *track);
    // Whether whoever worked on the rows is gone: none of them is under way, whatever it was last said to be at.
    void setHalted(bool halted);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    double contentHeight() const override { return m_geometry.height(); }
    double yOf(int index) const override { return m_geometry.yOf(index); }
    double heightOf(int index) const override { return m_geometry.heightOf(index); }
    int indexAt(double y) const override { return m_geometry.elementAt(y); }
    int kindOf(int index) const override;
    bool canBeCurrent(int index) const override;
    std::optional<Usual> usual() const override;
    std::unique_ptr<ListEntry> createEntry(int kind) const override;
    void load(ListEntry &entry, const QList<int> &roles) const override;

Q_SIGNALS:
    void showsDownloadsChanged();

protected:
    void remeasure() override { m_geometry.setTextScale(textScale()); }

private:
    struct RowKey {
        int group;
        int row;
        bool operator==(const RowKey &) const = default;
    };
    friend size_t qHash(const RowKey &key, size_t seed) { return qHashMulti(seed, key.group, key.row); }

    void appended(int first, int count);
    void groupChanged(PlaylistGroup *group, PlaylistGroup::Fields fields);
    void rowChanged(PlaylistGroup *group, int row, TrackModel::Fields fields);
    void setCollapsed(int group, bool collapsed);
    void flush();
    void tellRow(const QString &trackId);
    void noteDownload(const TrackModel &track);
    void clear();
    void fill();

    PlaylistLookup m_playlistMeta;
    QPointer<PlaylistGroups> m_groups;
    TableGeometry m_geometry;
    std::vector<bool> m_collapsed; // as the geometry has it
    QHash<RowKey, TrackModel::Fields> m_dirtyRows;
    QHash<int, PlaylistGroup::Fields> m_dirtyGroups;
    QString m_underReview;
    bool m_halted = false;
    bool m_showsDownloads = false;
    FrameTick m_tick;
};

} // namespace zelk
