#include "Library/AudioReader.h"

#include "Library/AudioKind.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <fileref.h>
#include <mpegfile.h>
#include <sys/stat.h>
#include <tpropertymap.h>
#include <xingheader.h>

#include <cerrno>
#include <cstring>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// How much of its announced bytes a stream may lack before it counts as cut off: taggers and rippers are sloppy by a
/// frame or two.
constexpr double wholeShare = 0.95;

/// A tag may hold megabytes, and none of it is shown or compared beyond this.
constexpr qsizetype longestTag = 1'000;

/// What a tag says, without control characters, cut where it is longer than any name.
QString textOf(const TagLib::String &tag) {
    QString text = QString::fromStdString(tag.substr(0, 4 * longestTag).to8Bit(true));
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control) {
            c = u' ';
        }
    }
    text = text.simplified().left(longestTag);
    if (text.endsWith(QChar::ReplacementCharacter) || (!text.isEmpty() && text.back().isHighSurrogate())) {
        text.chop(1); // the cut went through a character
    }
    return text;
}

QString property(const TagLib::PropertyMap &properties, const char *key) {
    const auto found = properties.find(key);
    return found == properties.end() || found->second.isEmpty() ? QString() : textOf(found->second.toString(", "));
}

/// MP3 streams that say how long they are may be shorter; the other formats' readers notice by themselves.
bool isCutOff(TagLib::File *file, qint64 size) {
    const auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(file);
    const auto *xing = mpeg ? mpeg->audioProperties()->xingHeader() : nullptr;
    return xing && xing->isValid() && xing->totalSize() > 0 &&
           static_cast<double>(size) < wholeShare * static_cast<double>(xing->totalSize());
}

} // namespace

bool hasAudioName(const QString &name) {
    static const QSet<QString> extensions = {u"mp3"_s, u"flac"_s, u"wav"_s, u"wave"_s, u"aif"_s, u"aiff"_s, u"aifc"_s,
                                             u"m4a"_s, u"m4b"_s,  u"mp4"_s, u"aac"_s,  u"ogg"_s, u"oga"_s,  u"opus"_s,
                                             u"spx"_s, u"wma"_s,  u"ape"_s, u"wv"_s,   u"tta"_s, u"mpc"_s};
    return extensions.contains(name.section(u'.', -1).toLower()) && name.contains(u'.');
}

std::optional<FileStamp> stampOf(const QString &path) {
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return FileStamp{status.st_size, status.st_mtim.tv_sec * qint64(1'000) + status.st_mtim.tv_nsec / 1'000'000};
}

void takeFromName(const QString &path, AudioFile &file) {
    static const QRegularExpression trackNumber(u"^(?:\\d{1,2}[-.])?\\d{1,3}(?:[ ._-]+)(?=\\S)"_s);
    QString name = QFileInfo(path).completeBaseName();
    if (!name.contains(u' ')) {
        name.replace(u'_', u' ');
    }
    const QString numberless = QString(name).remove(trackNumber);
    QStringList parts = (numberless.isEmpty() ? name : numberless).split(u" - "_s, Qt::SkipEmptyParts);
    if (parts.isEmpty()) {
        parts = QStringList{name};
    }
    if (file.artist.isEmpty() && parts.size() > 1) {
        file.artist = parts.first().simplified();
    }
    if (file.title.isEmpty()) {
        file.title = (parts.size() > 1 ? parts.mid(1).join(u" - "_s) : parts.first()).simplified();
    }
}

AudioFile readAudio(const QString &path) {
    errno = 0;
    const auto stamp = stampOf(path);
    if (!stamp) {
        throw NotAudio(errno == 0 ? "it isn't a file" : std::strerror(errno));
    }
    if (stamp->size == 0) {
        throw NotAudio("it is empty");
    }
    const QByteArray name = QFile::encodeName(path);
    if (QFile probe(path); !probe.open(QIODevice::ReadOnly)) {
        throw NotAudio(probe.errorString().toStdString());
    }
    const TagLib::FileRef reference(name.constData(), true, TagLib::AudioProperties::Average);
    TagLib::File *file = reference.file();
    const TagLib::AudioProperties *properties = reference.audioProperties();
    if (reference.isNull() || !file || !file->isValid() || !properties) {
        throw NotAudio("it can't be read as audio");
    }
    AudioFile audio;
    audio.path = path;
    audio.size = stamp->size;
    audio.modifiedMs = stamp->modifiedMs;
    const AudioKind kind = kindOf(*file);
    audio.format = kind.format;
    audio.lossless = kind.lossless;
    audio.bitrateKbps = properties->bitrate();
    audio.durationSec = properties->lengthInMilliseconds() / 1'000.0;
    if (audio.format.isEmpty() || audio.durationSec <= 0) {
        throw NotAudio("it holds no sound, or is cut off");
    }
    if (isCutOff(file, stamp->size)) {
        throw NotAudio("it is cut off");
    }
    const TagLib::PropertyMap tags = file->properties();
    audio.title = property(tags, "TITLE");
    audio.artist = property(tags, "ARTIST");
    audio.album = property(tags, "ALBUM");
    audio.isrc = property(tags, "ISRC");
    if (audio.title.isEmpty() || audio.artist.isEmpty()) {
        takeFromName(path, audio);
    }
    return audio;
}

} // namespace zelk::engine
