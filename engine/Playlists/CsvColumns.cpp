#include "Playlists/CsvColumns.h"

#include "Matching/Fold.h"

#include <QList>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// Names as joinedWords(fold()) gives them, the more exact first. "name(s)" is "name s" in that form.
const QStringList &titleNames() {
    static const QStringList names = {u"track name"_s,
                                      u"track title"_s,
                                      u"song name"_s,
                                      u"song title"_s,
                                      u"titelname"_s,
                                      u"songtitel"_s,
                                      u"name des titels"_s,
                                      u"nom du titre"_s,
                                      u"nom de la piste"_s,
                                      u"nom du morceau"_s,
                                      u"nombre de la cancion"_s,
                                      u"nombre de la pista"_s,
                                      u"nombre del tema"_s,
                                      u"nome traccia"_s,
                                      u"nome della traccia"_s,
                                      u"nome brano"_s,
                                      u"nome del brano"_s,
                                      u"nome da faixa"_s,
                                      u"nome da musica"_s,
                                      u"naam van nummer"_s,
                                      u"nummernaam"_s,
                                      u"lattitel"_s,
                                      u"latnamn"_s,
                                      u"nazwa utworu"_s,
                                      u"название трека"_s,
                                      u"トラック名"_s,
                                      u"曲名"_s,
                                      u"title"_s,
                                      u"titel"_s,
                                      u"titre"_s,
                                      u"titulo"_s,
                                      u"titolo"_s,
                                      u"tytul"_s,
                                      u"название"_s,
                                      u"タイトル"_s,
                                      u"song"_s,
                                      u"track"_s,
                                      u"cancion"_s,
                                      u"brano"_s,
                                      u"faixa"_s,
                                      u"nummer"_s,
                                      u"name"_s};
    return names;
}

const QStringList &artistNames() {
    static const QStringList names = {u"artist name s"_s,
                                      u"artist names"_s,
                                      u"artist name"_s,
                                      u"kunstlername n"_s,
                                      u"kunstlername"_s,
                                      u"name des kunstlers"_s,
                                      u"nom s de lartiste"_s,
                                      u"nom de lartiste"_s,
                                      u"nom s de l artiste s"_s,
                                      u"nom des artistes"_s,
                                      u"nombre s del artista"_s,
                                      u"nombre del artista"_s,
                                      u"nombre de los artistas"_s,
                                      u"nome artista"_s,
                                      u"nome dellartista"_s,
                                      u"nome degli artisti"_s,
                                      u"nome do artista"_s,
                                      u"nome s do s artista s"_s,
                                      u"naam van artiest"_s,
                                      u"artiestennaam"_s,
                                      u"artistnamn"_s,
                                      u"nazwa wykonawcy"_s,
                                      u"имя исполнителя"_s,
                                      u"アーティスト名"_s,
                                      u"artist s"_s,
                                      u"artists"_s,
                                      u"artist"_s,
                                      u"kunstler"_s,
                                      u"interpret"_s,
                                      u"interpreten"_s,
                                      u"artistes"_s,
                                      u"artiste"_s,
                                      u"artistas"_s,
                                      u"artista"_s,
                                      u"artisti"_s,
                                      u"artiest"_s,
                                      u"artiesten"_s,
                                      u"wykonawca"_s,
                                      u"исполнитель"_s,
                                      u"アーティスト"_s,
                                      u"creator"_s};
    return names;
}

const QStringList &albumNames() {
    static const QStringList names = {u"album name"_s,      u"album title"_s,   u"albumname"_s,        u"albumtitel"_s,
                                      u"name des albums"_s, u"nom de lalbum"_s, u"nombre del album"_s, u"nome album"_s,
                                      u"nome dellalbum"_s,  u"nome do album"_s, u"naam van album"_s,   u"albumnaam"_s,
                                      u"albumnamn"_s,       u"nazwa albumu"_s,  u"название альбома"_s, u"アルバム名"_s,
                                      u"album"_s,           u"альбом"_s,        u"アルバム"_s};
    return names;
}

const QStringList &durationNames() {
    static const QStringList names = {u"track duration"_s,
                                      u"duration"_s,
                                      u"titeldauer"_s,
                                      u"dauer"_s,
                                      u"lange"_s,
                                      u"laufzeit"_s,
                                      u"duree"_s,
                                      u"duree du titre"_s,
                                      u"duree de la piste"_s,
                                      u"duracion"_s,
                                      u"duracion de la cancion"_s,
                                      u"duracion de la pista"_s,
                                      u"durata"_s,
                                      u"durata traccia"_s,
                                      u"durata del brano"_s,
                                      u"duracao"_s,
                                      u"duracao da faixa"_s,
                                      u"duur"_s,
                                      u"langd"_s,
                                      u"czas trwania"_s,
                                      u"длительность"_s,
                                      u"再生時間"_s,
                                      u"track length"_s,
                                      u"length"_s,
                                      u"total time"_s,
                                      u"time"_s};
    return names;
}

const QStringList &imageNames() {
    static const QStringList names = {u"album image url"_s,
                                      u"album art url"_s,
                                      u"albumbild url"_s,
                                      u"url des albumbilds"_s,
                                      u"url de limage de lalbum"_s,
                                      u"url de la imagen del album"_s,
                                      u"url immagine album"_s,
                                      u"url da imagem do album"_s,
                                      u"アルバム画像url"_s,
                                      u"artwork url"_s,
                                      u"cover url"_s,
                                      u"image url"_s,
                                      u"artwork"_s,
                                      u"image"_s};
    return names;
}

const QStringList &listNames() {
    static const QStringList names = {
        u"playlist name"_s,       u"playlistname"_s,          u"name der playlist"_s,  u"wiedergabeliste"_s,
        u"nom de la playlist"_s,  u"nombre de la playlist"_s, u"nombre de la lista"_s, u"nome playlist"_s,
        u"nome della playlist"_s, u"nome da playlist"_s,      u"naam van playlist"_s,  u"nazwa playlisty"_s,
        u"название плейлиста"_s,  u"プレイリスト名"_s,        u"playlist title"_s,     u"playlist"_s};
    return names;
}

const QStringList &uriNames() {
    static const QStringList names = {u"track uri"_s,    u"spotify uri"_s,     u"titel uri"_s,
                                      u"uri du titre"_s, u"uri de la piste"_s, u"uri de la cancion"_s,
                                      u"uri traccia"_s,  u"uri da faixa"_s,    u"uri"_s};
    return names;
}

int columnOf(const QStringList &header, const QStringList &names) {
    for (const QString &name : names) {
        if (const auto column = header.indexOf(name); column >= 0) {
            return static_cast<int>(column);
        }
    }
    return -1;
}

} // namespace

CsvColumns findColumns(const QStringList &header) {
    QStringList names;
    for (const QString &cell : header) {
        names += joinedWords(fold(cell));
    }
    CsvColumns columns;
    columns.title = columnOf(names, titleNames());
    columns.artist = columnOf(names, artistNames());
    columns.album = columnOf(names, albumNames());
    columns.image = columnOf(names, imageNames());
    columns.isrc = columnOf(names, {u"isrc"_s, u"isrc code"_s, u"track isrc"_s});
    columns.list = columnOf(names, listNames());
    columns.uri = columnOf(names, uriNames());
    QStringList inMs;
    for (const QString &name : durationNames()) {
        inMs += name + " ms"_L1;
    }
    columns.duration = columnOf(names, inMs);
    columns.durationInMs = columns.duration >= 0;
    if (columns.duration < 0) {
        columns.duration = columnOf(names, durationNames());
    }
    return columns;
}

} // namespace zelk::engine
