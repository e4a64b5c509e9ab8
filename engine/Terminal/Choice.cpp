#include "Terminal/Choice.h"

#include "Matching/Similarity.h"

#include <QHash>
#include <QSet>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// As alike a name has to be to be offered for one that was mistyped, and so many are offered.
constexpr double alike = 0.5;
constexpr std::size_t mostOffered = 5;

using Position = std::size_t;

/// A keyboard and an export may spell the same accents in different ways.
QString composed(const QString &text) {
    return text.normalized(QString::NormalizationForm_C);
}

QString folded(const QString &text) {
    return composed(text).toCaseFolded();
}

QString lineOf(const NamedPlaylist &named) {
    const qint64 tracks = named.playlist.trackCount.value_or(0);
    const QString kind = named.playlist.isFolder ? u"folder"_s
                         : tracks == 1           ? u"1 track"_s
                                                 : u"%1 tracks"_s.arg(tracks);
    return u"%1  %2 (%3, %4)"_s.arg(named.playlist.id, named.path, kind, sourceName(named.playlist.source));
}

template<class Predicate>
std::vector<Position> positionsOf(const std::vector<NamedPlaylist> &playlists, Predicate predicate) {
    std::vector<Position> found;
    for (Position i = 0; i < playlists.size(); ++i) {
        if (predicate(playlists[i])) {
            found.push_back(i);
        }
    }
    return found;
}

std::vector<Position> meantBy(const std::vector<NamedPlaylist> &playlists, const QString &name) {
    auto found = positionsOf(playlists, [&](const NamedPlaylist &each) { return each.playlist.id == name; });
    if (found.empty()) {
        found = positionsOf(playlists, [wanted = composed(name)](const NamedPlaylist &each) {
            return composed(each.playlist.name) == wanted || composed(each.path) == wanted;
        });
    }
    if (found.empty()) {
        found = positionsOf(playlists, [wanted = folded(name)](const NamedPlaylist &each) {
            return folded(each.playlist.name) == wanted || folded(each.path) == wanted;
        });
    }
    return found;
}

QStringList likely(const std::vector<NamedPlaylist> &playlists, const QString &name) {
    const QString wanted = folded(name);
    std::vector<std::pair<double, Position>> scored;
    for (Position i = 0; i < playlists.size(); ++i) {
        const QString has = folded(playlists[i].playlist.name);
        const double score = !wanted.isEmpty() && (has.contains(wanted) || wanted.contains(has)) && !has.isEmpty()
                                 ? 1
                                 : similarity(has, wanted);
        if (score >= alike) {
            scored.emplace_back(score, i);
        }
    }
    std::stable_sort(scored.begin(), scored.end(), [](const auto &a, const auto &b) { return a.first > b.first; });
    QStringList lines;
    for (std::size_t i = 0; i < scored.size() && i < mostOffered; ++i) {
        lines += lineOf(playlists[scored[i].second]);
    }
    return lines;
}

} // namespace

QString sourceName(PlaylistSourceId source) {
    switch (source) {
    case PlaylistSourceId::apple:
        return u"Apple Music"_s;
    case PlaylistSourceId::spotify:
        return u"Spotify"_s;
    }
    return {};
}

std::vector<NamedPlaylist> namePlaylists(const std::vector<PlaylistDTO> &playlists) {
    std::vector<NamedPlaylist> named;
    QHash<QString, QString> pathById;
    QHash<QString, int> uses;
    for (const PlaylistDTO &playlist : playlists) { // a folder comes before what is in it
        const QString parent = playlist.parentId ? pathById.value(*playlist.parentId) : QString();
        const QString path = parent.isEmpty() ? playlist.name : parent + u'/' + playlist.name;
        pathById.insert(playlist.id, path);
        ++uses[composed(path)];
        named.push_back({playlist, path});
    }
    for (NamedPlaylist &each : named) {
        each.isAmbiguous = uses.value(composed(each.path)) > 1;
    }
    return named;
}

std::vector<NamedPlaylist> choosePlaylists(const std::vector<NamedPlaylist> &playlists, const QStringList &names) {
    QSet<QString> chosen;
    for (const QString &name : names) {
        const std::vector<Position> meant = meantBy(playlists, name);
        if (meant.empty()) {
            throw ChoiceProblem(u"there is no playlist \"%1\""_s.arg(name), likely(playlists, name));
        }
        if (meant.size() > 1) {
            QStringList candidates;
            for (const Position position : meant) {
                candidates += lineOf(playlists[position]);
            }
            throw ChoiceProblem(u"\"%1\" means %2 playlists"_s.arg(name).arg(meant.size()), candidates);
        }
        chosen.insert(playlists[meant.front()].playlist.id);
    }
    std::vector<NamedPlaylist> result;
    for (const NamedPlaylist &each : playlists) {
        if (each.playlist.parentId && chosen.contains(*each.playlist.parentId)) {
            chosen.insert(each.playlist.id);
        }
        if (!each.playlist.isFolder && (names.isEmpty() || chosen.contains(each.playlist.id))) {
            result.push_back(each);
        }
    }
    return result;
}

} // namespace zelk::engine
