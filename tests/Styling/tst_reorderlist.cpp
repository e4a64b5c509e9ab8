#include "FormBench.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

// Four rows of a list model that moves them as it is asked.
QByteArray fourRows() {
    return R"(
        Item {
            id: root
            property var asked: []
            property int pressed: 0
            width: 300
            height: 300
            function names() {
                let result = [];
                for (let i = 0; i < rows.count; ++i)
                    result.push(rows.get(i).name);
                return result.join(" ");
            }
            ListModel {
                id: rows
                ListElement { name: "one" }
                ListElement { name: "two" }
                ListElement { name: "three" }
                ListElement { name: "four" }
            }
            ReorderList {
                id: order
                objectName: "list"
                label: "Order"
                width: 300
                model: rows
                onMoved: (from, to) => {
                    root.asked = root.asked.concat([from + ">" + to]);
                    rows.move(from, to, 1);
                }
                delegate: ReorderRow {
                    id: row
                    required property string name
                    objectName: name
                    list: order
                    label: name
                    ToggleSwitch {
                        objectName: row.name + "Switch"
                        x: parent.width - width
                        anchors.verticalCenter: parent.verticalCenter
                        label: row.name
                        onSwitched: ++root.pressed
                    }
                }
            }
        })";
}

class Bench : public FormBench {
public:
    Bench() : FormBench(fourRows()) {}

    QString order() const {
        QVariant result;
        QMetaObject::invokeMethod(root(), "names", Q_RETURN_ARG(QVariant, result));
        return result.toString();
    }
    QStringList asked() const { return said("asked").toStringList(); }
    // Drags a row by that many pixels, in steps as a hand does, and lets it go.
    void drag(const char *name, int by) {
        const QPoint from = middle(item(name));
        QTest::mousePress(&window, Qt::LeftButton, {}, from);
        for (int step = 1; step <= 10; ++step)
            QTest::mouseMove(&window, from + QPoint(0, by * step / 10));
        QTest::mouseRelease(&window, Qt::LeftButton, {}, from + QPoint(0, by));
    }
};

} // namespace

class ReorderListTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aRowIsDraggedToItsNewPlace_data() {
        QTest::addColumn<QByteArray>("row");
        QTest::addColumn<int>("by"); // pixels; a row is 52
        QTest::addColumn<QString>("asked");
        QTest::addColumn<QString>("order");
        QTest::newRow("one down") << QByteArray("one") << 52 << u"0>1"_s << u"two one three four"_s;
        QTest::newRow("to the end") << QByteArray("one") << 250 << u"0>3"_s << u"two three four one"_s;
        QTest::newRow("to the start") << QByteArray("four") << -180 << u"3>0"_s << u"four one two three"_s;
        QTest::newRow("two up") << QByteArray("three") << -104 << u"2>0"_s << u"three one two four"_s;
        QTest::newRow("more than half") << QByteArray("two") << 30 << u"1>2"_s << u"one three two four"_s;
        QTest::newRow("not half") << QByteArray("two") << 22 << u"1>1"_s << u"one two three four"_s;
        QTest::newRow("onto its own place") << QByteArray("two") << 12 << u"1>1"_s << u"one two three four"_s;
    }
    void aRowIsDraggedToItsNewPlace() {
        QFETCH(QByteArray, row);
        QFETCH(int, by);
        Bench bench;
        bench.drag(row.constData(), by);
        QTEST(bench.asked().join(u' '), "asked");
        QTEST(bench.order(), "order");
    }

    void aClickIsNoDrag() {
        Bench bench;
        bench.click(bench.item("two"));
        bench.drag("two", 2);
        QVERIFY(bench.asked().isEmpty());
    }

    void theOthersMakeRoomWhileOneIsDragged() {
        Bench bench;
        const auto top = [&bench](const char *name) { return bench.item(name)->mapToScene(QPointF()).y(); };
        const QPoint from = FormBench::middle(bench.item("one"));
        QTest::mousePress(&bench.window, Qt::LeftButton, {}, from);
        QTest::mouseMove(&bench.window, from + QPoint(0, 30));
        QTest::mouseMove(&bench.window, from + QPoint(0, 60));
        QTRY_COMPARE(top("two"), 0.0);
        QCOMPARE(top("one"), 60.0);
        QCOMPARE(top("three"), 104.0);
        QTest::mouseRelease(&bench.window, Qt::LeftButton, {}, from + QPoint(0, 60));
        QTRY_COMPARE(top("one"), 52.0);
        QCOMPARE(top("two"), 0.0);
    }

    void altWithAnArrowMovesTheRowAndTheKeyboardStaysWithIt() {
        Bench bench;
        bench.key(Qt::Key_Tab);
        QVERIFY(bench.item("one")->hasActiveFocus());
        bench.key(Qt::Key_Down, Qt::AltModifier);
        bench.key(Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(bench.order(), u"two three one four"_s);
        QVERIFY(bench.item("one")->hasActiveFocus());
        bench.key(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(bench.order(), u"two one three four"_s);
        bench.key(Qt::Key_Down); // without Alt it moves nothing
        QCOMPARE(bench.order(), u"two one three four"_s);
    }

    void altWithAnArrowWorksFromTheControlOfARow() {
        Bench bench;
        bench.item("twoSwitch")->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(bench.order(), u"two one three four"_s);
        QVERIFY(bench.item("twoSwitch")->hasActiveFocus());
    }

    void theEndsOfTheListAreTheEnds() {
        Bench bench;
        bench.item("one")->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Up, Qt::AltModifier);
        bench.item("four")->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Down, Qt::AltModifier);
        QVERIFY(bench.asked().isEmpty());
    }

    void aScreenReaderMovesARow() {
        Bench bench;
        QVERIFY(press(bench.item("three"), QAccessibleActionInterface::increaseAction()));
        QCOMPARE(bench.order(), u"one three two four"_s);
        QVERIFY(press(bench.item("three"), QAccessibleActionInterface::decreaseAction()));
        QCOMPARE(bench.order(), u"one two three four"_s);
    }

    void rowsAreReadInTheOrderInWhichTheyStand() {
        Bench bench;
        bench.drag("four", -180);
        QCOMPARE(FormBench::names(bench.item("list")).filter(QRegularExpression(u"^(one|two|three|four)$"_s)),
                 (QStringList{u"four"_s, u"four"_s, u"one"_s, u"one"_s, u"two"_s, u"two"_s, u"three"_s, u"three"_s}));
        QCOMPARE(FormBench::role(bench.item("one")), QAccessible::ListItem);
    }

    void aControlOfARowIsPressedAndNotDragged() {
        Bench bench;
        bench.click(bench.item("twoSwitch"));
        QCOMPARE(bench.said("pressed").toInt(), 1);
        QVERIFY(bench.asked().isEmpty());
    }
};

QTEST_MAIN(ReorderListTest)
#include "tst_reorderlist.moc"
