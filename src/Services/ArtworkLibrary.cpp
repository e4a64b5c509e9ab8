#include "Services/ArtworkLibrary.h"

#include <charconv>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

std::optional<quint64> numberOf(const QString &text, int radix) {
    const QByteArray digits = text.toLatin1();
    quint64 number = 0;
    const auto parsed = std::from_chars(digits.begin(), digits.end(), number, radix);
    if (parsed.ec != std::errc() || parsed.ptr != digits.end())
        return std::nullopt;
    return number;
}

} // namespace

ArtworkLibrary::ArtworkLibrary(Opener open, Logger logger) : _open(std::move(open)), _logger(std::move(logger)) {}

MusicLibrary *ArtworkLibrary::ensureLibrary() {
    if (_state != State::notTried)
        return _library.get();
    try {
        _library = _open();
    } catch (const MusicLibraryError &failure) {
        _logger.error(u"iTunesLibrary unavailable: %1"_s.arg(QString::fromUtf8(failure.what())));
    }
    _iTunesLibraryAvailable = _library != nullptr;
    _state = _library ? State::present : State::failed;
    return _library.get();
}

void ArtworkLibrary::ensureIndex() {
    if (_indexedLibrary)
        return;
    const MusicLibrary *const library = ensureLibrary();
    if (!library)
        return;
    _indexedLibrary = true;
    _itemsByPersistentID.reserve(static_cast<qsizetype>(library->allMediaItems().size()));
    for (const MusicLibrary::MediaItem &item : library->allMediaItems())
        _itemsByPersistentID.insert(item.persistentID, &item);
}

const MusicLibrary::MediaItem *ArtworkLibrary::mediaItem(const QString &persistentID) const {
    for (const int radix : {16, 10}) {
        if (const auto number = numberOf(persistentID, radix)) {
            if (const auto *const item = _itemsByPersistentID.value(*number))
                return item;
        }
    }
    return nullptr;
}

QByteArray ArtworkLibrary::artworkData(const QString &persistentID) {
    ensureIndex();
    const MusicLibrary::MediaItem *const item = mediaItem(persistentID);
    return item ? _library->artworkData(*item) : QByteArray();
}

} // namespace zelk
