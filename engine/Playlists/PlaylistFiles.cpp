#include "Playlists/PlaylistFiles.h"

#include "Files/FileOps.h"
#include "Files/FileProblem.h"
#include "Playlists/CsvPlaylist.h"
#include "Playlists/LibraryPlaylists.h"
#include "Playlists/M3uPlaylist.h"
#include "Playlists/RowIdentity.h"
#include "Playlists/XspfPlaylist.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

enum class Form { None, Csv, M3u, Xspf, Library };

Form formOf(const QString &path) {
    const QString extension = path.section(u'.', -1).toLower();
    return extension == "csv"_L1 || extension == "tsv"_L1    ? Form::Csv
           : extension == "m3u"_L1 || extension == "m3u8"_L1 ? Form::M3u
           : extension == "xspf"_L1                          ? Form::Xspf
           : extension == "xml"_L1                           ? Form::Library
                                                             : Form::None;
}

/// A file that ends early when asked to, and that keeps the reason why it couldn't be read on.
class StoppableFile : public QIODevice {
public:
    StoppableFile(const QString &path, std::stop_token stop)
        : _stop(std::move(stop)), _descriptor(_ops.open(QFile::encodeName(path), O_RDONLY | O_NONBLOCK, 0)) {
        if (_descriptor < 0) {
            throw FileProblem(path, errno);
        }
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    ~StoppableFile() override { _ops.close(_descriptor); }

    /// The errno of the first read that failed; 0 if none did.
    int failure() const { return _failure; }

    qint64 size() const override {
        struct stat status {};
        return ::fstat(_descriptor, &status) == 0 ? status.st_size : 0;
    }

protected:
    qint64 readData(char *data, qint64 most) override {
        while (_failure == 0 && !_stop.stop_requested()) {
            const ssize_t count = ::pread(_descriptor, data, static_cast<size_t>(most), pos());
            if (count >= 0) {
                return count;
            }
            if (errno != EINTR) {
                _failure = errno;
            }
        }
        return -1;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    FileOps &_ops = FileOps::system();
    std::stop_token _stop;
    int _descriptor;
    int _failure = 0;
};

ReadFile readAs(Form form, QIODevice &device, const QString &folder) {
    switch (form) {
    case Form::Csv:
        return readCsvPlaylist(device);
    case Form::M3u:
        return readM3uPlaylist(device, folder);
    case Form::Xspf:
        return readXspfPlaylist(device, folder);
    case Form::Library:
        return readLibrary(device);
    case Form::None:
        break;
    }
    return {};
}

/// Why a file isn't told as a whole: the last that was wrong with it.
QString problemOf(const ReadFile &content) {
    return content.whole || content.warnings.empty() ? QString() : content.warnings.back().message;
}

} // namespace

std::optional<PlaylistSourceId> playlistSourceOf(const QString &path) {
    const Form form = formOf(path);
    return form == Form::None  ? std::nullopt
           : form == Form::Csv ? std::optional(PlaylistSourceId::spotify)
                               : std::optional(PlaylistSourceId::apple);
}

std::optional<PlaylistFiles::Stamp> PlaylistFiles::stampOf(const QString &path) {
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    const auto nanoseconds = [](const timespec &time) {
        return static_cast<qint64>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
    };
    return Stamp{status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
                 nanoseconds(status.st_ctim)};
}

PlaylistFiles::Reading PlaylistFiles::read(const QString &path, std::stop_token stop) {
    const auto stamp = stampOf(path);
    if (!stamp) { // gone since it was seen
        return {};
    }
    if (const auto known = _known.constFind(path); known != _known.constEnd() && known->stamp == *stamp) {
        return {known->content, !known->content->whole, problemOf(*known->content)};
    }
    try {
        if (stamp->size > largestFile) {
            throw FileProblem(path, EFBIG);
        }
        StoppableFile file(path, stop);
        auto content = std::make_shared<ReadFile>(readAs(formOf(path), file, path.section(u'/', 0, -2)));
        if (file.failure() != 0) {
            throw FileProblem(path, file.failure());
        }
        if (stop.stop_requested()) {
            return {nullptr, true, {}};
        }
        for (ReadList &list : content->lists) {
            for (ListedTrack &track : list.tracks) {
                if (track.rowKey.isEmpty()) {
                    track.rowKey = rowKeyOf(track, probeOf(track));
                }
            }
        }
        // Empty or no table: perhaps just being written, so what it held may come back.
        content->whole &= !content->lists.empty();
        tellWarnings(path, *content);
        _told.remove(path);
        _known.insert(path, {*stamp, content});
        return {content, !content->whole, problemOf(*content)};
    } catch (const FileProblem &problem) {
        if (problem.code() == ENOENT) {
            return {};
        }
        _known.remove(path);
        const QString why = problem.code() == EFBIG
                                ? u"it is larger than %1 bytes, and no playlist is that large"_s.arg(largestFile)
                                : problem.reason();
        warnOnce(path, why);
        return {nullptr, true, why};
    }
}

void PlaylistFiles::tellWarnings(const QString &path, const ReadFile &content) {
    for (const ListWarning &warning : content.warnings) {
        _warn(warning.line > 0 ? u"%1, line %2: %3"_s.arg(path).arg(warning.line).arg(warning.message)
                               : u"%1: %2"_s.arg(path, warning.message));
    }
    if (content.moreWarnings > 0) {
        _warn(u"%1: %2 more lines have mistakes like these"_s.arg(path).arg(content.moreWarnings));
    }
}

void PlaylistFiles::keepOnly(const QSet<QString> &paths) {
    _known.removeIf([&](const auto &known) { return !paths.contains(known.key()); });
}

void PlaylistFiles::warnOnce(const QString &path, const QString &why) {
    if (_told.value(path) != why) {
        _told.insert(path, why);
        _warn(u"%1 can't be read: %2"_s.arg(path, why));
    }
}

} // namespace zelk::engine
