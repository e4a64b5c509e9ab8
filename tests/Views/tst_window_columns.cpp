#include "WindowBench.h"

#include <QCursor>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int afterTitle = 0, afterQuality = 4;

// A run of two short playlists in a window wide enough for every column.
struct Bench : WindowBench {
    explicit Bench(std::shared_ptr<UserDefaults> defaults = onboardedDefaults())
        : WindowBench(std::make_shared<MockHelperClient>(), std::move(defaults)) {
        window.window()->resize(1400, 720);
        beginRun(2, 3);
        QTRY_COMPARE((item("trackTable") ? item("trackTable")->width() : 0),
                     1400.0 - 280); // once the panel beside it has moved out
    }

    // Where a column's texts stand, in the heads of both tables and in all rows.
    QList<double> edgesOf(const QString &head, const QString &cell) const {
        QList<double> found;
        for (QQuickItem *text : itemsOf(content(), [&](QQuickItem *each) {
                 const QString said = each->property("text").toString();
                 return each->inherits("QQuickText") && (said == head || said == cell);
             }))
            found += text->mapToScene(QPointF(0, 0)).x();
        return found;
    }
    QPoint at(int edge, int table = 0) const {
        const QQuickItem *handle = item("columnEdge", table * 6 + edge);
        return handle->mapToScene(QPointF(handle->width() / 2, handle->height() / 2)).toPoint();
    }
    void drag(int edge, int by, int table = 0) {
        drawFrame();
        const QPoint from = at(edge, table);
        QTest::mousePress(window.window(), Qt::LeftButton, {}, from);
        for (const int part : {by / 2, by})
            QTest::mouseMove(window.window(), from + QPoint(part, 0));
        QTest::mouseRelease(window.window(), Qt::LeftButton, {}, from + QPoint(by, 0));
    }
};

} // namespace

class WindowColumnsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void anEdgeIsDraggedAndAllTablesFollow() {
        Bench bench;
        QTRY_COMPARE(bench.items("columnEdge").size(), 12);
        QTRY_COMPARE(bench.edgesOf(u"Artist"_s, u"Artist"_s).size(), 2 + 6); // heads and rows
        bench.drawFrame();
        const QList<double> before = bench.edgesOf(u"Artist"_s, u"Artist"_s);
        bench.drag(afterTitle, 40);
        bench.drawFrame();
        for (const double x : bench.edgesOf(u"Artist"_s, u"Artist"_s))
            QCOMPARE(x, before.first() + 40);
        bench.drag(afterTitle, -15, 1); // the second table's
        bench.drawFrame();
        for (const double x : bench.edgesOf(u"Artist"_s, u"Artist"_s))
            QCOMPARE(x, before.first() + 25);
        QVERIFY(!bench.item("trackTable")->property("moving").toBool());
    }

    void theGripIsEightWideAndSaysWhatItIs() {
        Bench bench;
        QTRY_COMPARE(bench.items("columnEdge").size(), 12);
        for (const QQuickItem *edge : bench.items("columnEdge")) {
            QCOMPARE(edge->width(), 8.0);
            QCOMPARE(edge->height(), 28.0);
            QCOMPARE(edge->cursor().shape(), Qt::SplitHCursor);
        }
    }

    void anEdgeWaitsForAPointerThatWentBeyondItsLimit() {
        Bench bench;
        QTRY_COMPARE(bench.items("columnEdge").size(), 12);
        bench.drawFrame();
        const double before = bench.edgesOf(u"Source"_s, {}).first();
        const QPoint from = bench.at(afterQuality);
        QQuickWindow *window = bench.window.window();
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QTest::mouseMove(window, from + QPoint(200, 0));
        bench.drawFrame();
        QCOMPARE(bench.edgesOf(u"Source"_s, {}).first(), before + 30); // Source at its 80
        QTest::mouseMove(window, from + QPoint(10, 0));
        bench.drawFrame();
        QCOMPARE(bench.edgesOf(u"Source"_s, {}).first(), before + 10);
        QTest::mouseRelease(window, Qt::LeftButton, {}, from + QPoint(10, 0));
        QTest::mouseMove(window, from + QPoint(60, 0));
        QCOMPARE(bench.edgesOf(u"Source"_s, {}).first(), before + 10);
    }

    void aDoubleClickBringsTheAutomaticWidthBack() {
        Bench bench;
        QTRY_COMPARE(bench.items("columnEdge").size(), 12);
        bench.drawFrame();
        const double before = bench.edgesOf(u"Artist"_s, {}).first();
        bench.drag(afterTitle, 40);
        bench.drawFrame();
        QCOMPARE(bench.edgesOf(u"Artist"_s, {}).first(), before + 40);
        QTest::mouseDClick(bench.window.window(), Qt::LeftButton, {}, bench.at(afterTitle));
        bench.drawFrame();
        QCOMPARE(bench.edgesOf(u"Artist"_s, {}).first(), before);
        QVERIFY(!bench.around.defaults->value(u"titleColumnWidth"_s).isValid());
    }

    void theColumnsComeBackAsTheyWereLeft() {
        const auto defaults = onboardedDefaults();
        double left = 0;
        {
            Bench bench(defaults);
            QTRY_COMPARE(bench.items("columnEdge").size(), 12);
            bench.drag(afterTitle, 40);
            bench.drawFrame();
            left = bench.edgesOf(u"Artist"_s, {}).first();
        }
        Bench again(defaults);
        QTRY_COMPARE(again.items("columnEdge").size(), 12);
        again.drawFrame();
        QCOMPARE(again.edgesOf(u"Artist"_s, {}).first(), left);
    }

    void theSortColumnOrdersNothing() {
        const auto defaults = onboardedDefaults();
        defaults->set(u"trackSortColumn"_s, u"title"_s);
        WindowBench bench(std::make_shared<MockHelperClient>(), defaults);
        bench.route(ServerEvent::SyncStarted{u"run"_s, u"run"_s, 1});
        ServerEvent::PlaylistStarted begun{u"run"_s, u"list"_s, 0, u"List"_s, {}};
        for (const QString &title : {u"Zebra"_s, u"Apple"_s, u"Mango"_s})
            begun.tracks.push_back({title, title, u"Artist"_s, {}, 200, {}});
        bench.route(begun);
        const auto titles = [&bench] {
            QStringList result;
            for (QQuickItem *row : bench.items("trackRow"))
                result += bench.texts(row).value(0);
            return result;
        };
        const QStringList asListed{u"Zebra"_s, u"Apple"_s, u"Mango"_s};
        QTRY_COMPARE(titles(), asListed);
        QQuickItem *table = bench.item("trackTable");
        QCOMPARE(table->property("sortColumn").toString(), u"title"_s);
        for (const QString &column : {u"artist"_s, u"-title"_s, u"index"_s}) {
            table->setProperty("sortColumn", column);
            bench.drawFrame();
            QCOMPARE(titles(), asListed);
            QCOMPARE(defaults->value(u"trackSortColumn"_s).toString(), column);
        }
    }
};

QTEST_MAIN(WindowColumnsTest)
#include "tst_window_columns.moc"
