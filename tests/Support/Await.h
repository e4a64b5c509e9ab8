#pragma once

#include "Support/Task.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QObject>

#include <exception>
#include <memory>
#include <optional>
#include <type_traits>

namespace zelk {

/// How a task that a test waits for came out.
template<typename T>
struct Outcome {
    std::optional<std::conditional_t<std::is_void_v<T>, std::monostate, T>> value;
    std::exception_ptr failure;

    bool isOver() const { return value || failure; }
    bool succeeded() const { return value.has_value(); }

    /// Whether it failed with exactly that failure.
    template<typename Failure>
    bool failedWith(const Failure &expected) const {
        try {
            if (failure)
                std::rethrow_exception(failure);
        } catch (const Failure &actual) {
            return actual == expected;
        } catch (...) {
        }
        return false;
    }

    QString failureText() const {
        try {
            if (failure)
                std::rethrow_exception(failure);
        } catch (const std::exception &actual) {
            return QString::fromUtf8(actual.what());
        } catch (...) {
            return QStringLiteral("unknown");
        }
        return {};
    }
};

/// Awaits `task` in the background and notes how it comes out.
template<typename T>
std::shared_ptr<Outcome<T>> observe(QObject *owner, QCoro::Task<T> task) {
    const auto outcome = std::make_shared<Outcome<T>>();
    const auto held = std::make_shared<QCoro::Task<T>>(std::move(task));
    startTask(owner, [outcome, held](std::stop_token) -> QCoro::Task<> {
        try {
            if constexpr (std::is_void_v<T>) {
                co_await *held;
                outcome->value.emplace();
            } else {
                outcome->value.emplace(co_await *held);
            }
        } catch (...) {
            outcome->failure = std::current_exception();
        }
    });
    return outcome;
}

/// Runs the event loop until `task` is over, half a minute at most.
template<typename T>
Outcome<T> outcomeOf(QCoro::Task<T> task) {
    QObject owner;
    const auto outcome = observe(&owner, std::move(task));
    const QDeadlineTimer deadline(30000);
    while (!outcome->isOver() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    return *outcome;
}

} // namespace zelk
