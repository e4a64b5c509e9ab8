#pragma once

#include <QByteArray>
#include <QUrl>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <stop_token>

namespace zelk::engine {

struct DownloadLimits {
    qint64 bytes = 2'000'000'000;
    std::chrono::milliseconds silence{30'000}; ///< Without any byte.
    std::chrono::milliseconds whole{0};        ///< From beginning to end; 0 for as long as it takes.
};

/// Nothing came of a download. what() is a sentence in UTF-8 that says what to do.
class DownloadFailed : public std::runtime_error {
public:
    explicit DownloadFailed(const QString &what) : std::runtime_error(what.toStdString()) {}
};

/// Where what arrives goes. What it throws ends the download and comes out of it.
struct DownloadSink {
    std::function<void(const QByteArray &bytes)> bytes;
    /// `total` is -1 as long as the server doesn't say.
    std::function<void(qint64 done, qint64 total)> progress = {};
};

/// Whether this is an http or https address.
bool isWebAddress(const QString &text);

/// Fetches what is at an http or https address, over a few redirections, and never from a safe address on to an unsafe
/// one. Waits on the calling thread. Throws DownloadFailed, Stopped, or what the sink throws.
void download(const QUrl &url, const DownloadLimits &limits, const DownloadSink &sink, std::stop_token stop);

} // namespace zelk::engine
