#pragma once

#include "Support/Clock.h"

#include <QByteArray>
#include <QCoroTask>
#include <QUrl>

#include <map>
#include <memory>
#include <stdexcept>
#include <stop_token>

class QNetworkAccessManager;

namespace zelk {

/// Fetches pictures, keeping nothing between one launch and the next. Lives on an executor's thread.
class ArtworkSession {
public:
    /// Why nothing came, in a sentence for the log.
    class Failure : public std::runtime_error {
    public:
        explicit Failure(const QString &description) : std::runtime_error(description.toStdString()) {}
    };

    explicit ArtworkSession(std::shared_ptr<Clock> clock);
    ~ArtworkSession();
    Q_DISABLE_COPY_MOVE(ArtworkSession)

    /// What the URL answers with, whatever the answer's status. Throws `Failure` when no whole answer comes or nothing
    /// has come for 20 seconds, `Cancelled` when the task was cancelled or the session has gone. The token may be
    /// stopped on any thread.
    QCoro::Task<QByteArray> data(QUrl url, std::stop_token stop);

private:
    class Fetch;
    using Fetches = std::map<const Fetch *, std::shared_ptr<Fetch>>;
    struct Entry;

    const std::shared_ptr<Clock> _clock;
    const std::unique_ptr<QNetworkAccessManager> _network;
    std::shared_ptr<Fetches> _open; // after the network, whose replies they abort
};

} // namespace zelk
