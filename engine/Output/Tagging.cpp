#include "Output/Tagging.h"

#include "Files/FileProblem.h"

#include <QFile>

#include <aifffile.h>
#include <attachedpictureframe.h>
#include <cerrno>
#include <fileref.h>
#include <flacfile.h>
#include <flacpicture.h>
#include <id3v2tag.h>
#include <mp4coverart.h>
#include <mp4file.h>
#include <mp4tag.h>
#include <mpegfile.h>
#include <tpropertymap.h>
#include <wavfile.h>
#include <xiphcomment.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

TagLib::String tagText(const QString &text) {
    return TagLib::String(text.toUtf8().toStdString(), TagLib::String::UTF8);
}

TagLib::ByteVector tagBytes(const QByteArray &bytes) {
    return TagLib::ByteVector(bytes.constData(), static_cast<unsigned int>(bytes.size()));
}

void addId3Cover(TagLib::ID3v2::Tag *tag, const Cover &cover) {
    if (!tag || !tag->frameList("APIC").isEmpty()) {
        return;
    }
    auto *frame = new TagLib::ID3v2::AttachedPictureFrame; // the tag owns it
    frame->setType(TagLib::ID3v2::AttachedPictureFrame::FrontCover);
    frame->setMimeType(tagText(cover.mimeType));
    frame->setPicture(tagBytes(cover.bytes));
    tag->addFrame(frame);
}

TagLib::FLAC::Picture *pictureOf(const Cover &cover) {
    auto *picture = new TagLib::FLAC::Picture;
    picture->setType(TagLib::FLAC::Picture::FrontCover);
    picture->setMimeType(tagText(cover.mimeType));
    picture->setData(tagBytes(cover.bytes));
    return picture;
}

void addCover(TagLib::File *file, const Cover &cover) {
    if (auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(file)) {
        addId3Cover(mpeg->ID3v2Tag(true), cover);
    } else if (auto *wav = dynamic_cast<TagLib::RIFF::WAV::File *>(file)) {
        addId3Cover(wav->ID3v2Tag(), cover);
    } else if (auto *aiff = dynamic_cast<TagLib::RIFF::AIFF::File *>(file)) {
        addId3Cover(aiff->tag(), cover);
    } else if (auto *flac = dynamic_cast<TagLib::FLAC::File *>(file)) {
        if (flac->pictureList().isEmpty()) {
            flac->addPicture(pictureOf(cover)); // the file owns it
        }
    } else if (auto *xiph = dynamic_cast<TagLib::Ogg::XiphComment *>(file->tag())) {
        if (xiph->pictureList().isEmpty()) {
            xiph->addPicture(pictureOf(cover)); // the tag owns it
        }
    } else if (auto *mp4 = dynamic_cast<TagLib::MP4::File *>(file);
               mp4 && mp4->tag() && !mp4->tag()->contains("covr")) {
        const auto format = cover.mimeType == "image/png"_L1 ? TagLib::MP4::CoverArt::PNG : TagLib::MP4::CoverArt::JPEG;
        TagLib::MP4::CoverArtList covers;
        covers.append(TagLib::MP4::CoverArt(format, tagBytes(cover.bytes)));
        mp4->tag()->setItem("covr", covers);
    }
}

} // namespace

void writeTags(const QString &path, const Tags &tags, const std::optional<Cover> &cover) {
    errno = 0;
    const QByteArray name = QFile::encodeName(path);
    TagLib::FileRef reference(name.constData(), false);
    if (reference.isNull() || reference.file()->readOnly()) {
        throw FileProblem(path, errno == 0 ? EIO : errno);
    }
    TagLib::PropertyMap properties = reference.file()->properties();
    const auto set = [&properties](const char *key, const QString &text) {
        if (!text.isEmpty()) {
            properties.replace(key, TagLib::StringList(tagText(text)));
        }
    };
    set("TITLE", tags.title);
    set("ARTIST", tags.artist);
    set("ALBUM", tags.album);
    reference.file()->setProperties(properties);
    if (cover) {
        addCover(reference.file(), *cover);
    }
    errno = 0;
    if (!reference.save()) {
        throw FileProblem(path, errno == 0 ? EIO : errno);
    }
}

bool hasTags(const QString &path, const Tags &tags) {
    const TagLib::FileRef reference(QFile::encodeName(path).constData(), false);
    if (reference.isNull()) {
        return false;
    }
    const TagLib::PropertyMap properties = reference.file()->properties();
    const auto has = [&properties](const char *key, const QString &text) {
        return text.trimmed().isEmpty() || properties.contains(key);
    };
    return has("TITLE", tags.title) && has("ARTIST", tags.artist) && has("ALBUM", tags.album);
}

} // namespace zelk::engine
