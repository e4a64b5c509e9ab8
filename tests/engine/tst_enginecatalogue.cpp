#include "Playlists/PlaylistCatalogue.h"
#include "engine/EngineHome.h"
#include "engine/LibraryText.h"

#include <QDir>
#include <QRegularExpression>
#include <QSemaphore>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

constexpr std::chrono::seconds patience{20};

/// A catalogue over the lists of a home, with what it says and how often it looked.
class Bench {
public:
    explicit Bench(const EngineHome &home, const QStringList &more = {})
        : _catalogue(
              [this, places = PlaylistPlaces{QStringList{QDir::cleanPath(home.playlists({}))} + more,
                                             {home.path(u"Music/Library.xml"_s)}}] {
                  ++scans;
                  if (held) {
                      begun.release();
                      gate.acquire();
                  }
                  return places;
              },
              [this](const QString &message) {
                  const std::lock_guard lock(_mutex);
                  _warnings += message;
              },
              [this](const PlaylistSnapshot &) {
                  ++finished;
                  if (heldAtEnd) {
                      begun.release();
                      gate.acquire();
                  }
              }) {}

    PlaylistCatalogue *operator->() { return &_catalogue; }
    std::shared_ptr<const PlaylistSnapshot> refresh() { return _catalogue.refresh(patience); }

    QStringList warnings() {
        const std::lock_guard lock(_mutex);
        return _warnings;
    }

    std::atomic<int> scans = 0;
    std::atomic<int> finished = 0;
    std::atomic<bool> held = false;      // each scan says that it has begun and waits at the gate
    std::atomic<bool> heldAtEnd = false; // the same when it has seen everything
    QSemaphore begun;
    QSemaphore gate;

private:
    std::mutex _mutex;
    QStringList _warnings;
    PlaylistCatalogue _catalogue; // last: its threads end before what they use
};

/// Each playlist as "parent/name", a folder with a trailing "/".
QStringList shown(const PlaylistSnapshot &snapshot) {
    QStringList names;
    for (const Playlist &playlist : snapshot.playlists) {
        const Playlist *parent = snapshot.find(playlist.parentId);
        names += (parent ? parent->name + u'/' : QString()) + playlist.name + (playlist.isFolder ? u"/"_s : QString());
    }
    return names;
}

const Playlist *named(const PlaylistSnapshot &snapshot, const QString &name) {
    for (const Playlist &playlist : snapshot.playlists) {
        if (playlist.name == name) {
            return &playlist;
        }
    }
    return nullptr;
}

} // namespace

