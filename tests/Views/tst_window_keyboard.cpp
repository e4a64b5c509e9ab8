#include "Accessible.h"
#include "WindowBench.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

// A run of one playlist, and its table with the keyboard in it.
struct Bench : WindowBench {
    explicit Bench(int rows) {
        loadLibrary();
        beginRun(1, rows);
        window.window()->requestActivate();
        table = item("trackTable");
        QTRY_VERIFY(item("trackRow"));
        table->forceActiveFocus(Qt::TabFocusReason);
    }
    TrackModel *track(int row) const { return model.sync()->groups()->at(0)->track(row); }
    // The index of the element that the keyboard stands on: 0 is the card, 2 the first row.
    int current() const { return table->property("currentIndex").toInt(); }
    QQuickItem *currentRow() const {
        for (QQuickItem *row : items("trackRow")) {
            if (row->property("entry").value<QObject *>()->property("current").toBool())
                return row;
        }
        return nullptr;
    }
    bool inView(QQuickItem *row) const {
        const double y = row->mapToItem(table, QPointF(0, 0)).y();
        return y >= 0 && y + row->height() <= table->height();
    }

    QQuickItem *table = nullptr;
};

} // namespace

class WindowKeyboardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void theRowOfTheKeyboardIsAlwaysSeenWithItsRing() {
        Bench bench(200);
        bench.key(Qt::Key_Down);
        int before = bench.current();
        QCOMPARE(before, 2);
        for (const auto &[key, up] :
             {std::pair(Qt::Key_Down, false), std::pair(Qt::Key_PageDown, false), std::pair(Qt::Key_PageDown, false),
              std::pair(Qt::Key_End, false), std::pair(Qt::Key_Up, true), std::pair(Qt::Key_PageUp, true)}) {
            bench.key(key);
            QVERIFY(up ? bench.current() < before : bench.current() > before);
            before = bench.current();
            QTRY_VERIFY(bench.currentRow());
            QVERIFY(bench.inView(bench.currentRow()));
            const QList<QQuickItem *> rings = WindowBench::itemsOf(bench.currentRow(), [&bench](QQuickItem *each) {
                const auto *border = each->property("border").value<QObject *>();
                return border && border->property("color") == bench.window.tokens().color()->accent;
            });
            QCOMPARE(rings.size(), 1);
            QVERIFY(QAccessible::queryAccessibleInterface(bench.currentRow())->state().focused);
        }
        bench.key(Qt::Key_Home);
        QCOMPARE(bench.current(), 0);
        QTRY_COMPARE(bench.table->property("contentY").toDouble(), 0.0);
        // Elsewhere the keyboard leaves no ring behind.
        bench.key(Qt::Key_Down);
        QTRY_VERIFY(bench.currentRow());
        bench.item("filterField")->forceActiveFocus(Qt::TabFocusReason);
        QVERIFY(!bench.currentRow());
    }

    void aClickBringsTheKeyboardToItsRowWithoutARing() {
        Bench bench(30);
        bench.key(Qt::Key_Down);
        QTRY_VERIFY(bench.currentRow());
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
            bench.item("filterField")->forceActiveFocus(Qt::TabFocusReason);
            bench.click(bench.item("trackRow", 4), {}, button);
            if (button == Qt::RightButton) {
                QTRY_VERIFY(bench.item("menuRetry"));
                bench.key(Qt::Key_Escape);
                QTRY_VERIFY(!bench.item("menuRetry"));
            }
            QTRY_VERIFY(bench.table->hasActiveFocus());
            QVERIFY(!bench.currentRow());
            QCOMPARE(bench.current(), 6);
            bench.key(Qt::Key_Up);
            QCOMPARE(bench.current(), 5);
            QVERIFY(bench.currentRow());
        }
    }

    void theMenuOpensUnderTheRowOfTheKeyboard_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::newRow("Menu") << int(Qt::Key_Menu) << int(Qt::NoModifier);
        QTest::newRow("Shift+F10") << int(Qt::Key_F10) << int(Qt::ShiftModifier);
    }
    void theMenuOpensUnderTheRowOfTheKeyboard() {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        Bench bench(30);
        for (int i = 0; i < 4; ++i)
            bench.key(Qt::Key_Down);
        QTRY_VERIFY(bench.currentRow());
        QQuickItem *row = bench.currentRow();
        QVERIFY(bench.texts(row).contains(u"Track 3"_s));
        bench.key(static_cast<Qt::Key>(key), Qt::KeyboardModifiers(modifiers));
        QTRY_VERIFY(bench.item("menuRetry"));
        const double bottom = row->mapToScene(QPointF(0, row->height())).y();
        const double top = bench.item("menuRetry")->mapToScene(QPointF(0, 0)).y();
        QVERIFY2(top >= bottom && top < bottom + 16, qPrintable(QString::number(top - bottom)));
        // By keyboard alone through the menu, and back to the row.
        bench.key(Qt::Key_Down);
        bench.key(Qt::Key_Down);
        bench.key(Qt::Key_Return);
        QTRY_VERIFY(!bench.item("menuRetry"));
        QTRY_VERIFY(!bench.sent().empty());
        QCOMPARE(bench.sent().back(), Request::reviewDecision(u"run"_s, u"t3"_s, ReviewDecision::skip()));
        QTRY_VERIFY(bench.table->hasActiveFocus());
        QCOMPARE(bench.currentRow(), row);
    }

    void escapePutsTheMenuAway() {
        Bench bench(3);
        bench.key(Qt::Key_Down);
        bench.key(Qt::Key_Menu);
        QTRY_VERIFY(bench.item("menuRetry"));
        bench.key(Qt::Key_Escape);
        QTRY_VERIFY(!bench.item("menuRetry"));
        QTRY_VERIFY(bench.table->hasActiveFocus());
    }

    void aCardHasNoMenu() {
        Bench bench(3);
        QCOMPARE(bench.current(), 0);
        bench.key(Qt::Key_Menu);
        settleDown();
        QVERIFY(!bench.item("menuRetry"));
    }

    void returnDoesTheOneThingThatARowOffers() {
        Bench bench(3);
        bench.track(1)->setState(TrackState::awaitingReview({}));
        bench.track(2)->setState(TrackState::done(Finish::lowConfidence));
        bench.key(Qt::Key_Down);
        bench.key(Qt::Key_Return); // queued: nothing
        QVERIFY(!bench.model.isInspectorPresented());
        bench.key(Qt::Key_Down);
        bench.key(Qt::Key_Down);
        bench.key(Qt::Key_Return); // nothing can be decided on it any more
        QVERIFY(!bench.model.isInspectorPresented());
        bench.key(Qt::Key_Up);
        bench.key(Qt::Key_Return);
        QCOMPARE(bench.model.focusedReviewTrackId(), u"t1"_s);
        QVERIFY(bench.model.isInspectorPresented());
    }

    void deleteDoesNothing() {
        Bench bench(3);
        bench.key(Qt::Key_Down);
        const auto sent = bench.sent().size();
        for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Backspace})
            bench.key(key);
        settleDown();
        QCOMPARE(bench.items("trackRow").size(), 3);
        QCOMPARE(bench.sent().size(), sent);
        QCOMPARE(bench.track(0)->state(), TrackState::queued());
        QCOMPARE(bench.current(), 2);
    }

    void symbolsAloneSayWhatTheyDo() {
        Bench bench(3);
        QCOMPARE(bench.item("collapseButton")->property("hint").toString(), u"Collapse List 0"_s);
        bench.model.sync()->setBanner(SyncBanner::info(u"Hello"_s));
        QTRY_VERIFY(bench.item("dismissBanner"));
        QCOMPARE(bench.item("dismissBanner")->property("hint").toString(), u"Dismiss"_s);
    }
};

QTEST_MAIN(WindowKeyboardTest)
#include "tst_window_keyboard.moc"
