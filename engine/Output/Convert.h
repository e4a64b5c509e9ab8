#pragma once

#include "Library/AudioFile.h"

#include <QString>

#include <chrono>
#include <stdexcept>
#include <stop_token>

namespace zelk::engine {

/// The form in which a file goes into the output folder.
struct TargetForm {
    QString extension; ///< Without dot.
    QString format;    ///< As shown.
    bool converted = false;
};

/// What the DJ application can't read becomes AIFF if it is lossless and MP3 if it isn't; the rest stays as it is.
TargetForm targetFormOf(const AudioFile &source);

/// The conversion failed. what() is a sentence in UTF-8 that says what to do.
class ConversionFailed : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The converter can't read the file, and won't as long as the file is what it is.
class SourceUnsound : public ConversionFailed {
public:
    using ConversionFailed::ConversionFailed;
};

/// The ffmpeg program, or an empty text if there is none on the PATH.
QString ffmpegProgram();

/// How long a conversion may take before the converter counts as hanging: as long as the track plays, which is many
/// times what it needs, and some seconds to get going.
std::chrono::milliseconds conversionPatience(const AudioFile &source);

/// Converts into a new file of the form that targetFormOf gives. The converter ends with this process, however that
/// ends. Throws ConversionFailed, FileProblem where the disk is full, or Stopped; nothing is then left at `to`.
void convertAudio(const AudioFile &source, const QString &to, std::stop_token stop, std::chrono::milliseconds patience);

} // namespace zelk::engine
