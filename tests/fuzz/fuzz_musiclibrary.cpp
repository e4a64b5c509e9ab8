// The Music app's exported library, as the window reads it for its covers. The input is the file.
#include "Fuzzing.h"

#include "Platform/MusicLibraryExport.h"

#include <QBuffer>
#include <QDir>

#include <optional>

namespace zelk::fuzz {

namespace {

/// Hands out a few bytes at a time, as a file on a slow disk may.
class Trickle : public QBuffer {
public:
    using QBuffer::QBuffer;

protected:
    qint64 readData(char *data, qint64 size) override { return QBuffer::readData(data, std::min<qint64>(size, 61)); }
};

/// None for what is no library.
template<class Device>
std::optional<std::vector<MusicLibrary::MediaItem>> itemsOf(QByteArray bytes) {
    Device device(&bytes);
    device.open(QIODevice::ReadOnly);
    try {
        return readMusicLibraryExport(device);
    } catch (const MusicLibraryError &failure) {
        holds(*failure.what(), "a refusal says why");
        return std::nullopt;
    }
}

bool isSame(const MusicLibrary::MediaItem &a, const MusicLibrary::MediaItem &b) {
    return a.persistentID == b.persistentID && a.file == b.file;
}

} // namespace

void fuzz(QByteArrayView input) {
    const auto items = itemsOf<QBuffer>(input.toByteArray());
    const auto slowly = itemsOf<Trickle>(input.toByteArray());
    holds(items.has_value() == slowly.has_value(), "whether it is a library doesn't depend on how its bytes arrive");
    if (!items)
        return;
    holds(std::ranges::equal(*items, *slowly, isSame), "nor do its items");
    for (const auto &item : *items) {
        holds(item.file.isEmpty() || QDir::isAbsolutePath(item.file), "a file is named by its whole path");
        holds(!item.file.contains(QChar::Null), "a path ends where it ends for the system, too");
    }
    if (const auto end = input.lastIndexOf(QByteArrayView("</plist")); end >= 0)
        holds(!itemsOf<QBuffer>(input.first(end).toByteArray()), "half a file is no library");
}

} // namespace zelk::fuzz
