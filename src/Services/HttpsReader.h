#pragma once

#include "Support/Clock.h"

#include <QByteArray>
#include <QCoroTask>
#include <QUrl>

#include <functional>
#include <memory>
#include <stop_token>

class QNetworkAccessManager;

namespace zelk {

/// Reads what lies at an address, over HTTPS from its beginning to its end: no other scheme, no redirection to one, and
/// no server whose certificate `network` doesn't trust. It sends no cookies and no credentials. Used on the main
/// thread.
class HttpsReader {
public:
    /// A chunk as it came, never empty. What it throws ends the reading and is its failure.
    using Sink = std::function<void(const QByteArray &)>;
    struct Patience {
        Clock::Duration silence; ///< for the next chunk
        Clock::Duration whole;   ///< for all of them
    };

    HttpsReader(std::shared_ptr<QNetworkAccessManager> network, std::shared_ptr<Clock> clock)
        : _network(std::move(network)), _clock(std::move(clock)) {}

    /// Hands all of it to `sink`, which is alive until this ends. Throws `UpdateError`, and `Cancelled` when it is
    /// asked to stop; nothing is handed over after that.
    QCoro::Task<> read(QUrl url, Sink sink, Patience patience, std::stop_token stop) const;
    /// All of it at once; more than `limit` bytes are a failure. Waits half a minute for a chunk, a minute for the
    /// whole.
    QCoro::Task<QByteArray> readAll(QUrl url, qsizetype limit, std::stop_token stop) const;

private:
    std::shared_ptr<QNetworkAccessManager> _network;
    std::shared_ptr<Clock> _clock;
};

} // namespace zelk
