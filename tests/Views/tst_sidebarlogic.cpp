#include "WindowBench.h"

#include "Views/SidebarLogic.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

using Ids = QSet<QString>;

// The sidebar's logic over a model whose engine has the library of the window's bench.
struct Bench {
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<MockHelperClient> client;
    AppModel model{client, surroundings(clock)};
    SidebarLogic logic{model, clock};
    QAbstractItemModelTester tester{logic.playlists(), QAbstractItemModelTester::FailureReportingMode::QtTest};

    explicit Bench(const std::vector<PlaylistDTO> &listed = WindowBench::library())
        : client(std::make_shared<MockHelperClient>(MockHelperClient::Responses{
              {Method::listPlaylists, toJSONValue(listed)},
              {Method::getPlaylistTracks, SampleData::previewTracksResult()},
          })) {
        logic.refresh();
        if (!QTest::qWaitFor([this] { return !model.library()->playlists().empty(); }))
            qFatal("no library");
    }

    int row(const char *id) { return logic.playlists()->indexOf(QString::fromLatin1(id)); }
    void press(const char *id, Qt::KeyboardModifiers modifiers = {}) { logic.press(row(id), modifiers.toInt()); }
    Ids selection() const { return model.library()->selection(); }
    QStringList names() {
        QStringList result;
        for (const SidebarRow &each : logic.playlists()->rows())
            result += QString(each.depth, u'>') + each.name;
        return result;
    }
    // How many preview fetches the model has begun: one for each time it was told of a selection.
    int previews() const { return clock->pendingAlarms(); }
};

} // namespace

class SidebarLogicTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { settleDown(); }

    void itWaitsWithoutALibrary() {
        AppModel model([]() -> AppModel::Engine { throw HelperError::helperMissing(); }, surroundings());
        const SidebarLogic logic(model, std::make_shared<ManualClock>());
        QCOMPARE(logic.face(), SidebarLogic::Waiting);
    }

    void anEmptyLibraryLoadsAndIsThenEmpty() {
        AppModel model(std::make_shared<MockHelperClient>(
                           MockHelperClient::Responses{{Method::listPlaylists, JSONValue::array({})}}),
                       surroundings());
        SidebarLogic logic(model, std::make_shared<ManualClock>());
        QCOMPARE(logic.face(), SidebarLogic::Empty);
        QList<SidebarLogic::Face> faces;
        connect(&logic, &SidebarLogic::faceChanged, this, [&] { faces.append(logic.face()); });
        logic.refresh();
        QTRY_COMPARE(faces, (QList{SidebarLogic::Loading, SidebarLogic::Empty}));
    }

    void aFailureSaysWhyAndOffersToTryAgain() {
        AppModel model(std::make_shared<MockHelperClient>(
                           MockHelperClient::Responses{{Method::listPlaylists, JSONValue::string(u"no list"_s)}}),
                       surroundings());
        SidebarLogic logic(model, std::make_shared<ManualClock>());
        logic.refresh();
        QTRY_COMPARE(logic.face(), SidebarLogic::Failed);
        QVERIFY(!logic.failure().isEmpty());
    }

    void aReloadKeepsTheListOnScreen() {
        Bench bench;
        QCOMPARE(bench.logic.face(), SidebarLogic::List);
        QSignalSpy faces(&bench.logic, &SidebarLogic::faceChanged);
        QSignalSpy loads(bench.model.library(), &LibraryStore::loadStateChanged);
        bench.logic.refresh();
        QTRY_COMPARE(loads.count(), 2);
        QCOMPARE(faces.count(), 0);
    }

    void theListHasASectionASource() {
        Bench bench;
        QCOMPARE(bench.names(), (QStringList{u"Apple Music"_s, u"Gigs 2025"_s, u"Crates"_s, u"Broken Beat Sketches"_s,
                                             u"Spotify"_s, u"Peak Time 132"_s, u"Requests"_s}));
    }

    void aFilterKeepsHeadsAndCountsAndOpensFolders() {
        Bench bench;
        bench.logic.setSearchText(u"hour"_s);
        QCOMPARE(bench.names(),
                 (QStringList{u"Apple Music"_s, u"Gigs 2025"_s, u">Late"_s, u">>Last Hour"_s, u"Spotify"_s}));
        QCOMPARE(bench.logic.playlists()->rowAt(0)->count, 3);
        QVERIFY(bench.logic.playlists()->rowAt(1)->expanded);
        QVERIFY(!bench.logic.playlists()->rowAt(1)->expandable);
        bench.logic.toggleExpansion(1);
        QVERIFY(bench.logic.playlists()->rowAt(1)->expanded);
        bench.logic.setSearchText(u"no such thing"_s);
        QCOMPARE(bench.names(), (QStringList{u"Apple Music"_s, u"Spotify"_s}));
        QCOMPARE(bench.logic.face(), SidebarLogic::List);
        bench.logic.setSearchText({});
        QVERIFY(!bench.logic.playlists()->rowAt(1)->expanded);
        QCOMPARE(bench.names().size(), 7);
    }

    void clearingTheFilterBringsTheUsersExpansionBack() {
        Bench bench;
        bench.logic.setExpanded(bench.row("gigs"), true);
        const QStringList before = bench.names();
        bench.logic.setSearchText(u"peak"_s);
        bench.logic.setSearchText({});
        QCOMPARE(bench.names(), before);
    }

    void aScopeShowsOneSectionInFull() {
        Bench bench;
        bench.logic.setSearchText(u"Spotify:"_s);
        QCOMPARE(bench.names(), (QStringList{u"Spotify"_s, u"Peak Time 132"_s, u"Requests"_s}));
    }

    void aClickSelectsThatRowAlone() {
        Bench bench;
        bench.press("peak");
        bench.press("broken");
        QCOMPARE(bench.selection(), Ids{u"broken"_s});
    }

    void ctrlAddsAndTakes() {
        Bench bench;
        bench.press("peak");
        bench.press("broken", Qt::ControlModifier);
        QCOMPARE(bench.selection(), (Ids{u"broken"_s, u"peak"_s}));
        bench.press("peak", Qt::ControlModifier);
        QCOMPARE(bench.selection(), Ids{u"broken"_s});
    }

    void shiftSelectsFromTheAnchorAndKeepsIt() {
        Bench bench;
        bench.press("broken");
        bench.press("requests", Qt::ShiftModifier);
        QCOMPARE(bench.selection(), (Ids{u"broken"_s, u"peak"_s, u"requests"_s}));
        bench.press("peak", Qt::ShiftModifier);
        QCOMPARE(bench.selection(), (Ids{u"broken"_s, u"peak"_s}));
        // Without an anchor it is a click.
        Bench other;
        other.press("peak", Qt::ShiftModifier);
        QCOMPARE(other.selection(), Ids{u"peak"_s});
    }

    void ctrlAndShiftAddTheRangeToWhatIsSelected() {
        Bench bench;
        bench.press("requests");
        bench.press("broken", Qt::ControlModifier);
        bench.press("peak", Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(bench.selection(), (Ids{u"broken"_s, u"peak"_s, u"requests"_s}));
    }

    void aFolderSelectsAllUnderItAndOpens() {
        Bench bench;
        QSignalSpy selections(bench.model.library(), &LibraryStore::selectionChanged);
        bench.press("gigs");
        QCOMPARE(bench.selection(), (Ids{u"terrace"_s, u"lasthour"_s}));
        QVERIFY(bench.logic.playlists()->rowAt(bench.row("gigs"))->expanded);
        QVERIFY(!bench.logic.isExpanded(u"inner"_s));
        // Twice the selection changed, and once the model heard of it.
        QCOMPARE(selections.count(), 2);
        QTRY_COMPARE(bench.previews(), 1);
    }

    void anEmptyFolderLeavesTheSelectionAndStaysOpen() {
        Bench bench;
        bench.press("crates");
        QCOMPARE(bench.selection(), Ids());
        QVERIFY(bench.logic.isExpanded(u"crates"_s));
    }

    void selectedIdsThatAreNotInTheListSurvive() {
        Bench bench;
        bench.model.library()->setSelection({u"gone"_s, u"inner"_s});
        QCOMPARE(bench.selection(), (Ids{u"gone"_s, u"lasthour"_s}));
    }

    void sectionsAreNotSelectable() {
        Bench bench;
        bench.press("peak");
        bench.logic.press(0, 0);
        bench.logic.press(-1, 0);
        bench.logic.press(99, 0);
        QCOMPARE(bench.selection(), Ids{u"peak"_s});
    }

    void aRowsSourceIsItsPlaylists() {
        auto playlists = WindowBench::library();
        playlists[1].source = PlaylistSourceId::spotify; // in a folder of the other source
        Bench bench(playlists);
        bench.logic.setExpanded(bench.row("gigs"), true);
        QCOMPARE(bench.logic.playlists()->rowAt(bench.row("terrace"))->source, PlaylistSourceId::spotify);
        QCOMPARE(bench.logic.playlists()->rowAt(bench.row("gigs"))->source, PlaylistSourceId::apple);
    }

    void ctrlWithTheArrowsMovesWithoutSelecting() {
        Bench bench;
        bench.press("peak");
        bench.logic.moved(bench.row("requests"), Qt::ControlModifier);
        QCOMPARE(bench.selection(), Ids{u"peak"_s});
        bench.logic.moved(bench.row("requests"), Qt::NoModifier);
        QCOMPARE(bench.selection(), Ids{u"requests"_s});
    }

    void allMeansAllThatShows() {
        Bench bench;
        bench.logic.setSearchText(u"spotify:"_s);
        bench.logic.selectAll();
        QCOMPARE(bench.selection(), (Ids{u"peak"_s, u"requests"_s}));
    }

    void expandingInsertsAndCollapsingRemovesJustThoseRows() {
        Bench bench;
        QSignalSpy inserted(bench.logic.playlists(), &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(bench.logic.playlists(), &QAbstractItemModel::rowsRemoved);
        QSignalSpy wasReset(bench.logic.playlists(), &QAbstractItemModel::modelReset);
        bench.logic.toggleExpansion(bench.row("gigs"));
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted[0][1].toInt(), 2);
        QCOMPARE(inserted[0][2].toInt(), 3);
        bench.logic.toggleExpansion(bench.row("gigs"));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed[0][1].toInt(), 2);
        QCOMPARE(removed[0][2].toInt(), 3);
        QCOMPARE(wasReset.count(), 0);
    }

    void placesAreExact() {
        Bench bench;
        bench.logic.setExpanded(bench.row("gigs"), true);
        const SidebarModel &list = *bench.logic.playlists();
        double y = 0;
        for (int i = 0; i < list.rowCount(); ++i) {
            QCOMPARE(list.yOf(i), y);
            QCOMPARE(list.indexAt(y), i);
            QCOMPARE(list.indexAt(y + list.heightOf(i) - 0.01), i);
            y += list.heightOf(i);
        }
        QCOMPARE(list.contentHeight(), y);
        QCOMPARE(list.indexAt(-1), 0);
        QCOMPARE(list.indexAt(y + 1), list.rowCount() - 1);
    }

    void rowsSayWhatTheyAre() {
        SidebarEntry entry;
        SidebarRow row{.kind = SidebarRow::Kind::playlist,
                       .id = u"p"_s,
                       .source = PlaylistSourceId::spotify,
                       .name = u"Peak"_s,
                       .count = 1};
        entry.load(row);
        QCOMPARE(entry.spoken(), u"Peak, Spotify, 1 tracks"_s);
        QCOMPARE(entry.symbol(), u"music.note.list"_s);
        row.count.reset();
        row.source = PlaylistSourceId::apple;
        entry.load(row);
        QCOMPARE(entry.spoken(), u"Peak, Apple Music, 0 tracks"_s);
        QCOMPARE(entry.caption(), QString());
        QCOMPARE(entry.symbol(), u"music.note"_s);
        row.kind = SidebarRow::Kind::folder;
        entry.load(row);
        QCOMPARE(entry.hint(), u"Select all playlists in “Peak”"_s);
        QCOMPARE(entry.spoken(), u"Peak"_s);
        row.kind = SidebarRow::Kind::section;
        row.count = 9;
        entry.load(row);
        QCOMPARE(entry.caption(), u"9"_s);
    }
};

QTEST_MAIN(SidebarLogicTest)
#include "tst_sidebarlogic.moc"
