#pragma once

#include "Support/AsyncStream.h"
#include "Support/Cancelled.h"
#include "Support/OneShot.h"
#include "Transport/HelperClienting.h"

#include <QCoroFuture>

#include <algorithm>
#include <deque>

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace zelk {

/// A client for tests of the main thread: says what was asked of it, and answers by a queue of replies per method, at
/// once or when the test lets it. It has no thread of its own.
class ScriptedClient final : public HelperClienting {
public:
    ~ScriptedClient() override {
        for (auto &held : _held)
            held.answer->fail(std::make_exception_ptr(HelperError::helperUnavailable()));
    }

    // What comes next for a method, in the order given; without any, its requests wait to be released.
    void reply(Method method, const QByteArray &json) { push(method, {JSONValue::parse(json), nullptr}); }
    void fail(Method method, const HelperError &failure) { push(method, {{}, std::make_exception_ptr(failure)}); }
    void failWith(Method method, std::exception_ptr failure) { push(method, {{}, std::move(failure)}); }

    /// How many requests wait for a reply.
    int held() const { return static_cast<int>(_held.size()); }
    /// Answers the oldest waiting request.
    void release(const QByteArray &json) { answerOldest({JSONValue::parse(json), nullptr}); }
    void releaseFailing(const HelperError &failure) { answerOldest({{}, std::make_exception_ptr(failure)}); }

    void emit(HelperEvent event) { _events.push(std::move(event)); }
    void emitAll(std::vector<HelperEvent> events) { _events.push(std::move(events)); }

    const std::vector<Request> &sent() const { return _sent; }
    const std::vector<Request> &notified() const { return _notified; }
    const std::vector<std::chrono::nanoseconds> &timeouts() const { return _timeouts; }
    int sentCount(Method method) const { return static_cast<int>(std::ranges::count(_sent, method, &Request::method)); }
    std::exception_ptr notifyFailure;

    EventReader events() const override { return _events.reader(); }

    QCoro::Task<> notify(Request request) override {
        _notified.push_back(std::move(request));
        if (notifyFailure)
            std::rethrow_exception(notifyFailure);
        co_return;
    }

protected:
    QCoro::Task<> perform(Request request, ReadResult read, QString typeName, std::chrono::nanoseconds timeout,
                          std::stop_token stop) override {
        const auto method = request.method();
        _sent.push_back(std::move(request));
        _timeouts.push_back(timeout);
        const auto answer =
            std::make_shared<OneShot<JSONValue>>(std::make_exception_ptr(HelperError::helperUnavailable()));
        const auto future = answer->future();
        auto &queue = _replies[method];
        if (queue.empty()) {
            _held.push_back({answer});
        } else {
            settle(*answer, queue.front());
            queue.pop_front();
        }
        const std::stop_callback onStop(stop, [answer] { answer->fail(std::make_exception_ptr(Cancelled())); });
        const auto value = co_await future;
        try {
            read(value);
        } catch (const JSONError &error) {
            throw HelperError::decodeFailure(
                QStringLiteral("result did not match %1: %2").arg(typeName, describe(error)));
        }
    }

private:
    struct Reply {
        JSONValue value;
        std::exception_ptr failure;
    };
    struct Held {
        OneShotRef<JSONValue> answer;
    };

    static void settle(OneShot<JSONValue> &answer, const Reply &reply) {
        if (reply.failure)
            answer.fail(reply.failure);
        else
            answer.fulfil(reply.value);
    }
    void push(Method method, Reply reply) { _replies[method].push_back(std::move(reply)); }
    void answerOldest(const Reply &reply) {
        Q_ASSERT_X(!_held.empty(), "ScriptedClient", "nobody waits");
        const auto answer = _held.front().answer;
        _held.pop_front();
        settle(*answer, reply);
    }

    std::vector<Request> _sent;
    std::vector<Request> _notified;
    std::vector<std::chrono::nanoseconds> _timeouts;
    std::map<Method, std::deque<Reply>> _replies;
    std::deque<Held> _held;
    AsyncStream<HelperEvent> _events;
};

} // namespace zelk
