#pragma once

#include "Run/ReviewDesk.h"
#include "Run/RunTypes.h"
#include "Run/SyncRun.h"
#include "Store/RunLock.h"

#include <deque>
#include <memory>
#include <mutex>

namespace zelk::engine {

/// Lets one run go at a time and takes the user's commands to it. Any thread may call; no call waits.
class RunController {
public:
    RunController(RunServices services, std::function<ReviewDesk::Settings()> settings);
    ~RunController();

    /// Begins a run, or, if one has been cancelled and is still stopping, lines it up behind that. False if there is
    /// one that hasn't been cancelled. `accepted` is called before anything of the run can be heard. `hold` is let go
    /// of when all files of the run are done.
    bool start(RunRequest request, RunLock::Hold hold, const std::function<void()> &accepted);

    /// Ends the one run, whatever run is named. The summary follows unless the run's own id is given.
    void cancel(const std::optional<QString> &runId);

    /// `runId` is the run that the decision was made in, if known. `hold` is let go of when it has been carried out.
    void decide(const QString &trackId, const ReviewDecision &decision, const std::optional<QString> &runId,
                RunLock::Hold hold);

    /// Lets everything under way stop at its next safe point. Then nothing begins any more.
    void stop();

private:
    RunServices _services;
    std::mutex _mutex;                 // guards the next
    std::shared_ptr<SyncRun> _current; // the one not yet cancelled or ended
    ReviewDesk _desk;
    WorkQueue _runs; // last, so that its thread ends before what it uses
};

} // namespace zelk::engine
