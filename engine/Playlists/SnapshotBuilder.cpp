#include "Playlists/SnapshotBuilder.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// Sixteen digits: with a million lists, the chance that two share an id is one in ten million.
constexpr int idDigits = 16;

/// No two divisions into parts give the same text.
QString placeOf(const QString &folder, const QString &file, const QString &list) {
    return folder + QChar(0) + file + QChar(0) + list + QChar(0);
}

QString idOf(PlaylistSourceId source, const QString &place) {
    const QByteArray hash = QCryptographicHash::hash(place.toUtf8(), QCryptographicHash::Sha1);
    return QString(wireName(source)) + u':' + QString::fromLatin1(hash.toHex().left(idDigits));
}

ArtworkRef artworkOf(const ReadList &list) {
    if (list.artwork != ArtworkRef::none()) {
        return list.artwork;
    }
    for (const ListedTrack &track : list.tracks) {
        if (!track.artworkUrl.isEmpty()) {
            return artworkOfUrlText(track.artworkUrl);
        }
    }
    return ArtworkRef::none();
}

} // namespace

QString playlistId(PlaylistSourceId source, const QString &folder, const QString &file, const QString &list) {
    return idOf(source, placeOf(folder, file, list).normalized(QString::NormalizationForm_C));
}

void SnapshotBuilder::add(Playlist playlist) {
    _snapshot.byId.insert(playlist.id, _snapshot.playlists.size());
    _snapshot.playlists.push_back(std::move(playlist));
}

QString SnapshotBuilder::freeId(PlaylistSourceId source, const QString &place) {
    const QString composed = place.normalized(QString::NormalizationForm_C);
    const QString id = idOf(source, composed);
    const auto taken = _places.constFind(id);
    if (taken == _places.constEnd()) {
        _places.insert(id, place);
        return id;
    }
    if (*taken == place) {
        return {};
    }
    // Two names that look alike. The composed one has the id, whichever comes first, so that it keeps it when the other
    // one turns up.
    if (place == composed) {
        const QString other = *taken;
        const QString otherId = idOf(source, other);
        const std::size_t at = _snapshot.byId.take(id);
        _snapshot.playlists[at].id = otherId;
        _snapshot.byId.insert(otherId, at);
        _places.insert(otherId, other);
        _places.insert(id, place);
        return id;
    }
    const QString otherId = idOf(source, place);
    if (_places.contains(otherId)) {
        return {};
    }
    _places.insert(otherId, place);
    return otherId;
}

void SnapshotBuilder::enter(PlaylistSourceId source, const QString &root, const QString &path,
                            const std::shared_ptr<const ReadFile> &content) {
    const QString folder = path.section(u'/', 0, -2);
    const QString file = path.section(u'/', -1);
    QString folderId;
    for (const ReadList &list : content->lists) {
        Playlist playlist;
        playlist.id = freeId(source, placeOf(folder, file, list.key.isEmpty() ? list.name : list.key));
        if (playlist.id.isEmpty()) { // a file that two of the folders hold
            continue;
        }
        if (folderId.isEmpty()) {
            folderId = enterFolders(source, root, folder);
        }
        playlist.source = source;
        playlist.name = list.name.isEmpty()
                            ? QFileInfo(file).completeBaseName().normalized(QString::NormalizationForm_C)
                            : list.name;
        playlist.isFolder = list.isFolder;
        playlist.parentId = list.parentKey.isEmpty() ? folderId : playlistId(source, folder, file, list.parentKey);
        playlist.artwork = artworkOf(list);
        if (!list.isFolder) {
            playlist.origin = path;
            playlist.tracks = std::shared_ptr<const std::vector<ListedTrack>>(content, &list.tracks);
        }
        add(std::move(playlist));
    }
}

QString SnapshotBuilder::enterFolders(PlaylistSourceId source, const QString &root, const QString &folder) {
    QString parentId;
    QString path = root;
    for (const QString &name : folder.mid(root.size()).split(u'/', Qt::SkipEmptyParts)) {
        path += u'/' + name;
        Playlist inner;
        inner.id = playlistId(source, path, {}, {});
        const QString id = inner.id;
        if (!_snapshot.byId.contains(id)) {
            inner.source = source;
            inner.name = name.normalized(QString::NormalizationForm_C);
            inner.isFolder = true;
            inner.parentId = parentId;
            add(std::move(inner));
        }
        parentId = id;
    }
    return parentId;
}

void putInOrder(PlaylistSnapshot &snapshot) {
    std::vector<Playlist> &playlists = snapshot.playlists;
    std::vector<std::pair<QString, std::size_t>> byName;
    for (std::size_t i = 0; i < playlists.size(); ++i) {
        byName.emplace_back(playlists[i].name.toCaseFolded() + u'\x1' + playlists[i].id, i);
    }
    std::sort(byName.begin(), byName.end(), [](const auto &a, const auto &b) { return b < a; });
    // Backwards by name, so that the first of each folder is on top of the waiting ones.
    QHash<QString, std::vector<std::size_t>> inside;
    for (const auto &[name, i] : byName) {
        const QString &parent = playlists[i].parentId;
        inside[snapshot.byId.contains(parent) ? parent : QString()].push_back(i);
    }
    std::vector<std::size_t> waiting = inside.value(QString());
    std::vector<Playlist> ordered;
    ordered.reserve(playlists.size());
    while (!waiting.empty()) {
        Playlist &playlist = playlists[waiting.back()];
        waiting.pop_back();
        if (playlist.isFolder) {
            const std::vector<std::size_t> inner = inside.value(playlist.id);
            waiting.insert(waiting.end(), inner.begin(), inner.end());
        }
        ordered.push_back(std::move(playlist));
    }
    playlists = std::move(ordered);
    for (std::size_t i = 0; i < playlists.size(); ++i) {
        snapshot.byId[playlists[i].id] = i;
    }
}

} // namespace zelk::engine
