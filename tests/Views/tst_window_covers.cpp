#include "WindowBench.h"

#include "Services/ArtworkBench.h"
#include "Services/ArtworkImaging.h"
#include "Services/Pictures.h"
#include "Styling/ArtworkPicture.h"
#include "Views/ListWindow.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Event = ServerEvent;

namespace {

constexpr int rows = 1000;

// Each ID's cover has a colour of its own.
QColor colorOf(int id) {
    return QColor(QColor::fromHsv(id % 360, 255, 255 - id / 10).rgb());
}

std::vector<PlaylistDTO> libraryWithCovers() {
    std::vector<PlaylistDTO> playlists = WindowBench::library();
    for (PlaylistDTO &playlist : playlists) {
        if (playlist.id == "peak"_L1)
            playlist.artwork = ArtworkRef::appleMusic(u"3"_s);
    }
    return playlists;
}

// A window over a library whose covers are in files, and a run with a thousand of them.
class Wall {
public:
    Wall() : window(libraryWithCovers()) {
        for (int i = 0; i < rows; ++i)
            artwork.shelf.items.push_back({static_cast<quint64>(i), picture(64, 64, colorOf(i))});
        ArtworkProvider::setShared(artwork.provider);
        window.loadLibrary();
        std::vector<TrackDTO> tracks;
        for (int i = 0; i < rows; ++i) {
            TrackDTO track;
            track.id = u"t%1"_s.arg(i);
            track.title = u"Track %1"_s.arg(i);
            track.durationSec = 200;
            track.artwork = ArtworkRef::appleMusic(QString::number(i, 16));
            tracks.push_back(std::move(track));
        }
        window.route(Event::SyncStarted{u"run"_s, u"run"_s, 1});
        window.route(Event::PlaylistStarted{u"run"_s, u"peak"_s, 0, u"Peak Time 132"_s, std::move(tracks)});
    }
    ~Wall() { ArtworkProvider::setShared(nullptr); }
    Q_DISABLE_COPY_MOVE(Wall)

    QQuickItem *table() const { return window.item("trackTable"); }
    QList<ArtworkPicture *> covers(QQuickItem *of) const {
        QList<ArtworkPicture *> found;
        for (QQuickItem *item :
             WindowBench::itemsOf(of, [](QQuickItem *each) { return qobject_cast<ArtworkPicture *>(each); }))
            found += qobject_cast<ArtworkPicture *>(item);
        return found;
    }
    void scrollTo(double y) const {
        table()->setProperty("contentY", y);
        table()->findChild<ListWindow *>()->ensurePolished();
    }
    // Whether every row in view shows the cover of its own track.
    bool isTrue() const {
        const auto *list = table()->findChild<ListWindow *>();
        int seen = 0;
        for (int i = 0; i < list->count(); ++i) {
            QQuickItem *item = list->itemAt(i);
            if (!item || item->objectName() != "trackRow"_L1)
                continue;
            const int id = list->model()->index(i).data().toString().mid(6).toInt();
            for (const ArtworkPicture *cover : covers(item)) {
                if (!cover->hasImage() || cover->image().pixelColor(9, 9) != colorOf(id))
                    return false;
                ++seen;
            }
        }
        return seen > 3;
    }

    ArtworkBench artwork;
    WindowBench window;
};

} // namespace

class WindowCoversTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { settleDown(); }

    void rowsCardsAndPlaylistsShowTheirCovers() {
        const Wall wall;
        QTRY_VERIFY(wall.isTrue());
        QTRY_VERIFY(wall.window.item("groupHeader"));
        const auto ofCard = wall.covers(wall.window.item("groupHeader"));
        QCOMPARE(ofCard.size(), 1);
        QCOMPARE(ofCard[0]->edge(), 56);
        QCOMPARE(ofCard[0]->cornerRadius(), 8);
        QTRY_VERIFY(ofCard[0]->hasImage());
        QCOMPARE(ofCard[0]->image().pixelColor(9, 9), colorOf(3));
        int withCover = 0;
        for (QQuickItem *row : wall.window.items("playlistRow")) {
            const auto covers = wall.covers(row);
            QCOMPARE(covers.size(), 1);
            QCOMPARE(covers[0]->edge(), 22);
            const bool isPeak = wall.window.texts(row).contains(u"Peak Time 132"_s);
            QTRY_COMPARE(covers[0]->hasImage(), isPeak);
            withCover += isPeak;
        }
        QCOMPARE(withCover, 1);
        for (const ArtworkPicture *cover : wall.covers(wall.window.items("trackRow").value(0))) {
            QCOMPARE(cover->edge(), 30);
            QCOMPARE(cover->cornerRadius(), 6);
        }
    }

    void aThousandRowsScrollWithoutADecodeOnTheMainThread() {
        const Wall wall;
        QTRY_VERIFY(wall.isTrue());
        const double end = wall.table()->property("contentHeight").toDouble() - wall.table()->height();
        for (double y = 0; y < end; y += 300) {
            wall.scrollTo(y);
            wall.window.drawFrame();
        }
        wall.scrollTo(end);
        QTRY_VERIFY(wall.isTrue());
        // What has been seen is in memory: it shows in the very turn in which its row comes.
        wall.scrollTo(end - 2000);
        QTRY_VERIFY(wall.isTrue());
        wall.scrollTo(end);
        QVERIFY(wall.isTrue());
        wall.scrollTo(end - 2000);
        QVERIFY(wall.isTrue());
        QCOMPARE(ArtworkImaging::decodesOnThisThread(), 0);
    }

    void rowsThatFlyByLoadNothing() {
        Wall wall;
        QTRY_VERIFY(wall.isTrue());
        wall.artwork.settle();
        const int before = wall.artwork.shelf.coversRead;
        const double end = wall.table()->property("contentHeight").toDouble() - wall.table()->height();
        for (double y = 1000; y < end; y += 300)
            wall.scrollTo(y);
        wall.scrollTo(end);
        QTRY_VERIFY(wall.isTrue());
        wall.artwork.settle();
        const auto *list = wall.table()->findChild<ListWindow *>();
        QVERIFY(wall.artwork.shelf.coversRead - before <= list->delegateCount());
        QVERIFY(list->delegateCount() < 80);
    }
};

QTEST_MAIN(WindowCoversTest)
#include "tst_window_covers.moc"
