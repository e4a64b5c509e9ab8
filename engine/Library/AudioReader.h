#pragma once

#include "Library/AudioFile.h"

#include <QByteArray>

#include <optional>
#include <stdexcept>

namespace zelk::engine {

/// A file that isn't audio, or not whole. what() is a phrase in UTF-8, such as "it is empty".
class NotAudio : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Whether a file of this name may be audio, by its extension.
bool hasAudioName(const QString &name);

/// Reads tags and stream of one file; where the tags are silent, title and artist come from the file's name. Throws
/// NotAudio, also for a file that is empty, cut off or gone.
AudioFile readAudio(const QString &path);

/// The artist and title that a file's name gives: "01 - Artist - Title.flac".
void takeFromName(const QString &path, AudioFile &file);

/// Size and time of change; nothing if there is no such regular file.
struct FileStamp {
    qint64 size = 0;
    qint64 modifiedMs = 0;
    bool operator==(const FileStamp &) const = default;
};
std::optional<FileStamp> stampOf(const QString &path);

} // namespace zelk::engine
