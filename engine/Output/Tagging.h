#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace zelk::engine {

/// What a written file says of itself. An empty text leaves the file's own tag as it is.
struct Tags {
    QString title;
    QString artist;
    QString album;
};

struct Cover {
    QByteArray bytes;
    QString mimeType;
};

/// Larger pictures are scans, and would be copied into every file.
inline constexpr qint64 largestCover = 5'000'000;

/// A picture that players show, by what its bytes say: JPEG or PNG of sensible size. Nothing for anything else.
std::optional<Cover> coverOf(const QByteArray &bytes);

/// The front cover in an audio file's own tags, or its first picture.
std::optional<Cover> coverIn(const QString &audioPath);

/// The picture that lies beside an audio file as its folder's cover.
std::optional<Cover> coverBeside(const QString &audioPath);

/// The cover that an audio file comes with: its own, or else the one beside it.
std::optional<Cover> coverWith(const QString &audioPath);

/// Writes the tags into a file, and the cover if the file has none of its own. Other tags stay. Throws FileProblem with
/// EIO, or with what the file system said, if the file can't be changed.
void writeTags(const QString &path, const Tags &tags, const std::optional<Cover> &cover);

/// Whether the file says all that; of texts that a format changes, that they are there.
bool hasTags(const QString &path, const Tags &tags);

} // namespace zelk::engine
