#pragma once

#include "State/PlaylistGroups.h"
#include "Support/Clock.h"
#include "Support/Logger.h"
#include "Support/Task.h"
#include "Transport/HelperClienting.h"

#include <QPointer>

#include <memory>
#include <optional>
#include <vector>

namespace zelk {

/// What a sync of the selection would find: each selected playlist with its tracks, each marked as on disk or not.
/// The rows of a selection come all at once, when the last playlist is in; the old ones stay until then.
class PreviewStore final : public QObject {
    Q_OBJECT
    Q_PROPERTY(zelk::PlaylistGroups *groups READ groups CONSTANT)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)

public:
    /// `debounce` is the pause before a fetch, so that a quick run of clicks costs one.
    PreviewStore(std::shared_ptr<HelperClienting> client, std::shared_ptr<Clock> clock, Clock::Duration debounce,
                 QObject *parent = nullptr);

    PlaylistGroups *groups() const { return _groups; }
    bool isLoading() const { return _isLoading; }

    /// Shows these playlists, none of them a folder.
    void update(std::vector<PlaylistDTO> selection);
    void clear();

    // Each read walks all rows. groups()->countsChanged() tells that they may be others.
    int trackCount() const { return _groups->total(); }
    int onDiskCount() const;

Q_SIGNALS:
    void isLoadingChanged();

private:
    static QCoro::Task<> fetch(QPointer<PreviewStore> self, std::vector<PlaylistDTO> playlists, QString key,
                               std::stop_token stop);
    void setLoading(bool isLoading);
    void show(std::vector<std::unique_ptr<PlaylistGroup>> groups, std::optional<QString> key);

    const Logger _logger{"preview"};
    const std::shared_ptr<HelperClienting> _client;
    const std::shared_ptr<Clock> _clock;
    const Clock::Duration _debounce;
    PlaylistGroups *_groups;
    bool _isLoading = false;
    std::optional<QString> _loadedKey; // of the selection that the groups show
    TaskHandle _fetchTask;
    TaskScope _lifetime;
};

} // namespace zelk
