#pragma once

#include "State/PlaylistGroups.h"
#include "State/StateEnums.h"
#include "State/SyncBanner.h"
#include "Transport/HelperEvent.h"

#include <QHash>
#include <QVariant>

#include <optional>

namespace zelk {

/// The sync run: takes every event of the engine and folds it into one observable state. It remembers what the engine
/// last said and does nothing itself. It is there before any engine is and survives the engine's crashes.
class SyncStore final : public QObject {
    Q_OBJECT
    Q_PROPERTY(zelk::SyncPhase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY phaseChanged)
    Q_PROPERTY(zelk::PlaylistGroups *groups READ groups CONSTANT)
    /// A SyncBanner, or null.
    Q_PROPERTY(QVariant banner READ bannerValue NOTIFY bannerChanged)
    Q_PROPERTY(bool hasSummary READ hasSummary NOTIFY summaryChanged)
    Q_PROPERTY(zelk::ProxyStatusValue proxyStatus READ proxyStatus NOTIFY proxyStatusChanged)
    /// Empty when there is none.
    Q_PROPERTY(QString proxyDetail READ proxyDetailText NOTIFY proxyDetailChanged)

public:
    explicit SyncStore(QObject *parent = nullptr);

    SyncPhase phase() const { return _phase; }
    /// In the order in which their playlists were started.
    PlaylistGroups *groups() const { return _groups; }
    const std::optional<SyncSummary> &summary() const { return _summary; }
    const std::optional<SyncBanner> &banner() const { return _banner; }
    const std::optional<QString> &runId() const { return _runId; }
    ProxyStatusValue proxyStatus() const { return _proxyStatus; }
    const std::optional<QString> &proxyDetail() const { return _proxyDetail; }

    /// Preparing, running or finishing.
    bool isRunning() const;

    // Each read walks all rows. groups()->countsChanged() tells that they may be others; gather it to once a frame.
    QList<TrackModel *> reviewQueue() const { return _groups->reviewQueue(); }
    int reviewCount() const { return _groups->reviewCount(); }
    bool anyReviewPending() const { return reviewCount() > 0; }
    int overallCompleted() const { return _groups->completed(); }
    int overallTotal() const { return _groups->total(); }
    int failedCount() const { return _groups->failedCount(); }
    double overallFraction() const; ///< of whole rows; 0 without rows

    /// The only way in for the events.
    void route(const HelperEvent &event);

    void setBanner(std::optional<SyncBanner> banner);
    Q_INVOKABLE void dismissBanner() { setBanner(std::nullopt); }
    /// Back to idle without rows, summary and run. Banner and proxy state stay.
    void clearResults();
    void markPreparing();
    /// Rows and banner stay.
    void markCancelled();

Q_SIGNALS:
    void phaseChanged();
    void summaryChanged();
    void bannerChanged();
    void runIdChanged();
    void proxyStatusChanged();
    void proxyDetailChanged();

private:
    struct Position {
        int group;
        int track;
    };

    void reduce(const ServerEvent &event);
    void reduce(const ServerEvent::SyncStarted &event);
    void reduce(const ServerEvent::PlaylistStarted &event);
    void reduce(const ServerEvent::TrackStarted &event);
    void reduce(const ServerEvent::DiskCheck &event);
    void reduce(const ServerEvent::Step &event);
    void reduce(const ServerEvent::DownloadProgress &event);
    void reduce(const ServerEvent::NeedsReview &event);
    void reduce(const ServerEvent::TrackFinished &event);
    void reduce(const ServerEvent::PlaylistFinished &event);
    void reduce(const ServerEvent::OrphansFound &event);
    void reduce(const ServerEvent::SyncDone &event);
    void reduce(const ServerEvent::ProxyStatus &event);
    void reduce(const ServerEvent::Error &event);
    // Others' business, or nobody's.
    void reduce(const ServerEvent::Log &) {}
    void reduce(const ServerEvent::ToolProgress &) {}
    void reduce(const ServerEvent::Unknown &) {}
    void interruptAfterCrash();

    template<typename Body>
    void mutateTrack(const QString &id, Body body);
    void setPhase(SyncPhase phase);
    void setSummary(std::optional<SyncSummary> summary);
    void setRunId(std::optional<QString> runId);
    void setProxy(ProxyStatusValue status, const std::optional<QString> &detail);

    bool hasSummary() const { return _summary.has_value(); }
    QVariant bannerValue() const;
    QString proxyDetailText() const { return _proxyDetail.value_or(QString()); }

    SyncPhase _phase = SyncPhase::idle;
    PlaylistGroups *_groups;
    std::optional<SyncSummary> _summary;
    std::optional<SyncBanner> _banner;
    std::optional<QString> _runId;
    ProxyStatusValue _proxyStatus = ProxyStatusValue::off;
    std::optional<QString> _proxyDetail;
    /// Where each row is, so that its events cost one look-up. Written when its group is appended; groups and rows only
    /// grow between two clearings, so that no entry goes stale.
    QHash<QString, Position> _trackIndex;
};

} // namespace zelk
