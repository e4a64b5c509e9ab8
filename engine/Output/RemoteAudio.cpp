#include "Output/RemoteAudio.h"

#include "Files/FileProblem.h"
#include "Library/AudioReader.h"
#include "Output/OutputFolder.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// What is needed to tell the formats apart.
constexpr qsizetype headSize = 64;

/// The extension by which taggers know the format, from what the file begins with, since an address needn't have one.
/// Empty if it is no audio that we know.
QString extensionOf(const QByteArray &head) {
    const QByteArray form = head.mid(8, 4);
    if (head.startsWith("OggS")) {
        return head.contains("OpusHead") ? u"opus"_s
               : head.contains("Speex")  ? u"spx"_s
               : head.contains("FLAC")   ? u"oga"_s
                                         : u"ogg"_s;
    }
    const bool isMpeg = head.size() > 2 && head[0] == '\xFF' && (head[1] & 0xE6) == 0xE2;
    return head.startsWith("fLaC")                                    ? u"flac"_s
           : head.startsWith("ID3") || isMpeg                         ? u"mp3"_s
           : head.startsWith("RIFF") && form == "WAVE"                ? u"wav"_s
           : head.startsWith("FORM") && form.startsWith("AIF")        ? u"aiff"_s
           : head.mid(4, 4) == "ftyp"                                 ? u"m4a"_s
           : head.startsWith("MAC ")                                  ? u"ape"_s
           : head.startsWith("wvpk")                                  ? u"wv"_s
           : head.startsWith("TTA")                                   ? u"tta"_s
           : head.startsWith("MP+") || head.startsWith("MPCK")        ? u"mpc"_s
           : head.startsWith(QByteArray::fromHex("3026b2758e66cf11")) ? u"wma"_s
                                                                      : QString();
}

/// A file that is being filled, and that goes unless it is kept.
class Shelf {
public:
    Shelf(QString path, FileOps &ops)
        : _path(std::move(path)), _ops(ops),
          _descriptor(ops.open(QFile::encodeName(_path), O_WRONLY | O_CREAT | O_EXCL, 0600)) {
        if (_descriptor < 0) {
            throw FileProblem(_path, errno);
        }
    }
    ~Shelf() {
        if (_descriptor >= 0) {
            _ops.close(_descriptor);
        }
        _ops.unlink(QFile::encodeName(_path));
    }
    Shelf(const Shelf &) = delete;
    Shelf &operator=(const Shelf &) = delete;

    void write(const QByteArray &bytes) { writeAll(_ops, _descriptor, bytes, _path); }

    /// Closes it and gives it another name.
    void finish(const QString &path) {
        if (_ops.close(std::exchange(_descriptor, -1)) != 0 ||
            _ops.rename(QFile::encodeName(_path), QFile::encodeName(path)) != 0) {
            throw FileProblem(_path, errno);
        }
        _path = path;
    }

private:
    QString _path;
    FileOps &_ops;
    int _descriptor;
};

} // namespace

std::shared_ptr<const AudioFile> fetchAudio(const QString &address, const QString &folder, const CopyProgress &progress,
                                            std::stop_token stop, FileOps &ops, const DownloadLimits &limits) {
    OutputFolder shelves(folder, ops);
    shelves.prepare(false);
    shelves.removeLeftovers();
    const auto shelf = std::make_shared<Shelf>(shelves.partialPath(u"part"_s), ops);
    QByteArray head;
    DownloadSink sink;
    sink.bytes = [&](const QByteArray &bytes) {
        head += bytes.left(std::max<qsizetype>(headSize - head.size(), 0));
        shelf->write(bytes);
    };
    sink.progress = progress;
    download(QUrl(address.trimmed()), limits, sink, stop);
    const auto notAudio = [&](const QString &why) {
        return DownloadFailed(
            u"What %1 gives can't be used: %2. Choose another match, or give another address."_s.arg(address, why));
    };
    const QString extension = extensionOf(head);
    if (extension.isEmpty()) {
        throw notAudio(u"it can't be read as audio"_s);
    }
    const QString path = shelves.partialPath(extension);
    shelf->finish(path);
    try {
        struct Held {
            std::shared_ptr<Shelf> shelf;
            AudioFile file;
        };
        const auto held = std::make_shared<Held>(Held{shelf, readAudio(path)});
        return {held, &held->file};
    } catch (const NotAudio &error) {
        throw notAudio(QString::fromUtf8(error.what()));
    }
}

} // namespace zelk::engine
