#pragma once

#include "Files/Download.h"
#include "Output/Tagging.h"
#include "Output/TrackWriter.h"
#include "Threads/WorkQueue.h"

#include <QHash>
#include <QStringList>

#include <chrono>
#include <future>
#include <memory>
#include <mutex>
#include <stop_token>

namespace zelk::engine {

/// Where a row's cover may come from, besides the file that is taken for it.
struct CoverHints {
    QString address;  ///< What the list says: an http, https or file address, or empty.
    QString location; ///< The audio file that the list itself names; empty if it names none.
};

/// Gets the covers that lists name, while the tracks are copied. A cover is never worth a failure, and is waited for no
/// longer than its limits say; a host that fails again and again is left alone. Any thread may call.
class CoverDesk {
public:
    explicit CoverDesk(std::stop_token stop,
                       DownloadLimits limits = {largestCover, std::chrono::seconds(2), std::chrono::seconds(3)});
    ~CoverDesk();

    /// Has an order ask here for its cover, which comes while the file is copied. For as long as this lives.
    void serve(WriteOrder &order, const CoverHints &hints);
    /// The cover, if there is one and it has come, or comes in time.
    std::optional<Cover> take(const CoverHints &hints);

private:
    struct Fetch {
        std::chrono::steady_clock::time_point deadline;
        std::promise<std::optional<Cover>> promise;
        std::shared_future<std::optional<Cover>> result = promise.get_future().share();
    };

    /// The fetch of a cover, which begins unless it has already; null from a host that is left alone.
    std::shared_ptr<Fetch> begun(const QString &address);
    std::optional<Cover> fetch(const QString &address);

    const std::stop_token _stop;
    const DownloadLimits _limits;
    std::mutex _mutex; // guards all below
    QHash<QString, std::shared_ptr<Fetch>> _fetches;
    QStringList _kept;                 // addresses, the oldest first
    QHash<QString, int> _failures;     // by host
    std::unique_ptr<WorkQueue> _queue; // last, so that its threads end before what they use
};

} // namespace zelk::engine