class EngineCatalogue : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void idsAreStableUniqueAndFreeOfJoiningSigns() {
        static const QRegularExpression form(u"^(apple|spotify):[0-9a-f]+$"_s);
        const QString id = playlistId(PlaylistSourceId::spotify, u"/a"_s, u"b.csv"_s, u"c#|,"_s);
        QVERIFY(form.match(id).hasMatch());
        QCOMPARE(playlistId(PlaylistSourceId::spotify, u"/a"_s, u"b.csv"_s, u"c#|,"_s), id);
        QVERIFY(playlistId(PlaylistSourceId::spotify, u"/a"_s, u"b.csv"_s, u"d"_s) != id);
        QVERIFY(playlistId(PlaylistSourceId::spotify, u"/ab"_s, u".csv"_s, u"c#|,"_s) !=
                playlistId(PlaylistSourceId::spotify, u"/a"_s, u"b.csv"_s, u"c#|,"_s));
    }

    void idsOfAllKindsOfListsOutliveAScan() {
        const EngineHome home;
        home.write(home.playlists(u"Two #1, a|b.csv"_s), "Playlist name,Track Name\nSame,x\nOther,y\n");
        home.addList(u"Same.csv"_s, {u"a|b|1"_s});
        home.addList(u"Sub/Same.csv"_s, {u"a|b|1"_s});
        home.write(home.playlists(u"Same.m3u"_s), "one.mp3\n");
        home.write(home.playlists(u"Same.m3u8"_s), "one.mp3\n");
        home.write(home.path(u"Music/Library.xml"_s),
                   library(track(1), list("Same", "L1", rows({1})) + list("Same", "L2", {}) + list("Same", "L2", {})));
        static const QRegularExpression form(u"^(apple|spotify):[0-9a-f]+$"_s);
        const auto snapshot = Bench(home).refresh();
        QCOMPARE(snapshot->playlists.size(), 10u);
        QCOMPARE(snapshot->byId.size(), 10);
        for (const Playlist &playlist : snapshot->playlists) {
            QVERIFY2(form.match(playlist.id).hasMatch(), qPrintable(playlist.id));
        }
        QCOMPARE(Bench(home).refresh()->byId.keys(), snapshot->byId.keys());
    }

    void foldersBecomeFoldersAndWarningsAreToldOnce() {
        const EngineHome home;
        home.addList(u"Top.csv"_s, {u"a|b|1"_s});
        home.addList(u"Sets/Same.csv"_s, {u"a|b|1"_s});
        home.addList(u"Other/Same.csv"_s, {u"a|b|1"_s});
        home.write(home.playlists(u"Sets/broken.csv"_s), "nothing\n");
        QVERIFY(QFile::link(home.playlists({}), home.playlists(u"Sets/round"_s)));
        Bench bench(home, {u"/nowhere"_s});
        const auto snapshot = bench.refresh();
        QCOMPARE(shown(*snapshot), QStringList({u"Other/"_s, u"Other/Same"_s, u"Sets/"_s, u"Sets/Same"_s, u"Top"_s}));
        QCOMPARE(snapshot->byId.size(), 5);
        QCOMPARE(bench.warnings().size(), 1);
        QVERIFY(bench.warnings()[0].contains(u"broken.csv, line 1"_s));
        QVERIFY(snapshot->unreadable.contains(u"/nowhere"_s));
        bench.refresh();
        QCOMPARE(bench.warnings().size(), 1);
        home.addList(u"Top.csv"_s, {u"a|b|1"_s, u"c|d|1"_s});
        const QString id = snapshot->playlists.back().id;
        QCOMPARE(bench.refresh()->find(id)->tracks->size(), 2u);
    }

    void theLibraryStandsBesideTheOtherLists() {
        const EngineHome home;
        home.addList(u"Mine.csv"_s, {u"a|b|1"_s});
        const QByteArray lists = list("Sets", "F1", yes("Folder")) +
                                 list("Inner", "L1", text("Parent Persistent ID", "F1") + rows({1})) +
                                 list("Music", "L2", yes("Master") + rows({1}));
        home.write(home.path(u"Music/Library.xml"_s), library(track(1), lists));
        home.write(home.playlists(u"Old/Library 2019.xml"_s), library(track(1), list("Back then", "L1", rows({1}))));
        Bench bench(home);
        const auto snapshot = bench.refresh();
        QCOMPARE(shown(*snapshot),
                 QStringList({u"Mine"_s, u"Old/"_s, u"Old/Back then"_s, u"Sets/"_s, u"Sets/Inner"_s}));
        const Playlist *inner = named(*snapshot, u"Inner"_s);
        QCOMPARE(inner->source, PlaylistSourceId::apple);
        QCOMPARE(inner->origin, home.path(u"Music/Library.xml"_s));
        QCOMPARE(inner->artwork, ArtworkRef::mosaic({u"P1"_s}));
        QVERIFY(!named(*snapshot, u"Sets"_s)->tracks);
        QCOMPARE(bench.warnings(), QStringList());
    }

    void aRenamedListOfTheLibraryKeepsItsId() {
        const EngineHome home;
        const QString path = home.path(u"Music/Library.xml"_s);
        home.write(path, library({}, list("Before", "L1", {})));
        Bench bench(home);
        const QString id = bench.refresh()->playlists.at(0).id;
        home.write(path, library({}, list("Behind", "L1", {})));
        const auto snapshot = bench.refresh();
        QCOMPARE(snapshot->playlists.at(0).id, id);
        QCOMPARE(snapshot->playlists.at(0).name, u"Behind"_s);
    }

    void listsOfOneFormInOneFolderAreOrderedByName() {
        const EngineHome home;
        for (const QString &name : {u"b"_s, u"A"_s, u"c"_s, u"B2/x"_s, u"B2/W"_s}) {
            home.addList(name + u".csv"_s, {u"a|b|1"_s});
        }
        QCOMPARE(shown(*Bench(home).refresh()), QStringList({u"A"_s, u"b"_s, u"B2/"_s, u"B2/W"_s, u"B2/x"_s, u"c"_s}));
    }

    void aFileThatCantBeReadIsToldWithNameAndLineAndTheOthersLoad_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("told");
        QTest::newRow("csv") << u"a.csv"_s << QByteArray("Date\n1\n") << u"a.csv, line 1: "_s;
        QTest::newRow("empty csv") << u"a.csv"_s << QByteArray() << u"a.csv: holds nothing"_s;
        QTest::newRow("xspf") << u"a.xspf"_s << QByteArray("<playlist>\n<tr") << u"a.xspf, line 2: "_s;
        QTest::newRow("library") << u"a.xml"_s << QByteArray("<plist>\n<dict>\n<key>") << u"a.xml, line 3: "_s;
        QTest::newRow("m3u") << u"a.m3u"_s << QByteArray("#EXTM3U\nx\0y\n", 12) << u"a.m3u, line 2: "_s;
    }

    void aFileThatCantBeReadIsToldWithNameAndLineAndTheOthersLoad() {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, told);
        const EngineHome home;
        home.write(home.playlists(name), bytes);
        home.addList(u"Sound.csv"_s, {u"a|b|1"_s});
        Bench bench(home);
        QVERIFY(named(*bench.refresh(), u"Sound"_s));
        QCOMPARE(bench.warnings().size(), 1);
        QVERIFY2(bench.warnings()[0].contains(told), qPrintable(bench.warnings()[0]));
        bench.refresh();
        QCOMPARE(bench.warnings().size(), 1);
    }

    void moreMistakesThanALogCanBearAreCounted() {
        const EngineHome home;
        home.write(home.playlists(u"a.csv"_s), "Track Name,x\n" + QByteArray(",1\n").repeated(1'000));
        Bench bench(home);
        bench.refresh();
        QCOMPARE(bench.warnings().size(), 21);
        QVERIFY(bench.warnings().last().contains(u"980 more"_s));
    }

    void aFileOfImpossibleSizeIsNotLookedInto() {
        const EngineHome home;
        home.addList(u"Sound.csv"_s, {u"a|b|1"_s});
        QFile file(home.playlists(u"Huge.csv"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(3'000'000'000)); // takes no room on the disk
        Bench bench(home);
        const auto snapshot = bench.refresh();
        QCOMPARE(shown(*snapshot), QStringList{u"Sound"_s});
        QVERIFY2(bench.warnings().value(0).contains(u"Huge.csv can't be read: it is larger than 2000000000 bytes"_s),
                 qPrintable(bench.warnings().value(0)));
        QVERIFY(snapshot->unreadable.contains(file.fileName()));
    }

    void linksInCirclesAndToNowhereAreSurvived() {
        const EngineHome home;
        home.addList(u"a/b/One.csv"_s, {u"a|b|1"_s});
        QVERIFY(QFile::link(home.playlists(u"a"_s), home.playlists(u"a/b/up"_s)));
        QVERIFY(QFile::link(home.playlists(u"self.csv"_s), home.playlists(u"self.csv"_s)));
        QVERIFY(QFile::link(home.playlists(u"gone"_s), home.playlists(u"link.csv"_s)));
        QCOMPARE(::mkfifo(home.playlists(u"pipe.csv"_s).toUtf8().constData(), 0600), 0);
        Bench bench(home);
        const auto snapshot = bench.refresh();
        QCOMPARE(shown(*snapshot), QStringList({u"a/"_s, u"a/b/"_s, u"b/One"_s}));
        QVERIFY(snapshot->unreadable.contains(home.playlists(u"self.csv"_s)));
        QVERIFY(snapshot->unreadable.contains(home.playlists(u"link.csv"_s)));
        QCOMPARE(bench.warnings().size(), 2);
    }

    void aFolderThatCantBeLookedIntoIsToldAndTheOthersLoad() {
        const EngineHome home;
        home.addList(u"One.csv"_s, {u"a|b|1"_s});
        Bench bench(home, {home.playlists(u"One.csv/inner"_s)});
        const auto snapshot = bench.refresh();
        QCOMPARE(shown(*snapshot), QStringList{u"One"_s});
        QCOMPARE(bench.warnings().size(), 1);
        QVERIFY(bench.warnings()[0].contains(u"One.csv/inner can't be read"_s));
        QVERIFY(snapshot->unreadable.contains(home.playlists(u"One.csv/inner"_s)));
    }

    void filesThatVanishWhileTheyAreReadAreSurvived() {
        const EngineHome home;
        QStringList names;
        for (int i = 0; i < 300; ++i) {
            names += u"%1/List.csv"_s.arg(i);
            home.addList(names.last(), {u"a|b|1"_s});
        }
        Bench bench(home);
        std::thread remover([&] {
            for (const QString &name : names) {
                QFile::remove(home.playlists(name));
                QDir().rmdir(home.playlists(name.section(u'/', 0, 0)));
            }
        });
        bench.refresh();
        remover.join();
        QCOMPARE(shown(*bench.refresh()), QStringList());
    }

    void twoFoldersThatOverlapGiveEachListOnce() {
        const EngineHome home;
        home.addList(u"Sub/One.csv"_s, {u"a|b|1"_s});
        Bench bench(home, {home.playlists(u"Sub"_s), QDir::cleanPath(home.playlists({}))});
        QCOMPARE(shown(*bench.refresh()), QStringList({u"Sub/"_s, u"Sub/One"_s}));
    }

    void whatHasNotChangedIsNotReadAgain() {
        const EngineHome home;
        home.addList(u"Same.csv"_s, {u"a|b|1"_s});
        home.addList(u"Other.csv"_s, {u"a|b|1"_s});
        Bench bench(home);
        const auto before = bench.refresh();
        home.addList(u"Other.csv"_s, {u"a|b|1"_s, u"c|d|1"_s});
        home.addList(u"New.csv"_s, {u"a|b|1"_s});
        const auto after = bench.refresh();
        QCOMPARE(shown(*after), QStringList({u"New"_s, u"Other"_s, u"Same"_s}));
        QCOMPARE(named(*after, u"Same"_s)->tracks.get(), named(*before, u"Same"_s)->tracks.get());
        QVERIFY(named(*after, u"Other"_s)->tracks != named(*before, u"Other"_s)->tracks);
    }

    void aFileReplacedByOneOfItsSizeAndTimeIsReadAgain() {
        const EngineHome home;
        const QString path = home.playlists(u"One.csv"_s);
        home.write(path, "Track Name\nold\n");
        Bench bench(home);
        QCOMPARE(bench.refresh()->playlists.at(0).tracks->at(0).title, u"old"_s);
        struct stat status {};
        QCOMPARE(::stat(path.toUtf8().constData(), &status), 0);
        home.write(path + u".new"_s, "Track Name\nnew\n");
        const timespec times[2] = {status.st_atim, status.st_mtim};
        QCOMPARE(::utimensat(AT_FDCWD, (path + u".new"_s).toUtf8().constData(), times, 0), 0);
        QCOMPARE(::rename((path + u".new"_s).toUtf8().constData(), path.toUtf8().constData()), 0);
        QCOMPARE(bench.refresh()->playlists.at(0).tracks->at(0).title, u"new"_s);
    }

    void aChangeIsReadWithoutBeingAskedFor_data() {
        QTest::addColumn<std::function<void(const EngineHome &)>>("change");
        QTest::addColumn<QStringList>("after");
        using Change = std::function<void(const EngineHome &)>;
        QTest::newRow("new file") << Change([](const EngineHome &home) { home.addList(u"New.csv"_s, {u"a|b|1"_s}); })
                                  << QStringList({u"L"_s, u"New"_s, u"Sub/"_s, u"Sub/One"_s});
        QTest::newRow("removed file") << Change([](const EngineHome &home) {
            QFile::remove(home.playlists(u"Sub/One.csv"_s));
        }) << QStringList({u"L"_s});
        QTest::newRow("changed file") << Change([](const EngineHome &home) {
            home.write(home.playlists(u"Sub/One.csv"_s), "Playlist name,Track Name\nChanged,x\n");
        }) << QStringList({u"L"_s, u"Sub/"_s, u"Sub/Changed"_s});
        QTest::newRow("replaced file") << Change([](const EngineHome &home) {
            home.write(home.path(u"fresh"_s), "Playlist name,Track Name\nChanged,x\n");
            QFile::remove(home.playlists(u"Sub/One.csv"_s));
            QFile::rename(home.path(u"fresh"_s), home.playlists(u"Sub/One.csv"_s));
        }) << QStringList({u"L"_s, u"Sub/"_s, u"Sub/Changed"_s});
        QTest::newRow("new folder") << Change([](const EngineHome &home) {
            home.addList(u"Sub/Deep/er/New.csv"_s, {u"a|b|1"_s});
        }) << QStringList({u"L"_s, u"Sub/"_s, u"Sub/Deep/"_s, u"Deep/er/"_s, u"er/New"_s, u"Sub/One"_s});
        QTest::newRow("library") << Change([](const EngineHome &home) {
            home.write(home.path(u"Music/Library.xml"_s), library({}, list("M", "L1", {})));
        }) << QStringList({u"M"_s, u"Sub/"_s, u"Sub/One"_s});
    }

    void aChangeIsReadWithoutBeingAskedFor() {
        QFETCH(std::function<void(const EngineHome &)>, change);
        QFETCH(QStringList, after);
        const EngineHome home;
        home.addList(u"Sub/One.csv"_s, {u"a|b|1"_s});
        home.write(home.path(u"Music/Library.xml"_s), library({}, list("L", "L1", {})));
        Bench bench(home);
        QCOMPARE(shown(*bench.refresh()), QStringList({u"L"_s, u"Sub/"_s, u"Sub/One"_s}));
        change(home);
        QTRY_COMPARE_WITH_TIMEOUT(shown(*bench->known(patience)), after, 20'000);
    }

    void manyChangesAtOnceAreOneScan() {
        const EngineHome home;
        home.addList(u"One.csv"_s, {u"a|b|1"_s});
        Bench bench(home);
        bench.refresh();
        for (int i = 0; i < 100; ++i) {
            home.addList(u"New %1.csv"_s.arg(i), {u"a|b|1"_s});
        }
        QTRY_COMPARE_WITH_TIMEOUT(bench->known(patience)->playlists.size(), 101u, 20'000);
        QVERIFY2(bench.scans < 20, qPrintable(QString::number(bench.scans)));
    }

    void thoseWhoAskAtOnceShareOneScan() {
        const EngineHome home;
        home.addList(u"One.csv"_s, {u"a|b|1"_s});
        Bench bench(home);
        bench.held = true;
        for (int i = 0; i < 8; ++i) {
            bench->refresh(std::chrono::milliseconds(0));
        }
        bench.begun.acquire();
        for (int i = 0; i < 8; ++i) {
            bench->refresh(std::chrono::milliseconds(0));
        }
        bench.gate.release();
        QTRY_COMPARE(bench.finished, 1);
        const bool another = bench.begun.tryAcquire(1, 200);
        bench.gate.release(10);
        QVERIFY(!another);
    }

    void whoAsksDuringAScanThatNobodyAskedForGetsANewOne() {
        const EngineHome home;
        Bench bench(home);
        bench.heldAtEnd = true;
        bench->lookAhead();
        bench.begun.acquire();
        bench.heldAtEnd = false;
        home.addList(u"One.csv"_s, {u"a|b|1"_s});
        std::shared_ptr<const PlaylistSnapshot> answer;
        std::thread asker([&] { answer = bench.refresh(); });
        bench->refresh(std::chrono::milliseconds(50)); // meanwhile the other has asked, too
        bench.gate.release();
        asker.join();
        QCOMPARE(shown(*answer), QStringList{u"One"_s});
    }

    void whoAsksAfterAChangeDuringAScanGetsANewOne() {
        const EngineHome home;
        home.addList(u"Old.csv"_s, {u"a|b|1"_s});
        Bench bench(home);
        bench.refresh(); // from now on the folder is watched
        bench.heldAtEnd = true;
        bench->refresh(std::chrono::milliseconds(0));
        bench.begun.acquire();
        bench.heldAtEnd = false;
        home.addList(u"One.csv"_s, {u"a|b|1"_s});
        bench->refresh(std::chrono::milliseconds(100)); // the news of the change arrive meanwhile
        std::shared_ptr<const PlaylistSnapshot> answer;
        std::thread asker([&] { answer = bench.refresh(); });
        bench->refresh(std::chrono::milliseconds(50));
        bench.gate.release();
        asker.join();
        QCOMPARE(shown(*answer), QStringList({u"Old"_s, u"One"_s}));
    }

    void whoHasWaitedLongEnoughGetsWhatIsKnownAndAWarning() {
        const EngineHome home;
        home.addList(u"One.csv"_s, {u"a|b|1"_s});
        Bench bench(home);
        const auto first = bench.refresh();
        QVERIFY(first->isComplete);
        home.addList(u"Two.csv"_s, {u"a|b|1"_s});
        bench.held = true;
        const auto late = bench->refresh(std::chrono::milliseconds(20));
        QCOMPARE(shown(*late), QStringList{u"One"_s});
        QVERIFY(!late->isComplete);
        QCOMPARE(bench.warnings().size(), 1);
        QVERIFY(bench.warnings()[0].contains(u"takes long"_s));
        bench.held = false;
        bench.gate.release(10);
        QCOMPARE(shown(*bench.refresh()), QStringList({u"One"_s, u"Two"_s}));
        QVERIFY(bench.refresh()->isComplete);
    }

    void aScanThatTakesLongIsSaidToOnce() {
        const EngineHome home;
        Bench bench(home);
        bench.held = true;
        for (int i = 0; i < 3; ++i) {
            bench->refresh(std::chrono::milliseconds(20));
        }
        QCOMPARE(bench.warnings().size(), 1);
        bench.held = false;
        bench.gate.release(10);
    }

    void whoIsAskedToStopWaitsNoLonger() {
        const EngineHome home;
        Bench bench(home);
        bench.held = true;
        std::stop_source stop;
        std::shared_ptr<const PlaylistSnapshot> answer;
        std::thread asker([&] { answer = bench->refresh(std::chrono::hours(1), stop.get_token()); });
        bench.begun.acquire();
        stop.request_stop();
        asker.join();
        QVERIFY(answer && !answer->isComplete);
        QCOMPARE(bench.warnings(), QStringList());
        bench.held = false;
        bench.gate.release(10);
    }

    void whoHasWaitedForTheFirstScanGetsNothingRatherThanNoAnswer() {
        const EngineHome home;
        home.addList(u"One.csv"_s, {u"a|b|1"_s});
        Bench bench(home);
        bench.held = true;
        const auto late = bench->refresh(std::chrono::milliseconds(20));
        QVERIFY(late && late->playlists.empty() && !late->isComplete);
        bench.held = false;
        bench.gate.release(10);
    }

    void aCatalogueThatGoesStopsItsScan() {
        const EngineHome home;
        home.addList(u"One.csv"_s, {u"a|b|1"_s});
        {
            Bench bench(home);
            bench->lookAhead();
        }
        Bench bench(home);
        QCOMPARE(bench.refresh()->playlists.size(), 1u);
    }
};

QTEST_GUILESS_MAIN(EngineCatalogue)
#include "tst_enginecatalogue.moc"
