#include "Library.h"

#include "Views/SidebarTree.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

QStringList namesOf(const std::vector<SidebarTree::Visible> &rows) {
    QStringList names;
    for (const SidebarTree::Visible &row : rows)
        names += QString(row.depth, u'>') + row.playlist->name;
    return names;
}

} // namespace

class SidebarTreeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void scopesAndQueries_data() {
        using Scope = SidebarTree::Scope;
        QTest::addColumn<QString>("text");
        QTest::addColumn<Scope>("scope");
        QTest::addColumn<QString>("query");
        QTest::newRow("empty") << QString() << Scope::all << QString();
        QTest::newRow("plain") << u"  deep house\t"_s << Scope::all << u"deep house"_s;
        QTest::newRow("apple") << u"apple:late"_s << Scope::apple << u"late"_s;
        QTest::newRow("any case, spaces after it") << u"APPLE:  late"_s << Scope::apple << u"late"_s;
        QTest::newRow("spotify alone") << u"spotify:"_s << Scope::spotify << QString();
        QTest::newRow("both, apple first") << u"apple:Spotify: x"_s << Scope::apple << u"x"_s;
        QTest::newRow("both, spotify first") << u"spotify:apple:x"_s << Scope::spotify << u"apple:x"_s;
        QTest::newRow("not at the beginning") << u" apple:x"_s << Scope::all << u"apple:x"_s;
        QTest::newRow("line feeds stay") << u"x\n"_s << Scope::all << u"x\n"_s;
    }
    void scopesAndQueries() {
        QFETCH(QString, text);
        QTEST(SidebarTree::scopeOf(text), "scope");
        QTEST(SidebarTree::queryOf(text), "query");
    }

    void aScopeShowsItsSourceAlone() {
        using Scope = SidebarTree::Scope;
        for (const auto source : {PlaylistSourceId::apple, PlaylistSourceId::spotify}) {
            QVERIFY(SidebarTree::shows(Scope::all, source));
            QCOMPARE(SidebarTree::shows(Scope::apple, source), source == PlaylistSourceId::apple);
            QCOMPARE(SidebarTree::shows(Scope::spotify, source), source == PlaylistSourceId::spotify);
        }
    }

    void sourcesStandInTheirFixedOrder() {
        Library library({playlist("s", PlaylistSourceId::spotify), playlist("a", PlaylistSourceId::apple)});
        QCOMPARE(SidebarTree::sources(*library), (std::vector{PlaylistSourceId::apple, PlaylistSourceId::spotify}));
        Library one({playlist("s", PlaylistSourceId::spotify)});
        QCOMPARE(SidebarTree::sources(*one), std::vector{PlaylistSourceId::spotify});
    }

    void theHeadCountsPlaylistsAndNoFolders() {
        Library library = tree();
        QCOMPARE(SidebarTree::playlistCount(*library, PlaylistSourceId::apple), 4);
        QCOMPARE(SidebarTree::playlistCount(*library, PlaylistSourceId::spotify), 0);
    }

    void rows_data() {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QSet<QString>>("expansion");
        QTest::addColumn<QStringList>("rows");
        const QSet<QString> none;
        QTest::newRow("all closed") << QString() << none << QStringList{u"outer"_s, u"empty"_s, u"solo"_s};
        QTest::newRow("one open") << QString() << QSet<QString>{u"outer"_s}
                                  << QStringList{u"outer"_s, u">first"_s, u">inner"_s, u"empty"_s, u"solo"_s};
        QTest::newRow("an open one in a closed one")
            << QString() << QSet<QString>{u"inner"_s} << QStringList{u"outer"_s, u"empty"_s, u"solo"_s};
        QTest::newRow("a match opens what is above it")
            << u"DEEP"_s << none << QStringList{u"outer"_s, u">inner"_s, u">>deep one"_s, u">>deep two"_s};
        QTest::newRow("a folder's own name shows it empty") << u"outer"_s << none << QStringList{u"outer"_s};
        QTest::newRow("no match") << u"zzz"_s << QSet<QString>{u"outer"_s} << QStringList{};
    }
    void rows() {
        Library library = tree();
        QFETCH(QString, query);
        QFETCH(QSet<QString>, expansion);
        QTEST(namesOf(SidebarTree::visibleRows(*library, PlaylistSourceId::apple, query, expansion)), "rows");
    }

    void namesMatchInAnyCaseOfTheLocale() {
        Library library({playlist("DIŞARI", PlaylistSourceId::apple), playlist("other", PlaylistSourceId::apple)});
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::Turkish, QLocale::Turkey));
        const auto turkish = namesOf(SidebarTree::visibleRows(*library, PlaylistSourceId::apple, u"dışarı"_s, {}));
        QLocale::setDefault(QLocale(QLocale::German));
        const auto german = namesOf(SidebarTree::visibleRows(*library, PlaylistSourceId::apple, u"dışarı"_s, {}));
        QLocale::setDefault(before);
        QCOMPARE(turkish, QStringList{u"DIŞARI"_s});
        QCOMPARE(german, QStringList());
    }

    void onlyFoldersMatchByWhatIsInThem() {
        Library library(
            {playlist("list", PlaylistSourceId::apple), playlist("odd one", PlaylistSourceId::apple, false, "list")});
        QCOMPARE(SidebarTree::visibleRows(*library, PlaylistSourceId::apple, u"odd"_s, {}).size(), 0U);
    }

    void aFolderStandsForAllThatIsUnderIt() {
        Library library = tree();
        using Ids = QSet<QString>;
        QCOMPARE(SidebarTree::descendantLeafIds(*library, u"outer"_s), (Ids{u"first"_s, u"deep one"_s, u"deep two"_s}));
        QCOMPARE(SidebarTree::descendantLeafIds(*library, u"empty"_s), Ids());
        QCOMPARE(SidebarTree::expandFolders(*library, {u"inner"_s, u"solo"_s, u"gone"_s}),
                 (Ids{u"deep one"_s, u"deep two"_s, u"solo"_s, u"gone"_s}));
        QCOMPARE(SidebarTree::expandFolders(*library, {u"empty"_s}), Ids());
        QCOMPARE(SidebarTree::foldersOf(*library, {u"inner"_s, u"solo"_s, u"gone"_s}), Ids{u"inner"_s});
    }

    void onlyPlaylistsThatAreThereCountAsSelected() {
        Library library = tree();
        QCOMPARE(SidebarTree::selectedPlaylistCount(*library), 0);
        library->setSelection({u"solo"_s, u"inner"_s, u"gone"_s, u"first"_s});
        QCOMPARE(SidebarTree::selectedPlaylistCount(*library), 2);
    }

    void aLibraryThatContainsItselfTrapsNoWalk() {
        Library library(
            {playlist("loop", PlaylistSourceId::apple, true), playlist("loop", PlaylistSourceId::apple, true, "loop")});
        QVERIFY(!SidebarTree::Filter(*library, u"x"_s).matches(library->playlists().front()));
        QVERIFY(SidebarTree::descendantLeafIds(*library, u"loop"_s).isEmpty());
        const auto rows = SidebarTree::visibleRows(*library, PlaylistSourceId::apple, {}, {u"loop"_s});
        QVERIFY(!rows.empty() && rows.size() < 100);
    }

    void idsThatRepeatCostNoWalkMoreThanOnce() {
        // Two entries of each name below each of the level above: walked one by one, they are 2^40 paths.
        std::vector<PlaylistDTO> entries{playlist("0", PlaylistSourceId::apple, true)};
        for (int level = 1; level <= 40; ++level) {
            for (int twin = 0; twin < 2; ++twin) {
                PlaylistDTO entry = playlist("0", PlaylistSourceId::apple, true);
                entry.id = QString::number(level);
                entry.parentId = QString::number(level - 1);
                entries.push_back(std::move(entry));
            }
        }
        QSet<QString> all;
        for (const auto &entry : entries)
            all.insert(entry.id);
        Library library(entries);
        QVERIFY(!SidebarTree::Filter(*library, u"x"_s).matches(library->playlists().front()));
        QVERIFY(SidebarTree::descendantLeafIds(*library, u"0"_s).isEmpty());
        QVERIFY(SidebarTree::visibleRows(*library, PlaylistSourceId::apple, {}, all).size() <= entries.size());
    }

private:
    static Library tree() {
        constexpr auto apple = PlaylistSourceId::apple;
        return Library({playlist("outer", apple, true), playlist("first", apple, false, "outer"),
                        playlist("inner", apple, true, "outer"), playlist("deep one", apple, false, "inner"),
                        playlist("deep two", apple, false, "inner"), playlist("empty", apple, true),
                        playlist("solo", apple)});
    }
};

QTEST_MAIN(SidebarTreeTest)
#include "tst_sidebartree.moc"
