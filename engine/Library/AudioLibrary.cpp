#include "Library/AudioLibrary.h"

#include "Library/AudioReader.h"
#include "Library/FolderWalk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// The folder of the collection's first level says where a file came from.
std::optional<SourceId> originOf(const QString &path, const QStringList &folders) {
    for (const QString &folder : folders) {
        if (path.startsWith(folder + u'/')) {
            return fromWireName<SourceId>(QStringView(path.mid(folder.size() + 1).section(u'/', 0, 0).toLower()));
        }
    }
    return std::nullopt;
}

/// Reading is waiting for the disk most of the time.
constexpr unsigned mostReaders = 4;

/// So many files are entered in one transaction: one each would wait for the disk each time.
constexpr std::size_t filesPerTransaction = 1'000;

} // namespace

QStringList absentFolders(const QStringList &folders) {
    QStringList absent;
    for (const QString &folder : folders) {
        if (!QFileInfo(folder).isDir()) {
            absent += folder;
        }
    }
    return absent;
}

AudioLibrary::AudioLibrary(Database &database, Warn warn) : _database(database), _ownWarn(std::move(warn)) {}

std::shared_ptr<const MatchIndex> AudioLibrary::refresh(const QStringList &folders, std::stop_token stop,
                                                        const Warn &warn) {
    const std::lock_guard lock(_mutex);
    _warn = warn ? warn : _ownWarn;
    std::vector<AudioFile> files = scan(folders, stop);
    if (stop.stop_requested()) {
        return nullptr;
    }
    bool same = _index && _index->size() == static_cast<int>(files.size());
    for (int i = 0; same && i < _index->size(); ++i) {
        same = _index->file(i) == files[static_cast<std::size_t>(i)];
    }
    if (!same) {
        _index = std::make_shared<const MatchIndex>(std::move(files));
    }
    return _index;
}

std::vector<AudioFile> AudioLibrary::scan(const QStringList &folders, std::stop_token stop) {
    if (!_loaded) {
        try {
            _known = _database.audioFiles();
        } catch (const DatabaseError &error) {
            _warn(u"The whole collection is read again, since what was read of it before can't be recalled: %1"_s.arg(
                QString::fromUtf8(error.what())));
        }
        _loaded = true;
    }
    QSet<QString> ours; // the output folder may lie in the collection
    for (const WrittenFile &file : _database.writtenFiles()) {
        ours.insert(file.path);
    }
    QStringList all;
    QSet<QString> seen;
    FolderVisitor visitor;
    visitor.file = [&](const QString &path) {
        if (hasAudioName(path) && !seen.contains(path) && !ours.contains(path)) {
            seen.insert(path);
            all += path;
        }
    };
    visitor.problem = [&](const QString &path, const QString &why) { warnOnce(path, why); };
    for (const QString &folder : folders) {
        walkFolder(folder, visitor, stop);
    }
    // What is on a disk that isn't connected isn't deleted: it needn't be read again when the disk is back.
    const QStringList absent = absentFolders(folders);
    const auto isOutOfReach = [&absent](const QString &path) {
        return std::any_of(absent.begin(), absent.end(),
                           [&path](const QString &folder) { return path.startsWith(folder + u'/'); });
    };

    QStringList changed;
    for (const QString &path : std::as_const(all)) {
        const auto stamp = stampOf(path);
        const auto known = _known.constFind(path);
        const bool fresh = stamp && known != _known.constEnd() && *stamp == FileStamp{known->size, known->modifiedMs};
        if (!fresh) {
            changed += path;
        }
    }
    const std::vector<AudioFile> read = readAll(changed, stop);
    if (stop.stop_requested()) {
        return {};
    }
    for (const QString &path : std::as_const(changed)) {
        _known.remove(path);
    }
    for (const AudioFile &file : read) {
        _known.insert(file.path, file);
        _unusable.remove(file.path);
    }
    QStringList gone;
    for (auto known = _known.cbegin(); known != _known.cend(); ++known) {
        if (!seen.contains(known.key()) && !isOutOfReach(known.key()) && !QFile::exists(known.key())) {
            gone += known.key();
        }
    }
    for (const QString &path : std::as_const(gone)) {
        _known.remove(path);
    }
    remember({}, gone);
    std::vector<AudioFile> files;
    for (const QString &path : std::as_const(all)) {
        if (const auto known = _known.constFind(path); known != _known.constEnd()) {
            files.push_back(*known);
            files.back().origin = originOf(path, folders);
        }
    }
    return files;
}

std::vector<AudioFile> AudioLibrary::readAll(const QStringList &paths, std::stop_token stop) {
    std::mutex mutex; // guards read and unsaved, and keeps warnings apart
    std::vector<AudioFile> read;
    std::vector<AudioFile> unsaved;
    std::atomic<qsizetype> next = 0;
    const auto reader = [&] {
        for (qsizetype i = next++; i < paths.size() && !stop.stop_requested(); i = next++) {
            try {
                AudioFile file = readAudio(paths[i]);
                const std::lock_guard lock(mutex);
                read.push_back(file);
                unsaved.push_back(std::move(file));
                if (unsaved.size() >= filesPerTransaction) {
                    remember(std::exchange(unsaved, {}), {});
                }
            } catch (const std::exception &error) {
                const std::lock_guard lock(mutex);
                warnOnce(paths[i], QString::fromUtf8(error.what()));
            }
        }
    };
    const auto wanted = std::min<unsigned>(mostReaders, std::max(1u, std::thread::hardware_concurrency()));
    {
        std::vector<std::jthread> readers;
        for (unsigned i = 1; i < wanted && static_cast<qsizetype>(i) < paths.size(); ++i) {
            readers.emplace_back(reader);
        }
        reader();
    }
    remember(unsaved, {});
    return read;
}

void AudioLibrary::warnOnce(const QString &path, const QString &why) {
    const auto stamp = stampOf(path).value_or(FileStamp());
    const QString told = u"%1 %2 %3"_s.arg(stamp.size).arg(stamp.modifiedMs).arg(why);
    if (_unusable.value(path) != told) {
        _unusable.insert(path, told);
        _warn(u"%1 is passed over: %2"_s.arg(path, why));
    }
}

void AudioLibrary::remember(const std::vector<AudioFile> &read, const QStringList &gone) {
    if (read.empty() && gone.isEmpty()) {
        return;
    }
    try {
        _database.recordAudioFiles(read, gone);
    } catch (const DatabaseError &error) { // costs the next start time, and nothing else
        _warn(u"What was read of the collection can't be remembered: %1"_s.arg(QString::fromUtf8(error.what())));
    }
}

} // namespace zelk::engine
