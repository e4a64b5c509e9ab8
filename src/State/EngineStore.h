#pragma once

#include "Support/Task.h"
#include "Transport/HelperClienting.h"

#include <QObject>
#include <QPointer>

#include <exception>
#include <memory>
#include <optional>
#include <type_traits>

namespace zelk {

/// What the stores share that ask the engine and show why it didn't do what was asked: they don't throw, they keep the
/// text of their last failure until the next success.
class EngineStore : public QObject {
    Q_OBJECT
    /// Empty when there is none.
    Q_PROPERTY(QString lastError READ lastErrorText NOTIFY lastErrorChanged)

public:
    const std::optional<QString> &lastError() const { return _lastError; }

Q_SIGNALS:
    void lastErrorChanged();

protected:
    explicit EngineStore(std::shared_ptr<HelperClienting> client, QObject *parent);

    const std::shared_ptr<HelperClienting> &client() const { return _client; }
    /// Stopped when this store goes; to be given to whatever it waits for.
    std::stop_token lifetime() const { return _lifetime.token(); }
    void setLastError(std::optional<QString> text);

    template<typename T>
    using Obtained = std::conditional_t<std::is_void_v<T>, bool, std::optional<T>>;

    /// Awaits `asking`. A failure goes to `lastError` and gives false, or nothing; so does a store that has gone
    /// meanwhile, of which nothing may be touched then. A success leaves `lastError` to the caller.
    template<typename T>
    QCoro::Task<Obtained<T>> orLastError(QCoro::Task<T> asking) {
        const QPointer<EngineStore> self(this);
        std::exception_ptr failure;
        Obtained<T> obtained{};
        try {
            if constexpr (std::is_void_v<T>) {
                co_await asking;
                obtained = true;
            } else {
                obtained = co_await asking;
            }
        } catch (...) {
            failure = std::current_exception();
        }
        if (!self)
            co_return Obtained<T>();
        if (failure)
            setLastError(describe(failure));
        co_return obtained;
    }

    /// Sends `request` with the standard time-out; as above.
    QCoro::Task<bool> sendOrLastError(Request request);

private:
    QString lastErrorText() const { return _lastError.value_or(QString()); }

    const std::shared_ptr<HelperClienting> _client;
    std::optional<QString> _lastError;
    TaskScope _lifetime;
};

} // namespace zelk
