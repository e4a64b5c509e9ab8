#include "Output/TrackWriter.h"

#include "Files/FileProblem.h"
#include "Library/AudioReader.h"
#include "Output/Convert.h"
#include "Output/Strays.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// The least share of its bytes that a stream must have to count as whole.
constexpr double wholeShare = 0.9;

/// Seconds.
constexpr double conversionSlack = 1;

/// Removes a partial file unless it has been put in place.
class PartialFile {
public:
    PartialFile(QString path, FileOps &ops) : _path(std::move(path)), _ops(ops) {}
    ~PartialFile() {
        if (!_placed) {
            _ops.unlink(QFile::encodeName(_path));
        }
    }
    PartialFile(const PartialFile &) = delete;
    PartialFile &operator=(const PartialFile &) = delete;

    const QString &path() const { return _path; }
    void placed() { _placed = true; }

private:
    QString _path;
    FileOps &_ops;
    bool _placed = false;
};

void heed(const std::stop_token &stop) {
    if (stop.stop_requested()) {
        throw Stopped();
    }
}

bool isOfLength(const AudioFile &file, const WriteOrder &order, bool converted = false) {
    // An encoder adds a little silence, however strict the user is.
    const double tolerance = converted ? std::max(order.toleranceSec, conversionSlack) : order.toleranceSec;
    return std::abs(file.durationSec - order.source.durationSec) <= tolerance;
}

/// Throws if the source has become another file since the collection was read.
void compareCopy(const QString &path, const WriteOrder &order) {
    QString reason = u"another length"_s;
    try {
        if (isOfLength(readAudio(path), order)) {
            return;
        }
    } catch (const NotAudio &error) {
        reason = QString::fromUtf8(error.what());
    }
    throw VerifyFailed(u"%1 isn't what it was when your collection was read (%2). Put the right file there and sync"
                       " again."_s.arg(order.source.path, reason)
                           .toStdString());
}

/// The file that is about to be replaced goes where the user can take it back from.
void spare(const QString &path) {
    if (QFile file(path); !file.moveToTrash()) {
        throw VerifyFailed(u"%1 isn't what was written there, and can't be moved to the Trash (%2). Move it away and"
                           " sync again."_s.arg(path, file.errorString())
                               .toStdString());
    }
}

AudioFile verified(const QString &path, const WriteOrder &order, bool converted) {
    AudioFile written;
    try {
        written = readAudio(path);
    } catch (const NotAudio &error) {
        throw VerifyFailed(u"The copy of %1 isn't sound (%2). Check the disk and sync again."_s
                               .arg(order.source.path, QString::fromUtf8(error.what()))
                               .toStdString());
    }
    // Tag libraries don't notice a disk that fills up under them; a stream that has lost bytes has a lower bitrate,
    // and tags that have lost some can't be read.
    const bool wholeStream = converted || written.bitrateKbps >= wholeShare * order.source.bitrateKbps;
    if (!isOfLength(written, order, converted) || !wholeStream || !hasTags(path, order.tags)) {
        throw VerifyFailed(u"The copy of %1 came out shorter than the file. Check the disk's space and sync again."_s
                               .arg(order.source.path)
                               .toStdString());
    }
    return written;
}

} // namespace

WrittenFile writeTrack(const WriteOrder &order, const OutputFolder &folder, const WriteHooks &hooks,
                       std::stop_token stop, FileOps &ops) {
    const TargetForm form = targetFormOf(order.source);
    PartialFile partial(folder.partialPath(form.extension), ops);
    if (form.converted) {
        hooks.step(Phase::converting);
        convertAudio(order.source, partial.path(), stop, conversionPatience(order.source));
    } else {
        copyFile(order.source.path, partial.path(), hooks.progress, stop, ops);
        compareCopy(partial.path(), order);
    }
    heed(stop);
    hooks.step(Phase::tagging);
    std::optional<Cover> cover = coverWith(order.source.path); // a conversion drops it
    if (!cover && order.cover) {
        cover = order.cover();
    }
    writeTags(partial.path(), order.tags, cover);
    heed(stop);
    hooks.step(Phase::verifying);
    const AudioFile read = verified(partial.path(), order, form.converted);
    heed(stop);

    WrittenFile written;
    written.path = order.target;
    written.sourcePath = order.madeFrom;
    if (order.madeFrom.isEmpty()) {
        written.sourcePath = order.source.path;
        written.sourceSize = order.source.size;
        written.sourceModifiedMs = order.source.modifiedMs;
    }
    written.size = read.size;
    written.modifiedMs = read.modifiedMs;
    written.durationSec = read.durationSec;
    written.format = read.format;
    written.bitrateKbps = read.bitrateKbps;
    written.lossless = read.lossless;
    written.origin = order.source.origin;
    written.sourceKbps = order.source.bitrateKbps;
    if (const QString twin = twinOf(partial.path(), order.strays); !twin.isEmpty()) {
        written.path = twin;
        written.modifiedMs = stampOf(twin).value_or(FileStamp()).modifiedMs;
        hooks.commit(written);
        return written;
    }
    if (order.replaces != order.target) {
        written.replaces = order.replaces;
        if (stampOf(order.target)) {
            throw FileProblem(order.target, EEXIST); // before it is entered over what may be known of that file
        }
    }
    hooks.commit(written);
    try {
        if (order.sparesReplaced) {
            spare(order.replaces);
        }
        putInPlace(partial.path(), order.target, order.replaces == order.target, ops);
    } catch (...) {
        hooks.rollback(written);
        throw;
    }
    partial.placed();
    if (!order.replaces.isEmpty() && order.replaces != order.target) {
        ops.unlink(QFile::encodeName(order.replaces));
    }
    return written;
}

Standing standingOf(const WrittenFile &file, double toleranceSec) {
    const auto stamp = stampOf(file.path);
    if (!stamp) {
        return Standing::Gone;
    }
    if (*stamp == FileStamp{file.size, file.modifiedMs}) {
        return Standing::Ours;
    }
    try {
        const AudioFile read = readAudio(file.path);
        const double needed = wholeShare * file.bitrateKbps * 1'000 / 8 * file.durationSec;
        if (read.durationSec > file.durationSec + toleranceSec) {
            return Standing::Longer;
        }
        const bool isAsLong = read.durationSec >= file.durationSec - toleranceSec;
        return isAsLong && static_cast<double>(read.size) >= needed ? Standing::Ours : Standing::Short;
    } catch (const NotAudio &) {
        return Standing::Broken;
    }
}

bool isMadeFrom(const WrittenFile &file, const AudioFile &source) {
    return file.sourcePath == source.path &&
           (file.sourceSize == 0 || (file.sourceSize == source.size && file.sourceModifiedMs == source.modifiedMs));
}

} // namespace zelk::engine
