// Where the pictures come from that tagging writes.
#include "Output/Tagging.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <aifffile.h>
#include <attachedpictureframe.h>
#include <fileref.h>
#include <flacfile.h>
#include <id3v2tag.h>
#include <mp4coverart.h>
#include <mp4file.h>
#include <mp4tag.h>
#include <mpegfile.h>
#include <wavfile.h>
#include <xiphcomment.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

std::optional<Cover> coverOfTag(const TagLib::ByteVector &bytes) {
    return coverOf(QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

/// The front cover, or the first picture of another kind.
template<class Pictures, class Bytes, class IsFront>
std::optional<Cover> pick(const Pictures &pictures, Bytes bytesOf, IsFront isFront) {
    std::optional<Cover> first;
    for (const auto &picture : pictures) {
        const auto cover = coverOfTag(bytesOf(picture));
        if (cover && isFront(picture)) {
            return cover;
        }
        if (cover && !first) {
            first = cover;
        }
    }
    return first;
}

std::optional<Cover> id3Cover(const TagLib::ID3v2::Tag *tag) {
    using Frame = TagLib::ID3v2::AttachedPictureFrame;
    std::vector<const Frame *> frames;
    if (tag) {
        for (const auto *frame : tag->frameList("APIC")) {
            if (const auto *picture = dynamic_cast<const Frame *>(frame)) {
                frames.push_back(picture);
            }
        }
    }
    return pick(
        frames, [](const Frame *frame) { return frame->picture(); },
        [](const Frame *frame) { return frame->type() == Frame::FrontCover; });
}

std::optional<Cover> flacCover(const TagLib::List<TagLib::FLAC::Picture *> &pictures) {
    return pick(
        pictures, [](const TagLib::FLAC::Picture *picture) { return picture->data(); },
        [](const TagLib::FLAC::Picture *picture) { return picture->type() == TagLib::FLAC::Picture::FrontCover; });
}

} // namespace

std::optional<Cover> coverOf(const QByteArray &bytes) {
    if (bytes.size() > largestCover) {
        return std::nullopt;
    }
    return bytes.startsWith("\xFF\xD8\xFF")        ? std::optional(Cover{bytes, u"image/jpeg"_s})
           : bytes.startsWith("\x89PNG\r\n\x1A\n") ? std::optional(Cover{bytes, u"image/png"_s})
                                                   : std::nullopt;
}

std::optional<Cover> coverIn(const QString &audioPath) {
    const TagLib::FileRef reference(QFile::encodeName(audioPath).constData(), false);
    TagLib::File *file = reference.file();
    if (reference.isNull() || !file) {
        return std::nullopt;
    }
    if (auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(file)) {
        return id3Cover(mpeg->ID3v2Tag());
    }
    if (auto *wav = dynamic_cast<TagLib::RIFF::WAV::File *>(file)) {
        return id3Cover(wav->ID3v2Tag());
    }
    if (auto *aiff = dynamic_cast<TagLib::RIFF::AIFF::File *>(file)) {
        return id3Cover(aiff->tag());
    }
    if (auto *flac = dynamic_cast<TagLib::FLAC::File *>(file)) {
        return flacCover(flac->pictureList());
    }
    if (auto *xiph = dynamic_cast<TagLib::Ogg::XiphComment *>(file->tag())) {
        return flacCover(xiph->pictureList());
    }
    if (auto *mp4 = dynamic_cast<TagLib::MP4::File *>(file); mp4 && mp4->tag()) {
        return pick(
            mp4->tag()->item("covr").toCoverArtList(), [](const TagLib::MP4::CoverArt &cover) { return cover.data(); },
            [](const TagLib::MP4::CoverArt &) { return true; });
    }
    return std::nullopt;
}

std::optional<Cover> coverBeside(const QString &audioPath) {
    const QDir folder = QFileInfo(audioPath).absoluteDir();
    for (const QString &name : {u"cover.jpg"_s, u"folder.jpg"_s, u"cover.jpeg"_s, u"front.jpg"_s, u"cover.png"_s,
                                u"folder.png"_s, u"front.png"_s}) {
        for (const QString &spelling : {name, QString(name).replace(0, 1, name.left(1).toUpper())}) {
            QFile file(folder.filePath(spelling));
            if (!QFileInfo(file).isFile() || file.size() > largestCover || !file.open(QIODevice::ReadOnly)) {
                continue;
            }
            if (const auto cover = coverOf(file.read(largestCover + 1))) {
                return cover;
            }
        }
    }
    return std::nullopt;
}

std::optional<Cover> coverWith(const QString &audioPath) {
    std::optional<Cover> cover = coverIn(audioPath);
    return cover ? cover : coverBeside(audioPath);
}

} // namespace zelk::engine
