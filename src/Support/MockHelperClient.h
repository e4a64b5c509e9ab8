#pragma once

#include "Support/AsyncStream.h"
#include "Support/SerialExecutor.h"
#include "Transport/HelperClienting.h"

#include <map>
#include <memory>
#include <vector>

namespace zelk {

/// A client with no process and no pipes behind it, for previews of the views and for tests of what uses a client.
/// Requests are answered at once with canned results; events come when they are asked for. The running application
/// never makes one.
class MockHelperClient final : public HelperClienting {
public:
    using Responses = std::map<Method, JSONValue>;

    /// A method without a response is answered with JSON null. `script` is what play() delivers.
    explicit MockHelperClient(Responses responses = {}, std::vector<HelperEvent> script = {});
    ~MockHelperClient() override;

    /// Every call received so far, in order, those that wait for no reply too.
    QCoro::Task<std::vector<Request>> sent() const;

    /// Puts helperReady and then the whole script on the stream, and ends it if `finishing`.
    void play(bool finishing);
    void emit(HelperEvent event);
    /// Ends the stream of events.
    void finish();

    EventReader events() const override { return _events.reader(); }
    QCoro::Task<> notify(Request request) override;

protected:
    QCoro::Task<> perform(Request request, ReadResult read, QString typeName, std::chrono::nanoseconds timeout,
                          std::stop_token stop) override;

private:
    class Core;

    const SerialExecutor::Ref _executor;
    const std::shared_ptr<Core> _core; // touched on the executor alone
    const std::vector<HelperEvent> _script;
    const AsyncStream<HelperEvent> _events;
};

} // namespace zelk
