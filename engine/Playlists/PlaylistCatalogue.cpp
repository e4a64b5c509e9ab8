#include "Playlists/PlaylistCatalogue.h"

#include "Files/FileProblem.h"
#include "Files/PrivateFile.h"
#include "Library/FolderWalk.h"
#include "Playlists/CsvPlaylist.h"
#include "Playlists/M3uPlaylist.h"
#include "Playlists/RowIdentity.h"
#include "Playlists/XspfPlaylist.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// No list of tracks is that large; what is would only fill the memory.
constexpr qint64 largestFile = 256'000'000;

/// Sixteen digits: with a million lists, the chance that two share an id is one in ten million.
constexpr int idDigits = 16;

enum class Form { None, Csv, M3u, Xspf };

Form formOf(const QString &path) {
    const QString extension = path.section(u'.', -1).toLower();
    return extension == "csv"_L1 || extension == "tsv"_L1    ? Form::Csv
           : extension == "m3u"_L1 || extension == "m3u8"_L1 ? Form::M3u
           : extension == "xspf"_L1                          ? Form::Xspf
                                                             : Form::None;
}

PlaylistSourceId sourceOf(Form form) {
    return form == Form::Csv ? PlaylistSourceId::spotify : PlaylistSourceId::apple;
}

ReadFile readAs(Form form, const QByteArray &bytes, const QString &folder) {
    switch (form) {
    case Form::Csv:
        return readCsvPlaylist(bytes);
    case Form::M3u:
        return readM3uPlaylist(bytes, folder);
    case Form::Xspf:
        return readXspfPlaylist(bytes, folder);
    case Form::None:
        break;
    }
    return {};
}

ArtworkRef artworkOf(const std::vector<ListedTrack> &tracks) {
    for (const ListedTrack &track : tracks) {
        if (!track.artworkUrl.isEmpty()) {
            return artworkOfUrlText(track.artworkUrl);
        }
    }
    return ArtworkRef::none();
}

} // namespace

QString playlistId(PlaylistSourceId source, const QString &folder, const QString &file, const QString &list) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QString &part : {folder, file, list}) {
        hash.addData(part.normalized(QString::NormalizationForm_C).toUtf8());
        hash.addData(QByteArrayView("\0", 1)); // no two divisions into parts give the same bytes
    }
    return QString(wireName(source)) + u':' + QString::fromLatin1(hash.result().toHex().left(idDigits));
}

PlaylistCatalogue::PlaylistCatalogue(std::function<PlaylistPlaces()> places, Warn warn,
                                     std::function<void(const PlaylistSnapshot &)> scanned)
    : _places(std::move(places)), _warn(std::move(warn)), _scanned(std::move(scanned)) {}

std::shared_ptr<const PlaylistSnapshot> PlaylistCatalogue::refresh(std::chrono::milliseconds patience) {
    std::shared_future<Snapshot> scan;
    {
        const std::lock_guard lock(_mutex);
        if (!_underWay.valid()) {
            auto promise = std::make_shared<std::promise<Snapshot>>();
            _underWay = promise->get_future().share();
            _queue.post([this, promise] {
                Snapshot snapshot = this->scan();
                {
                    const std::lock_guard inner(_mutex);
                    _known = snapshot;
                    _underWay = {};
                }
                promise->set_value(std::move(snapshot));
            });
        }
        scan = _underWay;
    }
    if (scan.wait_for(patience) == std::future_status::ready) {
        return scan.get();
    }
    _warn(u"Looking through the playlists takes long; those found before are shown until it is done."_s);
    const std::lock_guard lock(_mutex);
    return _known ? _known : std::make_shared<const PlaylistSnapshot>();
}

std::shared_ptr<const PlaylistSnapshot> PlaylistCatalogue::known(std::chrono::milliseconds patience) {
    {
        const std::lock_guard lock(_mutex);
        if (_known) {
            return _known;
        }
    }
    return refresh(patience);
}

