// How indexing a collection and matching playlists against it grow with the collection: 1,000, 10,000 and 100,000
// files, each a valid tiny file with tags. "Cold" has nothing remembered of the files, "warm" is a new start on what
// was remembered; the system's cache of the disk is warm in both. Prints the time of each step for one file or row, and
// how it grows from the size before.
#include "Library/AudioLibrary.h"
#include "Matching/Matcher.h"
#include "engine/TinyAudio.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <random>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;

namespace {

struct Song {
    QString title;
    QString artist;
    QString album;
    int seconds = 0;
};

/// Words and names of a made-up language: few are frequent and most are rare, as in any other.
class Songs {
public:
    explicit Songs(int count) {
        const int artists = std::max(50, count / 12);
        for (int i = 0; i < count; ++i) {
            Song song;
            const int words = 1 + static_cast<int>(_random() % 4);
            for (int w = 0; w < words; ++w) {
                song.title += (w == 0 ? u""_s : u" "_s) + frequentWord();
            }
            const int artist = static_cast<int>(_random() % static_cast<unsigned>(artists));
            song.artist = word(artist % 997) + u' ' + word(5'000 + artist);
            song.album = word(20'000 + i / 10) + u" Sessions"_s;
            song.seconds = 120 + static_cast<int>(_random() % 300);
            _all.push_back(song);
        }
    }

    const std::vector<Song> &all() const { return _all; }

    /// A row that asks for one of them in another spelling, or, one of ten, for none.
    Song row() {
        Song song = _all[_random() % _all.size()];
        switch (_random() % 10) {
        case 0:
            song.title = word(90'000 + static_cast<int>(_random() % 9'000)) + u" Nowhere"_s;
            break;
        case 1:
            song.title += u" - 2011 Remaster"_s;
            break;
        case 2:
            song.title += u" (feat. Ono Kai)"_s;
            break;
        case 3:
            song.title.remove(song.title.size() / 2, 1);
            break;
        case 4:
            song.title += u" (Live)"_s;
            break;
        default:
            break;
        }
        song.seconds += static_cast<int>(_random() % 4);
        return song;
    }

private:
    static QString word(int rank) {
        static const char *const syllables[] = {"ka", "lo", "mi",  "ren", "sa",  "tu", "vel", "on",
                                                "di", "pa", "har", "ne",  "gro", "li", "bex", "su"};
        QString text;
        for (int rest = rank + 16; rest > 0; rest /= 16) {
            text += QLatin1String(syllables[rest % 16]);
        }
        return text;
    }

    QString frequentWord() {
        const double share = std::generate_canonical<double, 32>(_random);
        return word(static_cast<int>(std::exp(share * std::log(20'000.0))) - 1);
    }

    std::mt19937 _random{20261121};
    std::vector<Song> _all;
};

void writeFiles(const std::vector<Song> &songs, const QString &folder) {
    for (std::size_t i = 0; i < songs.size(); ++i) {
        const QString inner = folder + u"/%1"_s.arg(i / 500);
        if (i % 500 == 0) {
            QDir().mkpath(inner);
        }
        QFile file(inner + u"/%1.flac"_s.arg(i));
        const QByteArray bytes = testing::tinyFlac(songs[i].seconds, {{"TITLE", songs[i].title.toUtf8()},
                                                                      {"ARTIST", songs[i].artist.toUtf8()},
                                                                      {"ALBUM", songs[i].album.toUtf8()}});
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("the collection can't be written");
        }
    }
}

/// Each step's microseconds for one file or row.
struct Figures {
    double cold = 0;
    double warm = 0;
    double again = 0;
    double index = 0;
    double match = 0;
    double taken = 0;
};

double microsecondsEach(const QElapsedTimer &timer, double count) {
    return static_cast<double>(timer.nsecsElapsed()) / 1'000 / count;
}

std::vector<AudioFile> listOf(const std::vector<Song> &songs) {
    std::vector<AudioFile> files;
    for (std::size_t i = 0; i < songs.size(); ++i) {
        AudioFile file;
        file.path = u"/collection/%1.flac"_s.arg(i);
        file.title = songs[i].title;
        file.artist = songs[i].artist;
        file.album = songs[i].album;
        file.durationSec = songs[i].seconds;
        file.lossless = true;
        files.push_back(file);
    }
    return files;
}

void measureDisk(const std::vector<Song> &songs, Figures &figures) {
    const auto count = static_cast<double>(songs.size());
    const QTemporaryDir folder;
    const QString collection = folder.filePath(u"collection"_s);
    writeFiles(songs, collection);
    const auto warn = [](const QString &message) { std::fprintf(stderr, "%s\n", qPrintable(message)); };

    QElapsedTimer timer;
    std::shared_ptr<const MatchIndex> index;
    const auto start = [&] {
        Database database(folder.filePath(u"engine.db"_s), warn);
        AudioLibrary library(database, warn);
        timer.start();
        index = library.refresh({collection}, {});
        const double each = microsecondsEach(timer, count);
        timer.start();
        library.refresh({collection}, {});
        figures.again = microsecondsEach(timer, count);
        return each;
    };
    figures.cold = start();
    figures.warm = start();
    if (index->size() != static_cast<int>(songs.size())) {
        qFatal("%d files were indexed", index->size());
    }
}

Figures measure(int count, int rows, bool onDisk) {
    Songs songs(count);
    Figures figures;
    if (onDisk) {
        measureDisk(songs.all(), figures);
    }
    std::vector<AudioFile> files = listOf(songs.all());
    QElapsedTimer timer;
    timer.start();
    const MatchIndex bare(std::move(files));
    figures.index = microsecondsEach(timer, count);

    int taken = 0;
    MatchPreferences preferences;
    preferences.sources = allCases<SourceId>();
    timer.start();
    for (int i = 0; i < rows; ++i) {
        const Song row = songs.row();
        const Probe probe = makeProbe(row.title, row.artist, row.album, row.seconds, {});
        taken += findMatch(probe, bare, preferences).band == MatchResult::Band::Accepted ? 1 : 0;
    }
    figures.match = microsecondsEach(timer, rows);
    figures.taken = 100.0 * taken / rows;
    return figures;
}

} // namespace

/// Arguments: how many rows are matched at each size, and the largest size that is written to the disk.
int main(int argc, char **argv) {
    const int rows = argc > 1 ? QByteArray(argv[1]).toInt() : 100'000;
    const int onDisk = argc > 2 ? QByteArray(argv[2]).toInt() : 10'000;
    if (rows <= 0 || onDisk < 0) {
        std::fprintf(stderr, "usage: bench_matching [rows] [largest on disk]\n");
        return 2;
    }
    std::printf("matching: microseconds for one file or row, and growth from the size before\n");
    std::printf("%8s %14s %14s %14s %14s %14s %7s\n", "files", "cold", "warm", "again", "index alone", "row", "taken");
    Figures before;
    for (int count = 1'000; count <= 100'000; count *= 10) {
        const Figures now = measure(count, rows, count <= onDisk);
        const auto cell = [](double value, double previous) {
            if (value > 0) {
                std::printf(" %8.1f x%4.2f", value, previous > 0 ? value / previous : 1);
            } else {
                std::printf(" %14s", "-");
            }
        };
        std::printf("%8d", count);
        cell(now.cold, before.cold);
        cell(now.warm, before.warm);
        cell(now.again, before.again);
        cell(now.index, before.index);
        cell(now.match, before.match);
        std::printf(" %6.1f%%\n", now.taken);
        std::fflush(stdout);
        before = now;
    }
    return 0;
}
