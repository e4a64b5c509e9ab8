#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>
#include <vector>

namespace zelk {

/// One update that a feed announces.
struct AppcastItem {
    QString version{};      ///< what is ordered, never empty; see `compareVersions`
    QString shortVersion{}; ///< what a person reads, one line; `version` where the feed has none
    QUrl url{};             ///< of the file
    qint64 length = 0;      ///< of the file in bytes, positive
    QByteArray signature{}; ///< Ed25519 over the whole file, 64 bytes; empty when there is none, or none of that size
    QString notes{};        ///< what is new, as the feed has it: text or HTML; empty when there is nothing
    QUrl notesUrl{};        ///< where what is new can be read, if the feed says it elsewhere; else empty
    bool operator==(const AppcastItem &) const = default;
};

/// Reads an appcast: RSS 2.0 with the namespace `http://www.andymatuschak.org/xml-namespaces/sparkle` (the format that
/// the Sparkle project documents at https://sparkle-project.org/documentation/publishing/). Of each `item` in `channel`
/// it takes
///   - `sparkle:version` and `sparkle:shortVersionString`, as elements or as attributes of the `enclosure`;
///   - `enclosure` with `url`, `length`, and `sparkle:edSignature` in base64;
///   - `description`, and `sparkle:releaseNotesLink`; of several in different languages the first.
/// Left out are items without an `enclosure`, an ordered version or a positive length, items of a `sparkle:channel`,
/// which are for those who asked for them, and items whose enclosure names a `sparkle:os` other than "linux".
///
/// Throws `UpdateError` for what is no appcast. A document type is refused, and with it every entity of the feed's own.
std::vector<AppcastItem> readAppcast(const QByteArray &xml);

/// The newest item that is strictly newer than `current`; of equals the first.
std::optional<AppcastItem> newestAbove(const QString &current, const std::vector<AppcastItem> &items);

} // namespace zelk
