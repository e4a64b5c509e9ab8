#include "Accessible.h"
#include "WindowBench.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickView>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

QAccessible::State stateOf(QQuickItem *item) {
    return QAccessible::queryAccessibleInterface(item)->state();
}

} // namespace

class ItemAccessibilityTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void aDisabledControlIsSaidToBeDisabled() {
        WindowBench bench;
        bench.loadLibrary();
        QQuickItem *sync = bench.item("toolbarSync");
        QVERIFY(stateOf(sync).disabled);
        QVERIFY(!stateOf(sync).focusable);
        bench.model.library()->setSelection({u"peak"_s});
        QTRY_VERIFY(!stateOf(sync).disabled);
        QVERIFY(stateOf(sync).focusable);
        bench.model.library()->setSelection({});
        QTRY_VERIFY(stateOf(sync).disabled);
    }

    void whatIsBehindTheSetupIsDisabled() {
        WindowBench bench;
        bench.loadLibrary();
        bench.model.library()->setSelection({u"peak"_s});
        QTRY_VERIFY(!stateOf(bench.item("toolbarSync")).disabled);
        bench.model.beginOnboarding(SetupCoordinator::Mode::firstRun);
        QTRY_VERIFY(bench.item("setupPrimary"));
        QVERIFY(stateOf(bench.item("toolbarSync")).disabled);
        QVERIFY(!stateOf(bench.item("setupPrimary")).disabled);
    }

    void pressingWhatIsDisabledDoesNothing() {
        WindowBench bench;
        bench.loadLibrary();
        press(bench.item("toolbarSync"));
        settleDown();
        for (const auto &request : bench.sent())
            QVERIFY(request.method() != Method::startSync);
    }

    void aBarSaysHowFullItIs() {
        WindowBench bench;
        bench.beginRun(1, 4);
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::done(Finish::ok));
        QQuickItem *bar = nullptr;
        const auto find = [&] {
            for (QQuickItem *each : WindowBench::itemsOf(
                     bench.content(), [](QQuickItem *item) { return spoken(item) == u"List 0 progress"; }))
                bar = each;
            return bar != nullptr;
        };
        QTRY_VERIFY(find());
        QAccessibleValueInterface *value = QAccessible::queryAccessibleInterface(bar)->valueInterface();
        QVERIFY(value);
        QTRY_COMPARE(value->currentValue().toDouble(), 0.25);
        QCOMPARE(value->minimumValue().toDouble(), 0.0);
        QCOMPARE(value->maximumValue().toDouble(), 1.0);
        QCOMPARE(spoken(bar, QAccessible::Description), u"25 percent"_s);
    }

    void aMaskedFieldTellsNothingOfWhatItHolds() {
        const WindowBench bench; // with which the accessibility is installed
        QQuickView view;
        QQmlComponent component(view.engine());
        component.setData("import QtQuick; TextInput { text: \"secret\"; echoMode: TextInput.Password; "
                          "Accessible.role: Accessible.EditableText }",
                          QUrl());
        const std::unique_ptr<QObject> made(component.create());
        auto *field = qobject_cast<QQuickItem *>(made.get());
        QVERIFY(field);
        field->setParentItem(view.contentItem());
        QCOMPARE(spoken(field, QAccessible::Value), u"••••••"_s);
        field->setProperty("echoMode", 0);
        QCOMPARE(spoken(field, QAccessible::Value), u"secret"_s);
    }

    void anItemThatGoesTakesItsInterfaceAlong() {
        WindowBench bench;
        bench.loadLibrary();
        QTRY_VERIFY(!bench.items("playlistRow").isEmpty());
        QQuickItem *row = bench.items("playlistRow").value(0);
        QVERIFY(row && QAccessible::queryAccessibleInterface(row)->isValid());
        bench.model.library()->setSelection({u"peak"_s});
        // Everything is asked for, and everything goes.
        QVERIFY(QAccessible::queryAccessibleInterface(bench.window.window())->childCount() > 0);
    }
};

QTEST_MAIN(ItemAccessibilityTest)
#include "tst_itemaccessibility.moc"
