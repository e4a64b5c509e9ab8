#pragma once

#include "State/TrackState.h"

#include <QFlags>
#include <QObject>
#include <QVariant>

#include <optional>

namespace zelk {

class TrackModel;

/// Whoever holds rows and wants to hear of their changes without a connection to each.
class TrackObserver;

/// One row of the track table: an object with identity, which an event changes without rebuilding any list. Each signal
/// tells of a real change only.
class TrackModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString id READ id CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString artist READ artist CONSTANT)
    /// Empty when there is none.
    Q_PROPERTY(QString album READ album CONSTANT)
    /// In seconds.
    Q_PROPERTY(double durationSec READ durationSec CONSTANT)
    Q_PROPERTY(zelk::ArtworkRef artwork READ artwork CONSTANT)
    Q_PROPERTY(zelk::StatusRole statusRole READ statusRole NOTIFY statusRoleChanged)
    Q_PROPERTY(bool isFinished READ isFinished NOTIFY isFinishedChanged)
    Q_PROPERTY(double downloadFraction READ downloadFraction NOTIFY downloadFractionChanged)
    /// A number between 0 and 1, or null.
    Q_PROPERTY(QVariant progressFraction READ progressFractionValue NOTIFY progressFractionChanged)
    /// Empty when there is none.
    Q_PROPERTY(QString progressDetail READ progressDetailText NOTIFY progressDetailChanged)

public:
    /// The fields of a row that change, as observers of many rows are told of them.
    enum class Field : quint8 {
        State = 1,
        DownloadFraction = 2,
        ProgressDetail = 4,
        DiskResult = 8,
        /// Set beside State when the row now counts as something else (see TrackTally).
        Tally = 16,
    };
    Q_DECLARE_FLAGS(Fields, Field)

    explicit TrackModel(TrackDTO dto);
    /// A row of the preview: present or queued, by what was found on disk.
    explicit TrackModel(const PreviewTrackDTO &track);
    TrackModel(QString id, QString title, QString artist, double durationSec);

    const QString &id() const { return _dto.id; }
    const TrackDTO &dto() const { return _dto; }
    const TrackState &state() const { return _state; }
    double downloadFraction() const { return _downloadFraction; }
    const std::optional<QString> &progressDetail() const { return _progressDetail; }
    std::optional<DiskCheckResult> diskResult() const { return _diskResult; }

    StatusRole statusRole() const { return _state.statusRole(); }
    std::optional<double> progressFraction() const { return _state.progressFraction(_downloadFraction); }
    bool isFinished() const { return _state.isFinished(); }
    std::optional<TrackMeta> displayMeta() const;

    void setState(TrackState state);
    void setDownloadFraction(double fraction);
    void setProgressDetail(std::optional<QString> detail);
    void setDiskResult(std::optional<DiskCheckResult> result);

    /// Gathers what its scope changes of a row, so that the observer of the rows hears of it once.
    class Changes {
    public:
        explicit Changes(TrackModel &track) : _track(track) { ++_track._gathering; }
        ~Changes() { _track.endGathering(); }
        Q_DISABLE_COPY_MOVE(Changes)

    private:
        TrackModel &_track;
    };

    QString title() const { return _dto.title; }
    QString artist() const { return _dto.artist; }
    QString album() const { return _dto.album.value_or(QString()); }
    double durationSec() const { return _dto.durationSec; }
    ArtworkRef artwork() const { return _dto.artwork; }

Q_SIGNALS:
    void stateChanged();
    void statusRoleChanged();
    void isFinishedChanged();
    void downloadFractionChanged();
    void progressFractionChanged();
    void progressDetailChanged();
    void diskResultChanged();

private:
    friend class PlaylistGroup;

    QVariant progressFractionValue() const;
    QString progressDetailText() const { return _progressDetail.value_or(QString()); }
    void tell(Fields fields);
    void endGathering();
    void tellObserver();

    const TrackDTO _dto;
    TrackState _state;
    double _downloadFraction = 0;
    std::optional<QString> _progressDetail;
    TrackObserver *_observer = nullptr;
    int _row = -1;
    Fields _gathered;
    quint8 _gathering = 0;
    std::optional<DiskCheckResult> _diskResult;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(TrackModel::Fields)

class TrackObserver {
public:
    /// The row at position `row` has changed in `fields`.
    virtual void trackChanged(int row, TrackModel::Fields fields) = 0;

protected:
    ~TrackObserver() = default;
};

} // namespace zelk
