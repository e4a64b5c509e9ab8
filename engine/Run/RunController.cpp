#include "Run/RunController.h"

namespace zelk::engine {

RunController::RunController(RunServices services, std::function<ReviewDesk::Settings()> settings)
    : _services(services), _desk(services, std::move(settings)) {}

RunController::~RunController() {
    stop();
}

bool RunController::start(RunRequest request, RunLock::Hold hold, const std::function<void()> &accepted) {
    const std::lock_guard lock(_mutex);
    if (_current) {
        return false;
    }
    auto run = std::make_shared<SyncRun>(std::move(request), _services);
    _current = run;
    accepted();
    _runs.post([this, run, hold = std::move(hold)]() mutable {
        run->execute([this] { _desk.waitUntilIdle(); },
                     [this, &run, &hold] {
                         hold.reset();
                         const std::lock_guard inner(_mutex);
                         if (_current == run) {
                             _current.reset();
                         }
                     });
    });
    return true;
}

void RunController::cancel(const std::optional<QString> &runId) {
    std::shared_ptr<SyncRun> run;
    {
        const std::lock_guard lock(_mutex);
        run = std::exchange(_current, nullptr);
    }
    if (run) {
        run->cancel(runId != run->runId());
    }
}

void RunController::decide(const QString &trackId, const ReviewDecision &decision, RunLock::Hold hold) {
    const std::lock_guard lock(_mutex);
    _desk.decide(trackId, decision, _current, std::move(hold));
}

void RunController::stop() {
    std::shared_ptr<SyncRun> run;
    {
        const std::lock_guard lock(_mutex);
        run = std::exchange(_current, nullptr);
    }
    if (run) {
        run->cancel(false);
    }
    _desk.stop();
}

} // namespace zelk::engine
