#include "Accessible.h"
#include "WindowBench.h"

#include "Views/ListWindow.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Ids = QSet<QString>;

namespace {

// The window with its library, and the keyboard in the sidebar.
class Bench : public WindowBench {
public:
    explicit Bench(const std::vector<PlaylistDTO> &playlists = library()) : WindowBench(playlists) {
        loadLibrary();
        list()->forceActiveFocus(Qt::TabFocusReason);
        drawFrame();
    }

    QQuickItem *list() const { return item("playlistList"); }
    ListWindow *rows() const { return list()->findChild<ListWindow *>(); }
    Ids selection() const { return model.library()->selection(); }
    QString current() const {
        QQuickItem *const row = rows()->itemAt(rows()->currentIndex());
        return row ? texts(row).value(0) : QString();
    }
    void type(const char *text) {
        for (; *text; ++text)
            QTest::keyClick(window.window(), *text);
    }
    QQuickItem *row(const QString &name) const {
        for (QQuickItem *each : items("playlistRow") + items("folderRow")) {
            if (texts(each).contains(name))
                return each;
        }
        return nullptr;
    }
};

// That many playlists at the bottom of folders that lie ten deep, a hundred playlists in each innermost one.
std::vector<PlaylistDTO> deepLibrary(int playlists) {
    std::vector<PlaylistDTO> entries;
    QString parent;
    for (int i = 0; i < playlists; ++i) {
        if (i % 100 == 0) {
            parent.clear();
            for (int depth = 0; depth < 10; ++depth) {
                PlaylistDTO folder;
                folder.id = u"f%1-%2"_s.arg(i).arg(depth);
                folder.name = u"Folder %1-%2"_s.arg(i).arg(depth);
                folder.isFolder = true;
                if (!parent.isEmpty())
                    folder.parentId = parent;
                parent = folder.id;
                entries.push_back(folder);
            }
        }
        PlaylistDTO playlist;
        playlist.id = u"p%1"_s.arg(i);
        playlist.name = u"Playlist %1"_s.arg(i);
        playlist.parentId = parent;
        entries.push_back(playlist);
    }
    return entries;
}

} // namespace

class WindowSidebarTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void theArrowsGoThroughTheTree() {
        Bench bench;
        QTRY_COMPARE(bench.current(), u"Gigs 2025"_s);
        bench.key(Qt::Key_Right); // opens
        bench.drawFrame();
        QTRY_COMPARE(bench.current(), u"Gigs 2025"_s);
        QVERIFY(bench.row(u"Terrace Sunset"_s));
        QVERIFY(bench.selection().isEmpty());
        bench.key(Qt::Key_Right); // and goes in
        QTRY_COMPARE(bench.current(), u"Terrace Sunset"_s);
        QCOMPARE(bench.selection(), Ids{u"terrace"_s});
        bench.key(Qt::Key_Right); // there is nothing in a playlist
        QTRY_COMPARE(bench.current(), u"Terrace Sunset"_s);
        bench.key(Qt::Key_Down, Qt::ControlModifier);
        bench.key(Qt::Key_Right);
        bench.key(Qt::Key_Right);
        bench.drawFrame();
        QTRY_COMPARE(bench.current(), u"Last Hour"_s);
        bench.key(Qt::Key_Left, Qt::ControlModifier); // out of it, without selecting
        QTRY_COMPARE(bench.current(), u"Late"_s);
        QCOMPARE(bench.selection(), Ids{u"lasthour"_s});
        bench.key(Qt::Key_Left); // closes
        bench.drawFrame();
        QVERIFY(!bench.row(u"Last Hour"_s));
        QTRY_COMPARE(bench.current(), u"Late"_s);
        bench.key(Qt::Key_Left); // and goes out, which selects all in it
        QTRY_COMPARE(bench.current(), u"Gigs 2025"_s);
        QCOMPARE(bench.selection(), (Ids{u"terrace"_s, u"lasthour"_s}));
        bench.key(Qt::Key_Left);
        bench.drawFrame();
        QVERIFY(!bench.row(u"Terrace Sunset"_s));
        bench.key(Qt::Key_Left); // nothing is around it
        QTRY_COMPARE(bench.current(), u"Gigs 2025"_s);
    }

    void aClickBringsTheKeyboardWithoutARing() {
        Bench bench;
        bench.item("filterField")->forceActiveFocus(Qt::TabFocusReason);
        QTRY_VERIFY(bench.row(u"Requests"_s)); // the last to be drawn
        bench.click(bench.row(u"Peak Time 132"_s));
        QVERIFY(bench.list()->hasActiveFocus());
        QCOMPARE(bench.selection(), Ids{u"peak"_s});
        QVERIFY(!bench.rows()->currentShown());
        QTest::keyClick(bench.window.window(), Qt::Key_Control); // does nothing alone
        QVERIFY(!bench.rows()->currentShown());
        bench.key(Qt::Key_Up);
        QCOMPARE(bench.current(), u"Broken Beat Sketches"_s);
        QVERIFY(bench.rows()->currentShown());
        // The ring doesn't go along with a click.
        bench.click(bench.row(u"Requests"_s));
        QCOMPARE(bench.current(), u"Requests"_s);
        QVERIFY(!bench.rows()->currentShown());
        bench.key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(bench.selection().size(), 5);
        // The keyboard that comes back later shows where it is.
        bench.item("filterField")->forceActiveFocus(Qt::TabFocusReason);
        bench.list()->forceActiveFocus(Qt::TabFocusReason);
        QVERIFY(bench.rows()->currentShown());
    }

    void theEndsAndPagesAreOneKeyAway() {
        std::vector<PlaylistDTO> many;
        for (int i = 0; i < 100; ++i) {
            PlaylistDTO each;
            each.id = each.name = u"list%1"_s.arg(i);
            many.push_back(each);
        }
        Bench bench(many);
        bench.key(Qt::Key_End);
        bench.drawFrame();
        QTRY_COMPARE(bench.current(), u"list99"_s);
        QCOMPARE(bench.selection(), Ids{u"list99"_s});
        bench.key(Qt::Key_Home);
        bench.drawFrame();
        QTRY_COMPARE(bench.current(), u"list0"_s);
        const int page = static_cast<int>(bench.list()->height() / 42) - 1;
        bench.key(Qt::Key_PageDown);
        bench.drawFrame();
        QTRY_COMPARE(bench.current(), u"list%1"_s.arg(page));
        bench.key(Qt::Key_PageDown, Qt::ShiftModifier);
        QCOMPARE(bench.selection().size(), page + 1);
        bench.key(Qt::Key_PageUp);
        bench.key(Qt::Key_PageUp);
        bench.drawFrame();
        QTRY_COMPARE(bench.current(), u"list0"_s);
    }

    void typingFindsTheNextNameThatBeginsSo() {
        Bench bench;
        bench.type("pea");
        QTRY_COMPARE(bench.current(), u"Peak Time 132"_s);
        QCOMPARE(bench.selection(), Ids{u"peak"_s});
        bench.type("x"); // goes nowhere
        QTRY_COMPARE(bench.current(), u"Peak Time 132"_s);
        bench.clock->advance(std::chrono::seconds(1));
        bench.type("r");
        QTRY_COMPARE(bench.current(), u"Requests"_s);
        bench.key(Qt::Key_P, Qt::AltModifier); // is no typing
        QTRY_COMPARE(bench.current(), u"Requests"_s);
    }

    void aBlankSelectsUnlessItGoesOnInAName() {
        Bench bench;
        bench.key(Qt::Key_End, Qt::ControlModifier);
        QVERIFY(bench.selection().isEmpty());
        bench.key(Qt::Key_Space);
        QCOMPARE(bench.selection(), Ids{u"requests"_s});
        bench.type("peak");
        bench.key(Qt::Key_Space);
        bench.type("t");
        QTRY_COMPARE(bench.current(), u"Peak Time 132"_s);
        bench.key(Qt::Key_End, Qt::ControlModifier);
        bench.key(Qt::Key_Return);
        QCOMPARE(bench.selection(), Ids{u"requests"_s});
    }

    void deletingKeysChangeNothing() {
        Bench bench;
        bench.type("r");
        const auto asked = bench.sent().size();
        const QStringList before = bench.texts(bench.list());
        for (const auto key : {Qt::Key_Delete, Qt::Key_Backspace})
            bench.key(key);
        QCOMPARE(bench.texts(bench.list()), before);
        QCOMPARE(bench.selection(), Ids{u"requests"_s});
        QCOMPARE(bench.sent().size(), asked);
    }

    void aFilterHoldsEveryFolderOpen() {
        Bench bench;
        bench.item("filterField")->setProperty("text", u"hour"_s);
        bench.drawFrame();
        const QList<QQuickItem *> chevrons = bench.items("folderChevron");
        QCOMPARE(chevrons.size(), 2);
        for (QQuickItem *chevron : chevrons) {
            QVERIFY(!chevron->isEnabled());
            QTRY_COMPARE(chevron->rotation(), 90.0);
        }
        bench.key(Qt::Key_Home, Qt::ControlModifier);
        bench.key(Qt::Key_Left); // does not fold
        bench.drawFrame();
        QVERIFY(bench.row(u"Last Hour"_s));
        bench.key(Qt::Key_Right);
        QTRY_COMPARE(bench.current(), u"Late"_s);
        bench.key(Qt::Key_Left);
        QTRY_COMPARE(bench.current(), u"Gigs 2025"_s);
        bench.item("filterField")->setProperty("text", QString());
        bench.drawFrame();
    }

    void theNoteOfAFolderCoversNoRow() {
        Bench bench;
        bench.key(Qt::Key_Right);
        bench.drawFrame();
        QTRY_VERIFY(bench.row(u"Gigs 2025"_s));
        QQuickItem *const folder = bench.row(u"Gigs 2025"_s);
        QTest::mouseMove(bench.window.window(), folder->mapToScene(QPointF(100, 10)).toPoint());
        const auto *const note = bench.list()->findChild<QObject *>(u"rowHint"_s);
        QTRY_VERIFY(note->property("opened").toBool());
        QCOMPARE(note->property("text").toString(), u"Select all playlists in “Gigs 2025”"_s);
        QVERIFY(note->property("x").toDouble() >= folder->width());
    }

    void everyLevelIsIndentedBySixteen() {
        Bench bench;
        bench.key(Qt::Key_Right);
        bench.drawFrame();
        const auto left = [&bench](const QString &name) {
            const auto found = WindowBench::itemsOf(bench.row(name), [&name](QQuickItem *each) {
                return each->inherits("QQuickText") && each->property("text").toString() == name;
            });
            return found.value(0)->mapToItem(bench.list(), QPointF()).x();
        };
        QCOMPARE(left(u"Late"_s) - left(u"Gigs 2025"_s), 16.0);
        QCOMPARE(left(u"Terrace Sunset"_s) - left(u"Broken Beat Sketches"_s), 16.0);
    }

    void aFailedLoadIsTriedAgain() {
        WindowBench bench(std::make_shared<MockHelperClient>(
            MockHelperClient::Responses{{Method::listPlaylists, JSONValue::string(u"no list"_s)}}));
        startTask(&bench.model, [&bench](const std::stop_token &) { return bench.model.library()->refresh(); });
        QTRY_VERIFY(bench.shows(u"Couldn't load playlists"_s));
        QQuickItem *face = bench.item("sidebarFailed");
        QVERIFY(bench.texts(face).contains(bench.model.library()->property("failure").toString()));
        const auto loads = [&bench] {
            const auto sent = bench.sent();
            return std::count(sent.cbegin(), sent.cend(), Request::listPlaylists({}));
        };
        settleDown();
        const auto before = loads();
        const auto buttons =
            WindowBench::itemsOf(face, [](QQuickItem *each) { return each->objectName() == u"unavailableAction"; });
        QCOMPARE(spoken(buttons.value(0)), u"Try Again"_s);
        QVERIFY(press(buttons.value(0)));
        QTRY_VERIFY(loads() > before); // of all sources
    }

    void aBigDeepLibraryCostsWhatIsInView() {
        Bench bench(deepLibrary(5000));
        QAbstractItemModel *model = bench.list()->property("model").value<QAbstractItemModel *>();
        QCOMPARE(model->rowCount(), 51);
        QSignalSpy inserted(model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy changed(model, &QAbstractItemModel::dataChanged);
        // Every folder opened at once.
        bench.item("filterField")->setProperty("text", u"playlist"_s);
        QCOMPARE(model->rowCount(), 1 + 500 + 5000);
        QVERIFY(inserted.count() <= 1);
        QVERIFY(removed.count() <= 1);
        bench.drawFrame();
        const int inView = static_cast<int>(bench.list()->height() / 30) + 2;
        QVERIFY2(bench.rows()->delegateCount() < 3 * inView,
                 qPrintable(QString::number(bench.rows()->delegateCount())));
        for (const auto key : {Qt::Key_End, Qt::Key_Home, Qt::Key_PageDown, Qt::Key_PageDown}) {
            bench.key(key, Qt::ControlModifier);
            bench.drawFrame();
        }
        QVERIFY2(bench.rows()->delegateCount() < 4 * inView,
                 qPrintable(QString::number(bench.rows()->delegateCount())));
        // All selected: each row is told once or twice, for the folders give way to what is in them.
        changed.clear();
        bench.key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(bench.selection().size(), 5000);
        QVERIFY2(changed.count() <= 2 * model->rowCount() + 500, qPrintable(QString::number(changed.count())));
    }
};

QTEST_MAIN(WindowSidebarTest)
#include "tst_window_sidebar.moc"
