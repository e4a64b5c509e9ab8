#pragma once

#include "Services/ArtworkDisk.h"
#include "Services/ArtworkProvider.h"
#include "Support/Await.h"
#include "Support/ManualClock.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>

#include <atomic>

namespace zelk {

// A music library of IDs and covers, in their order.
struct Shelf {
    struct Item {
        quint64 id;
        QByteArray cover;
    };
    std::vector<Item> items;
    bool canBeOpened = true;
    std::atomic_int opened = 0;
    std::atomic_int coversRead = 0;

    std::unique_ptr<MusicLibrary> open() {
        ++opened;
        if (!canBeOpened)
            throw MusicLibraryError(QStringLiteral("there is no library"));
        return std::make_unique<Library>(*this);
    }

private:
    class Library final : public MusicLibrary {
    public:
        explicit Library(Shelf &shelf) : _shelf(shelf) {
            for (std::size_t i = 0; i < shelf.items.size(); ++i)
                _items.push_back({shelf.items[i].id, QString::number(i)});
        }
        const std::vector<MediaItem> &allMediaItems() const override { return _items; }
        QByteArray artworkData(const MediaItem &item) const override {
            ++_shelf.coversRead;
            return _shelf.items[item.file.toULong()].cover;
        }

    private:
        Shelf &_shelf;
        std::vector<MediaItem> _items;
    };
};

// A provider with a caches folder, a clock and a library of its own.
class ArtworkBench {
public:
    ArtworkBench() { restart(); }
    ~ArtworkBench() { close(); }
    Q_DISABLE_COPY_MOVE(ArtworkBench)

    // As after another launch: nothing but the folder is left.
    void restart() {
        close();
        provider = std::make_shared<ArtworkProvider>(
            ArtworkProvider::Surroundings{.cachesFolder = caches.path(),
                                          .clock = clock,
                                          .wallTime = [this] { return now; },
                                          .openLibrary = [this] { return shelf.open(); },
                                          .mayReadLibrary = [this] { return isAllowed; }});
        settle();
    }

    QImage image(const ArtworkRef &ref, double size) { return outcomeOf(provider->image(ref, size)).value.value(); }
    // Runs until what was asked for before is done.
    bool settle() { return outcomeOf(provider->iTunesLibraryAvailable()).value.value(); }

    QString folder() const { return caches.filePath(QStringLiteral("orrim.zelk/artwork")); }
    QString fileOf(const QString &key) const { return folder() + u'/' + ArtworkDisk::fileName(key); }
    QStringList files() const { return QDir(folder()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    static QByteArray contents(const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void write(const QString &path, const QByteArray &bytes) {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s can't be written", qPrintable(path));
    }

    QTemporaryDir caches;
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    QDateTime now = QDateTime::fromSecsSinceEpoch(1'700'000'000);
    Shelf shelf;
    bool isAllowed = true;
    std::shared_ptr<ArtworkProvider> provider;

private:
    // The library's shelf is used until the provider's thread has let go of it.
    void close() {
        if (!provider)
            return;
        settle();
        provider.reset();
    }
};

} // namespace zelk
