#pragma once

#include <QString>

namespace TagLib {
class File;
}

namespace zelk::engine {

/// What an audio file holds, told by its stream and not by its name.
struct AudioKind {
    QString format; ///< As shown; empty if TagLib knows it and we don't.
    bool lossless = false;
};

/// A container may hold sound of many kinds. Where it is another than that which its usual format means, the format is
/// another too: "MP4" for anything but AAC and ALAC, or beside a picture track; "compressed WAV" and "compressed AIFF"
/// for anything but plain samples. Moves the file's read position.
AudioKind kindOf(TagLib::File &file);

} // namespace zelk::engine
