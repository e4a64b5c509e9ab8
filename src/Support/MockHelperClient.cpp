#include "Support/MockHelperClient.h"

#include "Support/Cancelled.h"
#include "Support/OneShot.h"

#include <QCoroFuture>

#include <utility>

namespace zelk {

namespace {

template<typename T>
OneShotRef<T> promise() {
    return std::make_shared<OneShot<T>>(std::make_exception_ptr(HelperError::helperUnavailable()));
}

} // namespace

class MockHelperClient::Core {
public:
    explicit Core(Responses responses) : _responses(std::move(responses)) {}

    const std::vector<Request> &sent() const { return _sent; }
    void note(Request request) { _sent.push_back(std::move(request)); }

    void answer(const Request &request, const ReadResult &read, const QString &typeName) {
        note(request);
        const auto response = _responses.find(request.method());
        try {
            // Through its bytes, as a real reply would come.
            read(JSONValue::parse((response == _responses.end() ? JSONValue::null : response->second).json()));
        } catch (const JSONError &error) {
            if (typeName == jsonTypeName<EmptyResult>()) {
                read(std::nullopt);
                return;
            }
            throw HelperError::decodeFailure(
                QStringLiteral("mock result mismatch for %1: %2").arg(wireName(request.method()), describe(error)));
        }
    }

private:
    const Responses _responses;
    std::vector<Request> _sent;
};

MockHelperClient::MockHelperClient(Responses responses, std::vector<HelperEvent> script)
    : _executor(SerialExecutor::make(QStringLiteral("orrim.zelk.mock"))),
      _core(std::make_shared<Core>(std::move(responses))), _script(std::move(script)) {}

MockHelperClient::~MockHelperClient() = default;

QCoro::Task<std::vector<Request>> MockHelperClient::sent() const {
    const auto taken = promise<std::vector<Request>>();
    const auto future = taken->future();
    _executor->post([core = _core, taken] { taken->fulfil(core->sent()); });
    co_return co_await future;
}

void MockHelperClient::play(bool finishing) {
    emit(HelperEvent::helperReady());
    _events.push(std::vector(_script));
    if (finishing)
        finish();
}

void MockHelperClient::emit(HelperEvent event) {
    _events.push(std::move(event));
}

void MockHelperClient::finish() {
    _events.finish();
}

QCoro::Task<> MockHelperClient::notify(Request request) {
    const auto noted = promise<void>();
    const auto future = noted->future();
    _executor->post([core = _core, noted, request = std::move(request)]() mutable {
        core->note(std::move(request));
        noted->fulfil();
    });
    co_await future;
}

QCoro::Task<> MockHelperClient::perform(Request request, ReadResult read, QString typeName, std::chrono::nanoseconds,
                                        std::stop_token stop) {
    const auto answered = promise<void>();
    const auto future = answered->future();
    _executor->post([core = _core, answered, request = std::move(request), read = std::move(read), typeName] {
        try {
            core->answer(request, read, typeName);
            answered->fulfil();
        } catch (...) {
            answered->fail(std::current_exception());
        }
    });
    co_await future;
    if (stop.stop_requested())
        throw Cancelled();
}

} // namespace zelk
