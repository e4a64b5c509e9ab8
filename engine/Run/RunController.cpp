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
    _desk.expectRun();
    accepted();
    _runs.post([this, run, hold = std::move(hold)]() mutable {
        RunTurns turns;
        turns.inTurn = [this](const std::function<void()> &work) { _desk.inTurn(work); };
        turns.begins = [this, &run] { _desk.attend(run); };
        turns.over = [this, &run, &hold] {
            _desk.attend(nullptr);
            hold.reset();
            const std::lock_guard inner(_mutex);
            if (_current == run) {
                _current.reset();
            }
        };
        run->execute(turns);
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
        _desk.cancel();
        run->cancel(runId != run->runId());
    }
}

void RunController::decide(const QString &trackId, const ReviewDecision &decision, const std::optional<QString> &runId,
                           RunLock::Hold hold) {
    _desk.decide(trackId, decision, runId, std::move(hold));
}

void RunController::stop() {
    std::shared_ptr<SyncRun> run;
    {
        const std::lock_guard lock(_mutex);
        run = std::exchange(_current, nullptr);
    }
    _desk.stop();
    if (run) {
        run->cancel(false);
    }
}

} // namespace zelk::engine
