#include "Platform/EmbeddedCover.h"

#include <QFile>
#include <QFileInfo>

#include <aifffile.h>
#include <attachedpictureframe.h>
#include <fileref.h>
#include <flacfile.h>
#include <flacpicture.h>
#include <id3v2tag.h>
#include <mp4coverart.h>
#include <mp4file.h>
#include <mpegfile.h>
#include <wavfile.h>
#include <xiphcomment.h>

namespace zelk {

namespace {

constexpr unsigned int largestCover = 64 << 20;

QByteArray bytesOf(const TagLib::ByteVector &data) {
    return data.size() > largestCover ? QByteArray() : QByteArray(data.data(), static_cast<qsizetype>(data.size()));
}

QByteArray id3Cover(const TagLib::ID3v2::Tag *tag) {
    using Picture = TagLib::ID3v2::AttachedPictureFrame;
    if (!tag)
        return {};
    const Picture *found = nullptr;
    for (const TagLib::ID3v2::Frame *frame : tag->frameList("APIC")) {
        const auto *picture = dynamic_cast<const Picture *>(frame);
        if (!picture || picture->picture().isEmpty())
            continue;
        if (!found || (picture->type() == Picture::FrontCover && found->type() != Picture::FrontCover))
            found = picture;
    }
    return found ? bytesOf(found->picture()) : QByteArray();
}

QByteArray flacCover(const TagLib::List<TagLib::FLAC::Picture *> &pictures) {
    using Picture = TagLib::FLAC::Picture;
    const Picture *found = nullptr;
    for (const Picture *picture : pictures) {
        if (picture->data().isEmpty())
            continue;
        if (!found || (picture->type() == Picture::FrontCover && found->type() != Picture::FrontCover))
            found = picture;
    }
    return found ? bytesOf(found->data()) : QByteArray();
}

QByteArray mp4Cover(TagLib::MP4::Tag *tag) {
    if (!tag || !tag->contains("covr"))
        return {};
    const TagLib::MP4::CoverArtList covers = tag->item("covr").toCoverArtList();
    return covers.isEmpty() ? QByteArray() : bytesOf(covers.front().data());
}

} // namespace

QByteArray embeddedCover(const QString &file) {
    // Not a pipe, which would hold up its reader for good.
    if (file.isEmpty() || !QFileInfo(file).isFile())
        return {};
    const QByteArray name = QFile::encodeName(file);
    const TagLib::FileRef reference(name.constData(), false);
    TagLib::File *const audio = reference.file();
    if (!audio || !audio->isValid())
        return {};
    if (auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(audio))
        return id3Cover(mpeg->ID3v2Tag());
    if (const auto *mp4 = dynamic_cast<TagLib::MP4::File *>(audio))
        return mp4Cover(mp4->tag());
    if (auto *flac = dynamic_cast<TagLib::FLAC::File *>(audio))
        return flacCover(flac->pictureList());
    if (const auto *wav = dynamic_cast<TagLib::RIFF::WAV::File *>(audio))
        return id3Cover(wav->ID3v2Tag());
    if (const auto *aiff = dynamic_cast<TagLib::RIFF::AIFF::File *>(audio))
        return id3Cover(aiff->tag());
    if (auto *comment = dynamic_cast<TagLib::Ogg::XiphComment *>(audio->tag()))
        return flacCover(comment->pictureList());
    return {};
}

} // namespace zelk
