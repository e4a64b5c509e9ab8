#pragma once

#include "State/TrackModel.h"

#include <QList>
#include <QStringList>

#include <memory>
#include <vector>

namespace zelk {

class PlaylistGroups;

/// One playlist's section of rows. It owns its rows, which stay the same as long as it lives.
class PlaylistGroup final : public QObject, private TrackObserver {
    Q_OBJECT
    Q_PROPERTY(QString id READ id CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(qint64 index READ index CONSTANT)
    Q_PROPERTY(QStringList orphanPaths READ orphanPaths NOTIFY orphanPathsChanged)
    Q_PROPERTY(bool isCollapsed READ isCollapsed WRITE setCollapsed NOTIFY isCollapsedChanged)

public:
    /// The fields of a group that change, as observers of many groups are told of them.
    enum class Field : quint8 { Status = 1, OrphanPaths = 2, IsCollapsed = 4 };
    Q_DECLARE_FLAGS(Fields, Field)

    /// `index` is the position that the engine or the preview gave it; nothing orders by it.
    PlaylistGroup(QString id, QString name, qint64 index, std::vector<std::unique_ptr<TrackModel>> tracks);

    const QString &id() const { return _playlistId; }
    const QString &name() const { return _name; }
    qint64 index() const { return _index; }
    /// Where the group stands in the list that holds it; -1 in none.
    int position() const { return _position; }
    const QList<TrackModel *> &tracks() const { return _tracks; }
    Q_INVOKABLE zelk::TrackModel *track(int row) const { return _tracks.value(row); }
    std::optional<Finish> status() const { return _status; }
    const QStringList &orphanPaths() const { return _orphanPaths; }
    bool isCollapsed() const { return _isCollapsed; }

    void setStatus(std::optional<Finish> status);
    void appendOrphanPaths(const QStringList &paths);
    void setCollapsed(bool isCollapsed);

    // Each read walks the rows: read them at most once a frame, however often countsChanged() is heard.
    int total() const { return static_cast<int>(_tracks.size()); }
    int completed() const;   ///< present, done or failed: a failed track is complete
    double fraction() const; ///< of whole rows; 0 without rows
    int activeCount() const;
    int reviewCount() const; ///< awaiting review; not those that ended with low confidence
    int failedCount() const;

Q_SIGNALS:
    void statusChanged();
    void orphanPathsChanged();
    void isCollapsedChanged();
    /// A row now counts as something else. Comes with each such row, so gather it.
    void countsChanged();

private:
    friend class PlaylistGroups;

    void trackChanged(int row, TrackModel::Fields fields) override;
    void tell(Fields fields);
    template<typename... Tallies>
    int count(Tallies... tallies) const;

    const QString _playlistId;
    const QString _name;
    const qint64 _index;
    QList<TrackModel *> _tracks;
    std::optional<Finish> _status;
    QStringList _orphanPaths;
    bool _isCollapsed = false;
    int _position = -1;
    PlaylistGroups *_list = nullptr;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(PlaylistGroup::Fields)

} // namespace zelk
