#include "Library/AudioKind.h"

#include <QSet>

#include <aifffile.h>
#include <apefile.h>
#include <asffile.h>
#include <flacfile.h>
#include <mp4file.h>
#include <mpcfile.h>
#include <mpegfile.h>
#include <oggflacfile.h>
#include <opusfile.h>
#include <speexfile.h>
#include <trueaudiofile.h>
#include <vorbisfile.h>
#include <wavfile.h>
#include <wavpackfile.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

using TagLib::ByteVector;

/// More boxes than any sound file has on one level; a hostile one may be made of nothing else.
constexpr int mostBoxes = 10'000;

/// The boxes of one level of an MP4 file (ISO/IEC 14496-12, 4.2), between two places in it.
class Boxes {
public:
    Boxes(TagLib::File &file, long from, long to) : _file(file), _next(from), _end(to) {}

    /// Goes on to the next box of that type, and says whether there is one.
    bool find(const char *type) {
        while (_count++ < mostBoxes && _end - _next >= shortHead) {
            _file.seek(_next);
            const ByteVector head = _file.readBlock(longHead);
            if (head.size() < shortHead) {
                return false;
            }
            const auto size = static_cast<long>(head.toUInt(0U));
            const bool isLong = size == 1 && head.size() == longHead;
            _begin = _next + (isLong ? longHead : shortHead);
            _next = isLong      ? _next + head.toLongLong(8U)
                    : size == 0 ? _end // to the end of the file
                                : _next + size;
            if (_next < _begin || _next > _end) {
                return false;
            }
            if (head.mid(4, 4) == ByteVector(type, 4)) {
                return true;
            }
        }
        return false;
    }

    Boxes inside() const { return {_file, _begin, _next}; }
    ByteVector bytes(long offset, unsigned count) const {
        _file.seek(_begin + offset);
        return _file.readBlock(count);
    }

private:
    static constexpr int shortHead = 8;
    static constexpr int longHead = 16;

    TagLib::File &_file;
    long _next;
    long _end;
    long _begin = 0;
    int _count = 0;
};

bool hasPictureTrack(TagLib::File &file) {
    Boxes whole(file, 0, file.length());
    if (!whole.find("moov")) {
        return false;
    }
    for (Boxes tracks = whole.inside(); tracks.find("trak");) {
        Boxes track = tracks.inside();
        if (!track.find("mdia")) {
            continue;
        }
        Boxes media = track.inside();
        // A full box: version and flags, a reserved word, then what handles the track.
        if (media.find("hdlr") && media.bytes(8, 4) == ByteVector("vide", 4)) {
            return true;
        }
    }
    return false;
}

AudioKind kindOfMp4(TagLib::MP4::File &file) {
    const auto codec = file.audioProperties()->codec();
    const bool lossless = codec == TagLib::MP4::Properties::ALAC;
    if (codec == TagLib::MP4::Properties::Unknown || hasPictureTrack(file)) {
        return {u"MP4"_s, lossless};
    }
    return {lossless ? u"ALAC"_s : u"AAC"_s, lossless};
}

/// Plain samples: whole numbers or floating-point ones.
AudioKind kindOfWav(const TagLib::RIFF::WAV::File &file) {
    constexpr int pcm = 1;
    constexpr int floats = 3;
    const int format = file.audioProperties()->format();
    const bool plain = format == pcm || format == floats;
    return {plain ? u"WAV"_s : u"compressed WAV"_s, plain};
}

AudioKind kindOfAiff(const TagLib::RIFF::AIFF::File &file) {
    static const QSet<QByteArray> plainSamples = {"NONE", "sowt", "twos", "raw ", "in24",
                                                  "in32", "fl32", "FL32", "fl64", "FL64"};
    const ByteVector type = file.audioProperties()->compressionType();
    const bool plain = !file.audioProperties()->isAiffC() ||
                       plainSamples.contains(QByteArray(type.data(), static_cast<qsizetype>(type.size())));
    return {plain ? u"AIFF"_s : u"compressed AIFF"_s, plain};
}

} // namespace

AudioKind kindOf(TagLib::File &file) {
    if (auto *mp4 = dynamic_cast<TagLib::MP4::File *>(&file)) {
        return kindOfMp4(*mp4);
    }
    if (const auto *wav = dynamic_cast<TagLib::RIFF::WAV::File *>(&file)) {
        return kindOfWav(*wav);
    }
    if (const auto *aiff = dynamic_cast<TagLib::RIFF::AIFF::File *>(&file)) {
        return kindOfAiff(*aiff);
    }
    if (const auto *asf = dynamic_cast<TagLib::ASF::File *>(&file)) {
        return {u"WMA"_s, asf->audioProperties()->codec() == TagLib::ASF::Properties::WMA9Lossless};
    }
    if (const auto *wavPack = dynamic_cast<TagLib::WavPack::File *>(&file)) {
        return {u"WavPack"_s, wavPack->audioProperties()->isLossless()};
    }
    return dynamic_cast<TagLib::FLAC::File *>(&file)          ? AudioKind{u"FLAC"_s, true}
           : dynamic_cast<TagLib::MPEG::File *>(&file)        ? AudioKind{u"MP3"_s, false}
           : dynamic_cast<TagLib::Ogg::Opus::File *>(&file)   ? AudioKind{u"Opus"_s, false}
           : dynamic_cast<TagLib::Ogg::FLAC::File *>(&file)   ? AudioKind{u"Ogg FLAC"_s, true}
           : dynamic_cast<TagLib::Ogg::Vorbis::File *>(&file) ? AudioKind{u"Ogg"_s, false}
           : dynamic_cast<TagLib::Ogg::Speex::File *>(&file)  ? AudioKind{u"Speex"_s, false}
           : dynamic_cast<TagLib::APE::File *>(&file)         ? AudioKind{u"APE"_s, true}
           : dynamic_cast<TagLib::TrueAudio::File *>(&file)   ? AudioKind{u"TTA"_s, true}
           : dynamic_cast<TagLib::MPC::File *>(&file)         ? AudioKind{u"Musepack"_s, false}
                                                              : AudioKind{};
}

} // namespace zelk::engine
