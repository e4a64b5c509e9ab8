#include "Services/ArtworkProvider.h"

#include "Services/ArtworkCache.h"
#include "Services/ArtworkDisk.h"
#include "Services/ArtworkImaging.h"
#include "Services/ArtworkLibrary.h"
#include "Services/ArtworkSession.h"
#include "Support/Cancelled.h"
#include "Support/OneShot.h"
#include "Support/Task.h"
#include "Transport/Tagged.h"

#include <QCoroFuture>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

constexpr qsizetype totalCostLimit = 67'108'864;
constexpr qsizetype tilesOfMosaic = 4;

std::exception_ptr gone() {
    return std::make_exception_ptr(Cancelled());
}

} // namespace

/// The state, touched on the executor's thread only.
class ArtworkProvider::Core : public std::enable_shared_from_this<Core> {
public:
    using Weak = std::weak_ptr<Core>;
    using Answer = OneShotRef<QImage>;

    Core(const Surroundings &surroundings, std::shared_ptr<ArtworkCache> memory)
        : _memory(std::move(memory)),
          _disk(surroundings.cachesFolder + u"/orrim.zelk/artwork"_s, surroundings.clock, surroundings.wallTime),
          _session(surroundings.clock), _library(surroundings.openLibrary, _logger) {}

    bool iTunesLibraryAvailable() const { return _library.iTunesLibraryAvailable(); }

    void image(const ArtworkRef &ref, double size, bool mayReadLibrary, const std::stop_token &stop,
               const Answer &answer) {
        const QString key = ArtworkProvider::key(ref, size);
        QImage image = stop.stop_requested() ? QImage() : _memory->image(key);
        if (image.isNull() && !stop.stop_requested())
            image = loadDisk(key, size);
        if (!image.isNull() || stop.stop_requested()) {
            answer->fulfil(image);
            return;
        }
        const int pixels = static_cast<int>(size * ArtworkImaging::scale);
        match(
            ref, [&](const ArtworkRef::None &) { answer->fulfil(QImage()); },
            [&](const ArtworkRef::Url &url) { loadURL(url.url(), pixels, key, stop, answer); },
            [&](const ArtworkRef::AppleMusic &music) {
                answer->fulfil(mayReadLibrary ? loadAppleMusic(music.persistentID, pixels, key) : QImage());
            },
            [&](const ArtworkRef::Mosaic &mosaic) {
                answer->fulfil(mayReadLibrary ? loadMosaic(mosaic.trackIds, pixels, key) : QImage());
            });
    }

private:
    QImage loadDisk(const QString &key, double size) {
        const auto bytes = _disk.read(key);
        return bytes ? decode(*bytes, size, key) : QImage();
    }

    void loadURL(const QUrl &url, int pixels, const QString &key, const std::stop_token &stop, const Answer &answer) {
        startTask(&_tasks, [self = weak_from_this(), url, pixels, key, stop, answer](const std::stop_token &) {
            return fetch(self, url, pixels, key, stop, answer);
        });
    }

    static QCoro::Task<> fetch(Weak self, QUrl url, int pixels, QString key, std::stop_token stop, Answer answer) {
        auto core = self.lock();
        if (!core)
            co_return;
        auto fetching = core->_session.data(url, stop);
        core.reset();
        QByteArray bytes;
        try {
            bytes = co_await fetching;
        } catch (const ArtworkSession::Failure &failure) {
            core = self.lock();
            if (core && !stop.stop_requested())
                core->_logger.debug(u"url art failed: %1"_s.arg(QString::fromUtf8(failure.what())));
            co_return;
        }
        core = self.lock();
        if (core && !stop.stop_requested())
            answer->fulfil(core->decode(bytes, pixels / ArtworkImaging::scale, key));
    }

    QImage loadAppleMusic(const QString &persistentID, int pixels, const QString &key) {
        const QByteArray bytes = _library.artworkData(persistentID);
        return bytes.isEmpty() ? QImage() : decode(bytes, pixels / ArtworkImaging::scale, key);
    }

