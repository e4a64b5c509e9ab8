#include "FormBench.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

// One control of each kind, which shows what it is told and notes what it asks for.
QByteArray choices() {
    return R"(
        Column {
            id: root
            property bool on: false
            property var asked: []
            property bool live: true
            width: 300
            spacing: 10
            ToggleSwitch {
                objectName: "switch"
                label: "Glass"
                on: root.on
                enabled: root.live
                onSwitched: on => root.asked = root.asked.concat([on])
            }
            CheckMark {
                objectName: "check"
                text: "Remember"
                on: root.on
                enabled: root.live
                onSwitched: on => root.asked = root.asked.concat([on])
            }
            RadioMark {
                objectName: "radio"
                text: "Balanced"
                on: root.on
                enabled: root.live
                onPicked: root.asked = root.asked.concat([true])
            }
        })";
}

void everyControl() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QAccessible::Role>("role");
    QTest::newRow("switch") << QByteArray("switch") << u"Glass"_s << QAccessible::CheckBox;
    QTest::newRow("check") << QByteArray("check") << u"Remember"_s << QAccessible::CheckBox;
    QTest::newRow("radio") << QByteArray("radio") << u"Balanced"_s << QAccessible::RadioButton;
}

} // namespace

class ChoicesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aClickAsksForTheOther_data() { everyControl(); }
    void aClickAsksForTheOther() {
        QFETCH(QByteArray, name);
        FormBench bench(choices());
        bench.click(bench.item(name.constData()));
        QCOMPARE(bench.said("asked").toList(), QVariantList{true});
    }

    // What was asked for may be refused: a control that showed it at once would lie.
    void itShowsWhatItIsToldAndNotWhatItAskedFor_data() { everyControl(); }
    void itShowsWhatItIsToldAndNotWhatItAskedFor() {
        QFETCH(QByteArray, name);
        FormBench bench(choices());
        QQuickItem *control = bench.item(name.constData());
        bench.click(control);
        QVERIFY(!control->property("on").toBool());
        QVERIFY(!FormBench::state(control).checked);
        bench.root()->setProperty("on", true);
        QVERIFY(control->property("on").toBool());
        QVERIFY(FormBench::state(control).checked);
    }

    void theKeyboardPressesItOnceAKey_data() { everyControl(); }
    void theKeyboardPressesItOnceAKey() {
        QFETCH(QByteArray, name);
        FormBench bench(choices());
        bench.item(name.constData())->forceActiveFocus(Qt::TabFocusReason);
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
            bench.key(key);
        QCOMPARE(bench.said("asked").toList().size(), 3);
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, u" "_s, true);
        QCoreApplication::sendEvent(&bench.window, &held);
        QCOMPARE(bench.said("asked").toList().size(), 3);
    }

    void tabGoesFromOneToTheNext() {
        FormBench bench(choices());
        bench.key(Qt::Key_Tab);
        QVERIFY(bench.item("switch")->hasActiveFocus());
        bench.key(Qt::Key_Tab);
        QVERIFY(bench.item("check")->hasActiveFocus());
        bench.key(Qt::Key_Tab);
        QVERIFY(bench.item("radio")->hasActiveFocus());
    }

    void aScreenReaderFindsAndUsesIt_data() { everyControl(); }
    void aScreenReaderFindsAndUsesIt() {
        QFETCH(QByteArray, name);
        QFETCH(QString, label);
        FormBench bench(choices());
        QQuickItem *control = bench.item(name.constData());
        QCOMPARE(FormBench::names(control), QStringList{label});
        QTEST(FormBench::role(control), "role");
        QVERIFY(FormBench::state(control).checkable);
        QVERIFY(FormBench::state(control).focusable);
        QVERIFY(press(control));
        QVERIFY(press(control, QAccessibleActionInterface::toggleAction()));
        QCOMPARE(bench.said("asked").toList().size(), 2);
    }

    void aDisabledOneAsksForNothing_data() { everyControl(); }
    void aDisabledOneAsksForNothing() {
        QFETCH(QByteArray, name);
        FormBench bench(choices());
        QQuickItem *control = bench.item(name.constData());
        bench.root()->setProperty("live", false);
        bench.click(control);
        bench.key(Qt::Key_Space);
        press(control);
        QVERIFY(bench.said("asked").toList().isEmpty());
        QVERIFY(!control->isEnabled());
        QCOMPARE(control->opacity(), bench.tokens().size()->disabledOpacity);
    }

    void theSwitchIsDrawnAsItStands() {
        FormBench bench(choices());
        bench.tokens().motion()->setReduced(true);
        QQuickItem *control = bench.item("switch");
        QCOMPARE(control->size(), QSizeF(34, 20));
        const QPointF left(6, 10);
        const QPointF right(28, 10);
        QTest::mouseMove(&bench.window, {390, 290}); // not over it
        QTRY_VERIFY(!control->property("hovered").toBool());
        QCOMPARE(bench.pixel(control, left), bench.tokens().color()->onAccent);
        QCOMPARE(bench.pixel(control, right), bench.tokens().color()->switchOff);
        bench.root()->setProperty("on", true);
        QCOMPARE(bench.pixel(control, left), bench.tokens().color()->accentFill);
        QCOMPARE(bench.pixel(control, right), bench.tokens().color()->onAccent);
    }

    void aFocusThatTheMouseGaveShowsNoRing() {
        FormBench bench(choices());
        QQuickItem *control = bench.item("switch");
        bench.click(control);
        QVERIFY(!control->hasActiveFocus());
    }

    void thePointerOverItShows() {
        FormBench bench(choices());
        QQuickItem *control = bench.item("check");
        const QColor before = bench.pixel(control, {4, 8});
        QTest::mouseMove(&bench.window, FormBench::middle(control));
        QTRY_VERIFY(control->property("hovered").toBool());
        QVERIFY(bench.pixel(control, {4, 8}) != before);
    }
};

QTEST_MAIN(ChoicesTest)
#include "tst_choices.moc"
