#pragma once

#include <QCache>
#include <QImage>
#include <QString>

#include <mutex>

namespace zelk {

/// Decoded pictures by key, the least recently used of them dropped when they cost too much. Any thread may ask: apart
/// from the executors it is the one thing in the program that several threads share, so it does nothing else.
class ArtworkCache {
public:
    /// `totalCostLimit` in bytes; a picture costs its width times its height times 4.
    explicit ArtworkCache(qsizetype totalCostLimit) : _images(totalCostLimit) {}

    /// Null when there is none.
    QImage image(const QString &key) const {
        const std::scoped_lock lock(_mutex);
        const QImage *const found = _images.object(key);
        return found ? *found : QImage();
    }

    /// Replaces what the key stood for. A picture beyond the limit is not kept.
    void insert(const QString &key, const QImage &image) {
        const qsizetype cost = qsizetype{4} * image.width() * image.height();
        const std::scoped_lock lock(_mutex);
        _images.insert(key, new QImage(image), cost); // the cache owns it
    }

private:
    mutable std::mutex _mutex;
    QCache<QString, QImage> _images;
};

} // namespace zelk