    // The tiles' own entries are written and never read.
    QImage loadMosaic(const QStringList &trackIds, int pixels, const QString &key) {
        std::vector<QImage> tiles;
        for (const QString &id : trackIds.first(std::min(tilesOfMosaic, trackIds.size()))) {
            const QImage tile = loadAppleMusic(id, pixels / 2, key + u'#' + id);
            if (!tile.isNull())
                tiles.push_back(tile);
        }
        const QImage mosaic = ArtworkImaging::composeMosaic(tiles, pixels);
        if (!mosaic.isNull())
            _memory->insert(key, mosaic);
        return mosaic;
    }

    /// The picture in the bytes, which are kept if there is one. Also when they come from the disk: the file is then
    /// written as it was.
    QImage decode(const QByteArray &bytes, double points, const QString &key) {
        const QImage image = ArtworkImaging::downsample(bytes, points);
        if (image.isNull())
            return image;
        _memory->insert(key, image);
        _disk.write(key, bytes);
        _disk.pruneDiskIfNeeded();
        return image;
    }

    const Logger _logger{"artwork"};
    const std::shared_ptr<ArtworkCache> _memory;
    ArtworkDisk _disk;
    ArtworkSession _session;
    ArtworkLibrary _library;
    TaskScope _tasks; // last, so that tasks are cancelled before what they use goes
};

/// Where the state is, touched on the executor's thread only: it begins and ends there, in front of and behind all
/// calls.
struct ArtworkProvider::Place {
    std::shared_ptr<Core> core;
};

ArtworkProvider::ArtworkProvider(Surroundings surroundings)
    : _memory(std::make_shared<ArtworkCache>(totalCostLimit)), _mayReadLibrary(surroundings.mayReadLibrary),
      _executor(SerialExecutor::make(u"orrim.zelk.artwork"_s)), _place(std::make_shared<Place>()) {
    _executor->post([place = _place, memory = _memory, surroundings = std::move(surroundings)] {
        place->core = std::make_shared<Core>(surroundings, memory);
    });
}

ArtworkProvider::~ArtworkProvider() {
    _executor->post([place = std::move(_place)] { place->core.reset(); });
}

namespace {
std::shared_ptr<ArtworkProvider> &sharedProvider() {
    static std::shared_ptr<ArtworkProvider> provider;
    return provider;
}
} // namespace

std::shared_ptr<ArtworkProvider> ArtworkProvider::shared() {
    return sharedProvider();
}

void ArtworkProvider::setShared(std::shared_ptr<ArtworkProvider> provider) {
    sharedProvider() = std::move(provider);
}

QString ArtworkProvider::key(const ArtworkRef &ref, double size) {
    const QString name = match(
        ref, [](const ArtworkRef::None &) { return u"n"_s; },
        [](const ArtworkRef::Url &url) { return u"u:"_s + url.text; },
        [](const ArtworkRef::AppleMusic &music) { return u"a:"_s + music.persistentID; },
        [](const ArtworkRef::Mosaic &mosaic) {
            return u"m:"_s + mosaic.trackIds.first(std::min(tilesOfMosaic, mosaic.trackIds.size())).join(u',');
        });
    return name + u'@' + QString::number(static_cast<qint64>(size));
}

QImage ArtworkProvider::cachedImage(const ArtworkRef &ref, double size) const {
    return _memory->image(key(ref, size));
}

QCoro::Task<QImage> ArtworkProvider::image(ArtworkRef ref, double size, std::stop_token stop) {
    const bool needsLibrary = caseOf<ArtworkRef::AppleMusic>(ref) || caseOf<ArtworkRef::Mosaic>(ref);
    const bool mayRead = needsLibrary && _mayReadLibrary && _mayReadLibrary();
    auto answer = std::make_shared<OneShot<QImage>>(gone());
    const auto future = answer->future();
    _executor->post([place = _place, answer = std::move(answer), ref = std::move(ref), size, mayRead, stop] {
        place->core->image(ref, size, mayRead, stop, answer);
    });
    QImage image;
    try {
        image = co_await future;
    } catch (const Cancelled &) {
        // No picture, be it for a failure or for the provider's end.
    }
    co_return stop.stop_requested() ? QImage() : image;
}

QCoro::Task<bool> ArtworkProvider::iTunesLibraryAvailable() {
    auto answer = std::make_shared<OneShot<bool>>(gone());
    const auto future = answer->future();
    _executor->post(
        [place = _place, answer = std::move(answer)] { answer->fulfil(place->core->iTunesLibraryAvailable()); });
    const bool isAvailable = co_await future;
    co_return isAvailable;
}

} // namespace zelk
