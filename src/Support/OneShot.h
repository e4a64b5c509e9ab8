#pragma once

#include <QFuture>
#include <QPromise>

#include <atomic>
#include <exception>
#include <memory>
#include <type_traits>
#include <utility>

namespace zelk {

/// A result that is promised once and kept once, from any thread.
///
/// The first of `fulfil` and `fail` counts, later ones do nothing and return false. A promise that is released unkept
/// fails with `gone`, since awaiting a future whose promise died without a word would end the program.
template<typename T>
class OneShot {
public:
    explicit OneShot(std::exception_ptr gone) : _gone(std::move(gone)) { _promise.start(); }
    ~OneShot() { fail(_gone); }
    Q_DISABLE_COPY_MOVE(OneShot)

    QFuture<T> future() const { return _promise.future(); }

    template<typename... Value>
    bool fulfil(Value &&...value) {
        if (_kept.exchange(true))
            return false;
        if constexpr (!std::is_void_v<T>)
            _promise.addResult(T(std::forward<Value>(value)...));
        _promise.finish();
        return true;
    }

    bool fail(std::exception_ptr failure) {
        if (_kept.exchange(true))
            return false;
        _promise.setException(std::move(failure));
        _promise.finish();
        return true;
    }

private:
    QPromise<T> _promise;
    std::exception_ptr _gone;
    std::atomic_bool _kept = false;
};

template<typename T>
using OneShotRef = std::shared_ptr<OneShot<T>>;

} // namespace zelk
