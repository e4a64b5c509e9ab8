#include "App/Surroundings.h"
#include "Views/TrackColumns.h"

#include <QTest>

#include <numeric>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Layout = TrackColumns::Layout;

namespace {

constexpr double wide = 1000; // of the pane
constexpr int afterTitle = 0, afterArtist = 1, afterAlbum = 2, afterTime = 3, afterQuality = 4, afterSource = 5;

Layout layoutOf(double pane, const ColumnWidths &chosen, bool roomy = false) {
    return TrackColumns::layout(pane - 48, pane, roomy, 1, chosen);
}

// The widths with the gap after each column, in their order.
QList<double> rooms(const Layout &layout) {
    QList<double> result;
    for (const auto *column :
         {&layout.title, &layout.artist, &layout.album, &layout.time, &layout.quality, &layout.source, &layout.status})
        result += column->width + (column->width > 0 && column != &layout.status ? 8 : 0);
    return result;
}

double sum(const QList<double> &numbers) {
    return std::accumulate(numbers.begin(), numbers.end(), 0.0);
}

} // namespace

Q_DECLARE_METATYPE(zelk::ColumnWidths)

class TrackColumnsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDragTakesFromTheOneWhatItGivesToTheOther_data() {
        QTest::addColumn<int>("edge");
        QTest::addColumn<double>("by");
        QTest::addColumn<QList<double>>("changes"); // title, artist, album, time, quality, source, status
        using L = QList<double>;
        QTest::newRow("title, artist") << afterTitle << 20.0 << L{20, -20, 0, 0, 0, 0, 0};
        QTest::newRow("back") << afterTitle << -20.0 << L{-20, 20, 0, 0, 0, 0, 0};
        QTest::newRow("artist, album") << afterArtist << 15.0 << L{0, 15, -15, 0, 0, 0, 0};
        QTest::newRow("over the time") << afterAlbum << -12.0 << L{0, 0, -12, 0, 12, 0, 0};
        QTest::newRow("after the time") << afterTime << 12.0 << L{0, 0, 12, 0, -12, 0, 0};
        QTest::newRow("quality, source") << afterQuality << 30.0 << L{0, 0, 0, 0, 30, -30, 0};
        QTest::newRow("source, status") << afterSource << -25.0 << L{0, 0, 0, 0, 0, -25, 25};
        QTest::newRow("parts of a pixel") << afterTitle << 19.6 << L{20, -20, 0, 0, 0, 0, 0};
        QTest::newRow("nowhere") << afterTitle << 0.2 << L{0, 0, 0, 0, 0, 0, 0};
        QTest::newRow("quality at its least") << afterQuality << -500.0 << L{0, 0, 0, 0, -26, 26, 0};
        QTest::newRow("source at its least") << afterQuality << 500.0 << L{0, 0, 0, 0, 30, -30, 0};
        QTest::newRow("status at its least") << afterSource << 500.0 << L{0, 0, 0, 0, 0, 40, -40};
        QTest::newRow("the time's other side at its least") << afterTime << 500.0 << L{0, 0, 26, 0, -26, 0, 0};
        // 486 wide names: 223, 147 and 116.
        QTest::newRow("a name at its least") << afterTitle << -500.0 << L{-163, 163, 0, 0, 0, 0, 0};
        QTest::newRow("the other name at its least") << afterTitle << 500.0 << L{87, -87, 0, 0, 0, 0, 0};
        QTest::newRow("the album at its least") << afterAlbum << -500.0 << L{0, 0, -56, 0, 56, 0, 0};
    }
    void aDragTakesFromTheOneWhatItGivesToTheOther() {
        QFETCH(int, edge);
        QFETCH(double, by);
        QFETCH(QList<double>, changes);
        const Layout before = layoutOf(wide, {});
        const ColumnWidths chosen = TrackColumns::dragged(before, {}, edge, by);
        QList<double> expected = rooms(before);
        for (int i = 0; i < expected.size(); ++i)
            expected[i] += changes[i];
        const Layout after = layoutOf(wide, chosen);
        QCOMPARE(rooms(after), expected);
        // And once more from there, back to where it was.
        const double back = edge == afterTime ? -changes[2] : -changes[edge];
        QCOMPARE(rooms(layoutOf(wide, TrackColumns::dragged(after, chosen, edge, back))), rooms(before));
    }

    void anEdgeStandsInTheMiddleOfItsGap() {
        const Layout layout = layoutOf(wide, {});
        const QList<double> edges = TrackColumns::edgesOf(layout);
        QCOMPARE(edges.size(), 6);
        QCOMPARE(edges[afterTitle], layout.artist.x - 4);
        QCOMPARE(edges[afterArtist], layout.album.x - 4);
        QCOMPARE(edges[afterAlbum], layout.time.x - 4);
        QCOMPARE(edges[afterTime], layout.quality.x - 4);
        QCOMPARE(edges[afterQuality], layout.source.x - 4);
        QCOMPARE(edges[afterSource], layout.status.x - 4);
    }

    void aColumnThatWasDroppedHasNoEdge() {
        const QList<double> noAlbum = TrackColumns::edgesOf(layoutOf(639, {}));
        QVERIFY(noAlbum[afterAlbum] < 0);
        QVERIFY(noAlbum[afterArtist] > 0);
        const Layout narrow = layoutOf(500, {}); // title, artist, time and status
        const QList<double> edges = TrackColumns::edgesOf(narrow);
        QVERIFY(edges[afterAlbum] < 0 && edges[afterQuality] < 0 && edges[afterSource] < 0);
        QCOMPARE(edges[afterArtist], narrow.time.x - 4);
        QCOMPARE(edges[afterTime], narrow.status.x - 4);
        // What no edge is at changes nothing.
        QCOMPARE(TrackColumns::dragged(Layout(), {}, afterTitle, 50), ColumnWidths());
    }

    void whatIsChosenFillsTheRoomInEveryPane_data() {
        QTest::addColumn<ColumnWidths>("chosen");
        QTest::newRow("nothing") << ColumnWidths();
        QTest::newRow("names") << ColumnWidths{.title = 60, .artist = 300, .album = 60};
        QTest::newRow("one name far ahead") << ColumnWidths{.title = 4096, .artist = 60, .album = 60};
        QTest::newRow("quality") << ColumnWidths{.quality = 300};
        QTest::newRow("all at their least") << ColumnWidths{60, 60, 60, 84, 80, 120};
        QTest::newRow("all at their most") << ColumnWidths{4096, 4096, 4096, 4096, 4096, 4096};
        QTest::newRow("status") << ColumnWidths{.status = 900};
    }
    void whatIsChosenFillsTheRoomInEveryPane() {
        QFETCH(ColumnWidths, chosen);
        for (double pane = 500; pane < 2400; pane += 7) {
            for (const bool roomy : {false, true}) {
                const Layout layout = layoutOf(pane, chosen, roomy);
                const QList<double> widths = rooms(layout);
                QVERIFY2(std::abs(38 + sum(widths) - (pane - 48)) < 0.001, qPrintable(QString::number(pane)));
                QCOMPARE(widths[3], 48.0);
                QVERIFY(widths[0] > 0 && widths[1] > 0);
                QVERIFY(widths[2] > 0 || pane < 640);
                QVERIFY(widths[4] >= 84 || (widths[4] == 0 && pane < 640));
                QVERIFY(widths[5] >= 80 || (widths[5] == 0 && pane < 640));
                QVERIFY(widths[6] >= 120);
            }
        }
    }

    void namesKeepTheirProportionWhenTheWindowGrows() {
        const ColumnWidths chosen{.title = 243, .artist = 127, .album = 116};
        QCOMPARE(rooms(layoutOf(wide, chosen)).first(3), (QList<double>{243, 127, 116}));
        QCOMPARE(rooms(layoutOf(wide + 486, chosen)).first(3), (QList<double>{486, 254, 232}));
        QCOMPARE(layoutOf(wide + 486, chosen).quality.width, 102.0);
    }

    void theAlbumKeepsItsPartWhileItIsDropped() {
        const Layout narrow = layoutOf(600, {});
        QCOMPARE(narrow.album.width, 0.0);
        const ColumnWidths chosen = TrackColumns::dragged(narrow, {}, afterTitle, 10);
        QCOMPARE(layoutOf(600, chosen).title.width, narrow.title.width + 10);
        QVERIFY(chosen.album);
        const QList<double> shown = rooms(layoutOf(wide, chosen));
        QVERIFY2(std::abs(shown[2] / (shown[0] + shown[1] + shown[2]) - 0.24) < 0.01,
                 qPrintable(QString::number(shown[2])));
    }

    void whereNamesAreShortOfRoomNothingElseGrows() {
        const Layout tight = layoutOf(640, {}, true);
        QVERIFY(sum(rooms(tight).first(3)) < 250);
        QCOMPARE(TrackColumns::dragged(tight, {}, afterQuality, 20), ColumnWidths());
        QCOMPARE(TrackColumns::dragged(tight, {}, afterSource, 20), ColumnWidths());
        QCOMPARE(TrackColumns::dragged(tight, {}, afterAlbum, -20), ColumnWidths());
    }

    void aReleasedEdgeHasBothItsSidesAutomaticAgain_data() {
        QTest::addColumn<int>("edge");
        QTest::addColumn<ColumnWidths>("left");
        QTest::newRow("title") << afterTitle << ColumnWidths{.quality = 100, .source = 120, .status = 160};
        QTest::newRow("artist") << afterArtist << ColumnWidths{.quality = 100, .source = 120, .status = 160};
        QTest::newRow("album") << afterAlbum << ColumnWidths{.source = 120, .status = 160};
        QTest::newRow("time") << afterTime << ColumnWidths{.source = 120, .status = 160};
        QTest::newRow("quality") << afterQuality
                                 << ColumnWidths{.title = 200, .artist = 150, .album = 136, .status = 160};
        QTest::newRow("source") << afterSource
                                << ColumnWidths{.title = 200, .artist = 150, .album = 136, .quality = 100};
    }
    void aReleasedEdgeHasBothItsSidesAutomaticAgain() {
        QFETCH(int, edge);
        QFETCH(ColumnWidths, left);
        const ColumnWidths all{200, 150, 136, 100, 120, 160};
        QCOMPARE(TrackColumns::released(layoutOf(wide, all), all, edge), left);
    }

    void aDownloadGivesMoreRoomOnlyToAStatusThatNobodyHasSized() {
        QCOMPARE(layoutOf(wide, {}, true).status.width, 192.0);
        QCOMPARE(layoutOf(wide, {.quality = 100}, true).status.width, 192.0);
        QCOMPARE(layoutOf(wide, {.status = 140}, true).status.width, 140.0);
    }

    void theWidthsSurviveARestart() {
        const auto defaults = freshDefaults();
        const ColumnWidths all{200, 150, 136, 100, 120, 160};
        WindowMemory(defaults).setColumnWidths(all);
        QCOMPARE(WindowMemory(defaults).columnWidths(), all);
        WindowMemory(defaults).setColumnWidths({.quality = 90});
        QCOMPARE(WindowMemory(defaults).columnWidths(), ColumnWidths{.quality = 90});
        QVERIFY(!defaults->value(u"titleColumnWidth"_s).isValid());
    }

    void nonsenseInTheDefaultsIsNoWidth_data() {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("negative") << QVariant(-100);
        QTest::newRow("nothing") << QVariant(0);
        QTest::newRow("below the least") << QVariant(79);
        QTest::newRow("huge") << QVariant(5000);
        QTest::newRow("beyond an int") << QVariant(u"99999999999999999999"_s);
        QTest::newRow("text") << QVariant(u"wide"_s);
        QTest::newRow("empty") << QVariant(QString());
        QTest::newRow("not a number") << QVariant(u"nan"_s);
        QTest::newRow("a list") << QVariant(QStringList{u"100"_s, u"110"_s});
    }
    void nonsenseInTheDefaultsIsNoWidth() {
        QFETCH(QVariant, value);
        const auto defaults = freshDefaults();
        WindowMemory(defaults).setColumnWidths({200, 150, 136, 100, 120, 160});
        defaults->set(u"sourceColumnWidth"_s, value);
        QCOMPARE(WindowMemory(defaults).columnWidths(), (ColumnWidths{200, 150, 136, 100, std::nullopt, 160}));
        // The names share their room: without one of them the other two mean nothing.
        defaults->set(u"artistColumnWidth"_s, QVariant(-1));
        QCOMPARE(WindowMemory(defaults).columnWidths(), (ColumnWidths{.quality = 100, .status = 160}));
    }

    void theSortColumnIsKeptAsItWasTold() {
        const auto defaults = freshDefaults();
        QCOMPARE(WindowMemory(defaults).sortColumn(), u"index"_s);
        QVERIFY(!defaults->value(u"trackSortColumn"_s).isValid());
        for (const QString &column : {u"title"_s, u"no such column"_s, QString()}) {
            WindowMemory(defaults).setSortColumn(column);
            QCOMPARE(WindowMemory(defaults).sortColumn(), column);
            QCOMPARE(defaults->value(u"trackSortColumn"_s).toString(), column);
        }
    }

    void columnsWithoutAMemoryStayAsTheyAre() {
        TrackColumns columns;
        columns.setWidth(wide);
        const double title = columns.titleWidth();
        columns.beginDrag();
        columns.drag(afterTitle, 40);
        columns.release(afterTitle);
        QCOMPARE(columns.titleWidth(), title);
    }
};

QTEST_GUILESS_MAIN(TrackColumnsTest)
#include "tst_trackcolumns.moc"