PlaylistCatalogue::Snapshot PlaylistCatalogue::scan() {
    auto snapshot = std::make_shared<PlaylistSnapshot>();
    for (const QString &root : _places().folders) {
        if (!QFileInfo(root).isDir()) {
            snapshot->unreadable += root;
        }
        FolderVisitor visitor;
        visitor.file = [&](const QString &path) {
            if (formOf(path) != Form::None) {
                enterFile(*snapshot, root, path);
            }
        };
        visitor.problem = [&](const QString &path, const QString &why) {
            snapshot->unreadable += path;
            warnOnce(path, why);
        };
        walkFolder(root, visitor);
    }
    const auto keyOf = [&](const Playlist &playlist) {
        QString key = playlist.name.toCaseFolded() + u'\x2' + playlist.id;
        for (const Playlist *at = snapshot->find(playlist.parentId); at; at = snapshot->find(at->parentId)) {
            key.prepend(at->name.toCaseFolded() + u'\x2' + at->id + u'\x1');
        }
        return key;
    };
    std::vector<std::pair<QString, Playlist>> keyed;
    for (const Playlist &playlist : snapshot->playlists) {
        keyed.emplace_back(keyOf(playlist), playlist);
    }
    std::sort(keyed.begin(), keyed.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    for (std::size_t i = 0; i < keyed.size(); ++i) {
        snapshot->playlists[i] = std::move(keyed[i].second);
        snapshot->byId[snapshot->playlists[i].id] = i;
    }
    _scanned(*snapshot);
    return snapshot;
}

void PlaylistCatalogue::enterFile(PlaylistSnapshot &snapshot, const QString &root, const QString &path) {
    const auto content = read(snapshot, path);
    if (!content) {
        return;
    }
    if (content->lists.empty()) { // empty or no table: perhaps just being written, so what it held may come back
        snapshot.unreadable += path;
    }
    const PlaylistSourceId source = sourceOf(formOf(path));
    const QString folder = path.section(u'/', 0, -2);
    const QString file = path.section(u'/', -1);
    for (const ReadList &list : content->lists) {
        Playlist playlist;
        playlist.id = playlistId(source, folder, file, list.name);
        if (snapshot.byId.contains(playlist.id)) { // a file that two of the folders hold, or a link to it
            continue;
        }
        playlist.source = source;
        playlist.name = list.name.isEmpty()
                            ? QFileInfo(file).completeBaseName().normalized(QString::NormalizationForm_C)
                            : list.name;
        playlist.parentId = enterFolders(snapshot, source, root, folder);
        playlist.artwork = artworkOf(list.tracks);
        playlist.origin = path;
        playlist.tracks = std::shared_ptr<const std::vector<ListedTrack>>(content, &list.tracks);
        snapshot.byId.insert(playlist.id, snapshot.playlists.size());
        snapshot.playlists.push_back(std::move(playlist));
    }
}

QString PlaylistCatalogue::enterFolders(PlaylistSnapshot &snapshot, PlaylistSourceId source, const QString &root,
                                        const QString &folder) {
    QString parentId;
    QString path = root;
    for (const QString &name : folder.mid(root.size()).split(u'/', Qt::SkipEmptyParts)) {
        path += u'/' + name;
        Playlist inner;
        inner.id = playlistId(source, path, {}, {});
        if (!snapshot.byId.contains(inner.id)) {
            inner.source = source;
            inner.name = name.normalized(QString::NormalizationForm_C);
            inner.isFolder = true;
            inner.parentId = parentId;
            snapshot.byId.insert(inner.id, snapshot.playlists.size());
            snapshot.playlists.push_back(inner);
        }
        parentId = inner.id;
    }
    return parentId;
}

std::shared_ptr<const ReadFile> PlaylistCatalogue::read(PlaylistSnapshot &snapshot, const QString &path) {
    const auto stamp = stampOf(path);
    if (!stamp) { // gone since the walk saw it
        return nullptr;
    }
    const auto cached = _cache.constFind(path);
    if (cached != _cache.constEnd() && cached->stamp == *stamp) {
        return cached->content;
    }
    try {
        if (stamp->size > largestFile) {
            throw FileProblem(path, EFBIG);
        }
        const QByteArray bytes = readWholeFile(path).value_or(QByteArray());
        const QString folder = path.section(u'/', 0, -2);
        auto content = std::make_shared<ReadFile>(readAs(formOf(path), bytes, folder));
        for (ReadList &list : content->lists) {
            for (ListedTrack &track : list.tracks) {
                track.rowKey = rowKeyOf(track, probeOf(track));
            }
        }
        for (const ListWarning &warning : content->warnings) {
            _warn(warning.line > 0 ? u"%1, line %2: %3"_s.arg(path).arg(warning.line).arg(warning.message)
                                   : u"%1: %2"_s.arg(path, warning.message));
        }
        _told.remove(path);
        _cache.insert(path, {*stamp, content});
        return content;
    } catch (const FileProblem &problem) {
        snapshot.unreadable += path;
        warnOnce(path, problem.reason());
        return nullptr;
    }
}

void PlaylistCatalogue::warnOnce(const QString &path, const QString &why) {
    if (_told.value(path) != why) {
        _told.insert(path, why);
        _warn(u"%1 can't be read: %2"_s.arg(path, why));
    }
}

} // namespace zelk::engine
