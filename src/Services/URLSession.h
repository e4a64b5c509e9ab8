#pragma once

#include <QByteArray>
#include <QCoroTask>

#include <chrono>
#include <memory>
#include <stop_token>

class QNetworkAccessManager;
class QUrl;

namespace zelk {

class Clock;

/// Loads URLs. It lives on the main thread, and may go while a load is under way, which then fails with `Cancelled`.
class URLSession {
public:
    static constexpr std::chrono::seconds patience{60};
    /// In bytes.
    static constexpr qsizetype mostBody = 64 * 1024;

    struct Response {
        int status = 0;
        QByteArray body;
    };

    /// `network` must live as long as the session.
    URLSession(QNetworkAccessManager &network, std::shared_ptr<Clock> clock);

    /// The answer, whatever its status. Throws `URLError`, and `Cancelled` when it is stopped. A success with a body
    /// that isn't whole, or is larger than `mostBody`, is a failure; what another status says is cut off there.
    QCoro::Task<Response> get(QUrl url, std::stop_token stop = {});

private:
    QNetworkAccessManager &_network;
    const std::shared_ptr<Clock> _clock;
};

} // namespace zelk
