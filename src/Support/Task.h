#pragma once

#include "Support/Cancelled.h"
#include "Support/SerialExecutor.h"

#include <QCoroTask>
#include <QObject>

#include <memory>
#include <stop_token>
#include <utility>

namespace zelk {

/// A task under way. Dropping the handle lets the task go on.
class TaskHandle {
public:
    TaskHandle() = default;
    explicit TaskHandle(std::stop_source source) : _source(std::move(source)) {}

    /// Asks the task to end: what it waits for ends with `Cancelled`, on its own thread. More than once is once.
    void cancel() { _source.request_stop(); }
    bool isCancelled() const { return _source.stop_requested(); }

private:
    std::stop_source _source{std::nostopstate};
};

/// A member of whoever starts tasks without being a QObject: its release cancels them.
class TaskScope {
public:
    TaskScope() = default;
    ~TaskScope() { _source.request_stop(); }
    Q_DISABLE_COPY_MOVE(TaskScope)

    std::stop_token token() const { return _source.get_token(); }

private:
    std::stop_source _source;
};

namespace detail {

/// The log line of a failure that nobody awaits: a task that is started handles its own.
void logEscaped(const std::exception *failure);

template<typename Function>
QCoro::Task<> runTask(Function function, std::stop_source source) {
    if (source.stop_requested())
        co_return;
    try {
        auto body = function(source.get_token());
        co_await body;
    } catch (const Cancelled &) {
        // The normal way out of a task whose end was asked for.
    } catch (const std::exception &failure) {
        logEscaped(&failure);
    } catch (...) {
        logEscaped(nullptr);
    }
}

template<typename Owner>
struct Link; // what ties a task to its owner, released at the task's end

template<>
struct Link<QObject> {
    Link(QObject *owner, const std::stop_source &source)
        : connection(QObject::connect(owner, &QObject::destroyed, [source]() mutable { source.request_stop(); })) {}
    ~Link() { QObject::disconnect(connection); }
    QMetaObject::Connection connection;
};

struct Stopper {
    std::stop_source source;
    void operator()() { source.request_stop(); }
};

template<>
struct Link<TaskScope> {
    Link(TaskScope *owner, const std::stop_source &source) : callback(owner->token(), Stopper{source}) {}
    std::stop_callback<Stopper> callback;
};

template<typename Owner, typename Function>
TaskHandle startTask(Owner *owner, Function function) {
    const std::stop_source source;
    auto link = std::make_shared<Link<Owner>>(owner, source);
    const auto executor = SerialExecutor::current();
    Q_ASSERT_X(executor, "startTask", "started on a thread without an executor");
    executor->post([function = std::move(function), source, link = std::move(link)]() mutable {
        runTask([function = std::move(function),
                 link = std::move(link)](std::stop_token stop) mutable { return function(std::move(stop)); },
                source);
    });
    return TaskHandle(source);
}

} // namespace detail

/// Starts a task that nobody awaits; the only way to do so. `function` takes a `std::stop_token` and returns a
/// `QCoro::Task<>`; it begins on the next turn of the calling thread's loop, with its captures kept alive to the task's
/// end. The task is cancelled when `owner` goes away (the token is then stopped, and each wait that was given the token
/// ends with `Cancelled`); after each `co_await` the owner may be gone all the same, so look again. A failure that
/// leaves `function` is logged and goes no further.
template<typename Function>
TaskHandle startTask(QObject *owner, Function function) {
    return detail::startTask<QObject>(owner, std::move(function));
}

template<typename Function>
TaskHandle startTask(TaskScope *owner, Function function) {
    return detail::startTask<TaskScope>(owner, std::move(function));
}

} // namespace zelk
