#pragma once

#include "Support/Clock.h"
#include "Support/SerialExecutor.h"
#include "Transport/HelperClienting.h"
#include "Transport/HelperProcess.h"

#include <memory>

namespace zelk {

/// Turns the engine's line pipe into calls with typed results and one stream of events: pairs replies with requests,
/// tells replies from events, enforces time-outs, fails what is outstanding when the engine ends, and restarts it after
/// a crash for as long as the supervisor's policy allows. After a clean exit, or when the policy gives up, or when a
/// restart fails, the stream of events ends and the client is dead for good.
///
/// All state lives on an executor of its own. The release of the client ends the stream and fails what is open with
/// `HelperError::helperUnavailable`.
class HelperClient final : public HelperClienting {
public:
    /// Starts nothing.
    HelperClient(std::shared_ptr<HelperProcess> process, std::shared_ptr<Clock> clock);
    ~HelperClient() override;
    Q_DISABLE_COPY_MOVE(HelperClient)

    /// Launches the engine. Only the first call does anything, also when it fails; throws what the launch throws.
    QCoro::Task<> start();

    EventReader events() const override;
    QCoro::Task<> notify(Request request) override;

protected:
    QCoro::Task<> perform(Request request, ReadResult read, QString typeName, std::chrono::nanoseconds timeout,
                          std::stop_token stop) override;

private:
    class Core;

    SerialExecutor::Ref _executor;
    std::shared_ptr<Core> _core;
};

} // namespace zelk
