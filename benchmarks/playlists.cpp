// How long the engine takes to read exports, and how that grows: the Music app's library and a table of tracks, of
// 1,000, 10,000 and 100,000 tracks each. Prints milliseconds of the processor, the best of three, and how many times
// those of the size before.
#include "Playlists/CsvPlaylist.h"
#include "Playlists/LibraryPlaylists.h"
#include "Playlists/RowIdentity.h"

#include <QBuffer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

using namespace zelk::engine;

namespace {

QByteArray field(const char *key, const QByteArray &value) {
    return QByteArray("\t\t\t<key>") + key + "</key><string>" + value + "</string>\n";
}

/// With the keys that a real one has, and three playlists that hold every track.
QByteArray library(int tracks) {
    QByteArray bytes =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n\t<key>Tracks</key>\n"
        "\t<dict>\n";
    QByteArray rows;
    for (int i = 1; i <= tracks; ++i) {
        const QByteArray number = QByteArray::number(i);
        bytes += "\t\t<key>" + number + "</key>\n\t\t<dict>\n\t\t\t<key>Track ID</key><integer>" + number +
                 "</integer>\n" + field("Name", "A Title of Usual Length " + number + " (Extended Mix)") +
                 field("Artist", "Some Artist " + QByteArray::number(i % 5'000) + " &amp; Another") +
                 field("Album", "An Album of Theirs " + QByteArray::number(i / 12)) + field("Genre", "Electronic") +
                 field("Kind", "AAC audio file") +
                 "\t\t\t<key>Size</key><integer>8123456</integer>\n\t\t\t<key>Total Time</key><integer>" +
                 QByteArray::number(180'000 + i) +
                 "</integer>\n\t\t\t<key>Date Added</key><date>2020-01-01T12:00:00Z</date>\n"
                 "\t\t\t<key>Bit Rate</key><integer>256</integer>\n" +
                 field("Persistent ID", QByteArray::number(0x1000000000000000 + i, 16)) + field("Track Type", "File") +
                 field("Location", "file:///Users/someone/Music/Media/Some%20Artist/Album/" + number + "%20Title.m4a") +
                 "\t\t</dict>\n";
        rows += "\t\t\t\t<dict>\n\t\t\t\t\t<key>Track ID</key><integer>" + number + "</integer>\n\t\t\t\t</dict>\n";
    }
    bytes += "\t</dict>\n\t<key>Playlists</key>\n\t<array>\n";
    for (const char *name : {"One", "Two", "Three"}) {
        bytes += "\t\t<dict>\n" + field("Name", name) + field("Playlist Persistent ID", name) +
                 "\t\t\t<key>Playlist Items</key>\n\t\t\t<array>\n" + rows + "\t\t\t</array>\n\t\t</dict>\n";
    }
    return bytes + "\t</array>\n</dict>\n</plist>\n";
}

QByteArray table(int tracks) {
    QByteArray bytes = "Track URI,Track Name,Artist Name(s),Album Name,Album Image URL,Track Duration (ms),ISRC\n";
    for (int i = 1; i <= tracks; ++i) {
        const QByteArray number = QByteArray::number(i);
        bytes += "service:track:" + number + ",\"A Title of Usual Length " + number +
                 " (Extended Mix)\",\"Some Artist " + QByteArray::number(i % 5'000) +
                 ", Another\",\"An Album of Theirs\",https://covers.example/" + number + ".jpg," +
                 QByteArray::number(180'000 + i) + ",ZZ" + number + "\n";
    }
    return bytes;
}

/// As the catalogue does: with the keys by which rows are recognised.
ReadFile readTable(QIODevice &device) {
    ReadFile file = readCsvPlaylist(device);
    for (ReadList &list : file.lists) {
        for (ListedTrack &track : list.tracks) {
            track.rowKey = rowKeyOf(track, probeOf(track));
        }
    }
    return file;
}

template<class Read>
double bestMilliseconds(QByteArray bytes, int tracks, const Read &read) {
    double best = 0;
    for (int round = 0; round < 3; ++round) {
        QBuffer device(&bytes);
        device.open(QIODevice::ReadOnly);
        const std::clock_t begun = std::clock();
        const ReadFile file = read(device);
        const auto taken = 1e3 * static_cast<double>(std::clock() - begun) / CLOCKS_PER_SEC;
        if (file.lists.empty() || file.lists.front().tracks.size() != static_cast<std::size_t>(tracks)) {
            std::fprintf(stderr, "not all tracks were read\n");
            std::exit(EXIT_FAILURE);
        }
        best = round == 0 ? taken : std::min(best, taken);
    }
    return best;
}

template<class Make, class Read>
void measure(const char *name, const Make &make, const Read &read) {
    double before = 0;
    for (const int tracks : {1'000, 10'000, 100'000}) {
        const QByteArray bytes = make(tracks);
        const double taken = bestMilliseconds(bytes, tracks, read);
        std::printf("%-8s %7d tracks %6.1f MB %8.1f ms", name, tracks, static_cast<double>(bytes.size()) / 1e6, taken);
        std::printf(before > 0 ? "  %.1f times\n" : "\n", taken / before);
        before = taken;
    }
}

} // namespace

int main() {
    measure("library", library, [](QIODevice &device) { return readLibrary(device); });
    measure("table", table, readTable);
    return EXIT_SUCCESS;
}
