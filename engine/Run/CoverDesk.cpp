#include "Run/CoverDesk.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr int fetchers = 3;
/// An album's tracks mostly follow each other, so few are asked for again after this many others.
constexpr qsizetype mostKept = 20;
constexpr int mostFailures = 3;

std::optional<Cover> coverAt(const QString &path) {
    QFile file(path);
    return QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly) ? coverOf(file.read(largestCover + 1))
                                                                      : std::nullopt;
}

} // namespace

CoverDesk::CoverDesk(std::stop_token stop, DownloadLimits limits) : _stop(std::move(stop)), _limits(limits) {}

CoverDesk::~CoverDesk() = default;

void CoverDesk::serve(WriteOrder &order, const CoverHints &hints) {
    order.cover = [this, hints] { return take(hints); };
    if (!coverWith(order.source.path) && isWebAddress(hints.address)) {
        begun(hints.address);
    }
}

std::optional<Cover> CoverDesk::take(const CoverHints &hints) {
    if (!hints.location.isEmpty()) {
        if (auto cover = coverWith(hints.location)) {
            return cover;
        }
    }
    if (!isWebAddress(hints.address)) {
        const QUrl url(hints.address);
        return url.isLocalFile() ? coverAt(url.toLocalFile()) : std::nullopt;
    }
    const auto fetch = begun(hints.address);
    if (!fetch || fetch->result.wait_until(fetch->deadline) != std::future_status::ready) {
        return std::nullopt;
    }
    return fetch->result.get();
}

std::shared_ptr<CoverDesk::Fetch> CoverDesk::begun(const QString &address) {
    const std::lock_guard lock(_mutex);
    if (const auto known = _fetches.value(address)) {
        return known;
    }
    if (_failures.value(QUrl(address).host()) >= mostFailures) {
        return nullptr;
    }
    const auto fetch = std::make_shared<Fetch>();
    fetch->deadline = std::chrono::steady_clock::now() + _limits.whole;
    _fetches.insert(address, fetch);
    _kept += address;
    if (_kept.size() > mostKept) {
        _fetches.remove(_kept.takeFirst());
    }
    if (!_queue) {
        _queue = std::make_unique<WorkQueue>(fetchers);
    }
    _queue->post([this, address, fetch] { fetch->promise.set_value(this->fetch(address)); });
    return fetch;
}

std::optional<Cover> CoverDesk::fetch(const QString &address) {
    const QString host = QUrl(address).host();
    {
        const std::lock_guard lock(_mutex);
        if (_failures.value(host) >= mostFailures) {
            return std::nullopt;
        }
    }
    QByteArray all;
    DownloadSink sink;
    sink.bytes = [&all](const QByteArray &bytes) { all += bytes; };
    try {
        download(QUrl(address), _limits, sink, _stop);
        return coverOf(all);
    } catch (const std::exception &) { // no cover is no failure
        const std::lock_guard lock(_mutex);
        ++_failures[host];
        return std::nullopt;
    }
}

} // namespace zelk::engine
