#include "FormBench.h"

#include <algorithm>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray popUp() {
    return R"(
        Item {
            id: root
            property int current: 1
            property var asked: []
            property bool live: true
            width: 300
            height: 300
            PopUpButton {
                objectName: "popUp"
                label: "Theme"
                choices: ["System", "Light", "Dark"]
                current: root.current
                enabled: root.live
                onPicked: index => root.asked = root.asked.concat([index])
            }
        })";
}

QByteArray stepper() {
    return R"(
        Item {
            id: root
            property real current: 10
            property var asked: []
            property bool live: true
            width: 300
            height: 100
            Stepper {
                objectName: "stepper"
                x: 20
                y: 20
                label: "Search timeout: " + root.current + "s"
                current: root.current
                minimum: 5
                maximum: 120
                step: 5
                enabled: root.live
                onPicked: number => root.asked = root.asked.concat([number])
            }
        })";
}

QByteArray secret() {
    return R"(
        Item {
            id: root
            property var accepted: []
            width: 300
            height: 100
            SecretField {
                objectName: "secret"
                width: 300
                placeholderText: "API key"
                onAccepted: root.accepted = root.accepted.concat([text])
            }
        })";
}

QByteArray form() {
    return R"(
        FormSection {
            id: root
            property bool second: true
            property int choosing: 0
            property string path: "/home/maria/Music/a/rather/long/path/to/where/the/files/of/zelk/are/written"
            width: 400
            title: "Appearance"
            footer: "Said underneath."
            SwitchRow {
                objectName: "first"
                visible: root.second
                title: "Reduce glass effects"
            }
            ValueRow {
                objectName: "second"
                title: "Version"
                caption: "And what it is"
                value: "1.0.0"
            }
            FormBlock {
                objectName: "third"
                FolderLine {
                    objectName: "folder"
                    width: parent.width
                    path: root.path
                    placeholder: "Not set"
                    onChoosing: ++root.choosing
                }
            }
        })";
}

// The entries of a menu that is open, in their order.
QList<QQuickItem *> entries(const FormBench &bench) {
    QList<QQuickItem *> found = bench.shown([](const QQuickItem *each) { return each->inherits("QQuickMenuItem"); });
    std::ranges::sort(found, {}, [](const QQuickItem *each) { return each->mapToScene(QPointF()).y(); });
    return found;
}

} // namespace

class FormControlsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aPopUpDropsItsChoicesAndAsksForTheOneTaken() {
        FormBench bench(popUp());
        bench.click(bench.item("popUp"));
        QTRY_COMPARE(entries(bench).size(), 3);
        QCOMPARE(spoken(entries(bench).at(2)), u"Dark"_s);
        bench.click(entries(bench).at(2));
        QCOMPARE(bench.said("asked").toList(), QVariantList{2});
        QTRY_VERIFY(entries(bench).isEmpty());
        QCOMPARE(bench.item("popUp")->property("currentText").toString(), u"Light"_s);
    }

    void aPopUpIsUsedByKeyboard() {
        FormBench bench(popUp());
        bench.key(Qt::Key_Tab);
        QVERIFY(bench.item("popUp")->hasActiveFocus());
        bench.key(Qt::Key_Down);
        QTRY_COMPARE(entries(bench).size(), 3);
        bench.key(Qt::Key_Down); // from the choice made to the next
        bench.key(Qt::Key_Return);
        QCOMPARE(bench.said("asked").toList(), QVariantList{2});
        QTRY_VERIFY(bench.item("popUp")->hasActiveFocus());
    }

    void escapeLeavesTheChoiceAsItIs() {
        FormBench bench(popUp());
        bench.key(Qt::Key_Tab);
        bench.key(Qt::Key_Space);
        QTRY_COMPARE(entries(bench).size(), 3);
        bench.key(Qt::Key_Escape);
        QTRY_VERIFY(entries(bench).isEmpty());
        QVERIFY(bench.said("asked").toList().isEmpty());
    }

    void aPopUpWithoutAChoiceSaysNothing() {
        FormBench bench(popUp());
        bench.root()->setProperty("current", -1);
        QCOMPARE(bench.item("popUp")->property("currentText").toString(), QString());
        bench.root()->setProperty("current", 0);
        QCOMPARE(bench.item("popUp")->property("currentText").toString(), u"System"_s);
    }

    void aScreenReaderUsesAPopUp() {
        FormBench bench(popUp());
        QQuickItem *control = bench.item("popUp");
        QCOMPARE(FormBench::role(control), QAccessible::ButtonMenu);
        QCOMPARE(spoken(control), u"Theme"_s);
        QCOMPARE(spoken(control, QAccessible::Description), u"Light"_s);
        QVERIFY(FormBench::names(control).contains(u"Light"_s));
        QVERIFY(press(control));
        QTRY_COMPARE(entries(bench).size(), 3);
        QVERIFY(press(entries(bench).at(0)));
        QCOMPARE(bench.said("asked").toList(), QVariantList{0});
    }

    void aDisabledPopUpStaysShut() {
        FormBench bench(popUp());
        bench.root()->setProperty("live", false);
        bench.click(bench.item("popUp"));
        press(bench.item("popUp"));
        QVERIFY(entries(bench).isEmpty());
        QCOMPARE(bench.item("popUp")->opacity(), bench.tokens().size()->disabledOpacity);
    }

    void aStepperAsksForTheNextNumber() {
        FormBench bench(stepper());
        QCOMPARE(bench.item("stepper")->size(), QSizeF(56, 26));
        bench.click(bench.item("stepperMore"));
        bench.click(bench.item("stepperLess"));
        QCOMPARE(bench.said("asked").toList(), (QVariantList{15.0, 5.0}));
    }

    void aStepperEndsAtItsEnds_data() {
        QTest::addColumn<double>("current");
        QTest::addColumn<QVariantList>("asked"); // by a step down and a step up
        QTest::newRow("least") << 5.0 << QVariantList{10.0};
        QTest::newRow("most") << 120.0 << QVariantList{115.0};
        QTest::newRow("nearly least") << 7.0 << QVariantList{5.0, 12.0};
        QTest::newRow("nearly most") << 118.0 << QVariantList{113.0, 120.0};
        QTest::newRow("beyond the most") << 200.0 << QVariantList{120.0};
        QTest::newRow("before the least") << 0.0 << QVariantList{5.0};
    }
    void aStepperEndsAtItsEnds() {
        QFETCH(double, current);
        FormBench bench(stepper());
        bench.root()->setProperty("current", current);
        bench.click(bench.item("stepperLess"));
        bench.click(bench.item("stepperMore"));
        QTEST(bench.said("asked").toList(), "asked");
    }

    void aStepperIsUsedByKeyboard() {
        FormBench bench(stepper());
        bench.key(Qt::Key_Tab);
        QVERIFY(bench.item("stepper")->hasActiveFocus());
        for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Plus, Qt::Key_Minus})
            bench.key(key);
        QCOMPARE(bench.said("asked").toList(), (QVariantList{15.0, 5.0, 15.0, 5.0}));
    }

    void aScreenReaderUsesAStepper() {
        FormBench bench(stepper());
        QQuickItem *control = bench.item("stepper");
        QCOMPARE(FormBench::role(control), QAccessible::SpinBox);
        QCOMPARE(spoken(control), u"Search timeout: 10s"_s);
        QVERIFY(press(control, QAccessibleActionInterface::increaseAction()));
        QVERIFY(press(control, QAccessibleActionInterface::decreaseAction()));
        QVERIFY(press(bench.item("stepperMore")));
        auto *value = QAccessible::queryAccessibleInterface(control)->valueInterface();
        QVERIFY(value);
        QCOMPARE(value->currentValue().toDouble(), 10.0);
        QCOMPARE(value->maximumValue().toDouble(), 120.0);
        value->setCurrentValue(500.0);
        QCOMPARE(bench.said("asked").toList(), (QVariantList{15.0, 5.0, 15.0, 120.0}));
        QCOMPARE(value->currentValue().toDouble(), 10.0);
        bench.root()->setProperty("current", 20);
        QCOMPARE(value->currentValue().toDouble(), 20.0);
    }

    void aDisabledStepperAsksForNothing() {
        FormBench bench(stepper());
        bench.root()->setProperty("live", false);
        bench.click(bench.item("stepperMore"));
        press(bench.item("stepper"), QAccessibleActionInterface::increaseAction());
        press(bench.item("stepperMore"));
        QVERIFY(bench.said("asked").toList().isEmpty());
    }

    void aSecretIsMaskedUntilItIsToBeShown() {
        FormBench bench(secret());
        QQuickItem *field = bench.item("secret");
        QVERIFY(!bench.item("reveal")->isVisible());
        field->forceActiveFocus();
        bench.type(u"abc"_s);
        QCOMPARE(field->property("text").toString(), u"abc"_s);
        QCOMPARE(field->property("displayText").toString().size(), 3);
        QVERIFY(field->property("displayText").toString() != u"abc"_s);
        QVERIFY(FormBench::state(field).passwordEdit);
        QCOMPARE(spoken(field), u"API key"_s);
        QCOMPARE(spoken(bench.item("reveal")), u"Show API key"_s);
        bench.click(bench.item("reveal"));
        QCOMPARE(field->property("displayText").toString(), u"abc"_s);
        QVERIFY(!FormBench::state(field).passwordEdit);
        QCOMPARE(spoken(bench.item("reveal")), u"Hide API key"_s);
        QVERIFY(press(bench.item("reveal")));
        QVERIFY(field->property("displayText").toString() != u"abc"_s);
    }

    void aSecretThatWasShownIsMaskedAgainForTheNext() {
        FormBench bench(secret());
        QQuickItem *field = bench.item("secret");
        field->forceActiveFocus();
        bench.type(u"a"_s);
        bench.click(bench.item("reveal"));
        bench.key(Qt::Key_Backspace);
        bench.type(u"b"_s);
        QVERIFY(field->property("displayText").toString() != u"b"_s);
    }

    void returnHandsInASecretEvenAnEmptyOne() {
        FormBench bench(secret());
        bench.item("secret")->forceActiveFocus();
        bench.key(Qt::Key_Return);
        bench.type(u" a "_s);
        bench.key(Qt::Key_Return);
        QCOMPARE(bench.said("accepted").toList(), (QVariantList{QString(), u" a "_s}));
    }

    void rowsHaveTheirHeightsAndLines() {
        FormBench bench(form());
        QCOMPARE(bench.item("first")->height(), 40.0);
        QCOMPARE(bench.item("second")->height(), 52.0);
        QVERIFY(!bench.item("first")->property("divided").toBool());
        QVERIFY(bench.item("second")->property("divided").toBool());
        bench.root()->setProperty("second", false);
        QTRY_VERIFY(!bench.item("second")->property("divided").toBool());
    }

    void aFormIsReadAsItIsWritten() {
        FormBench bench(form());
        QCOMPARE(
            FormBench::names(bench.root()),
            (QStringList{u"Appearance"_s, u"Appearance"_s, u"Reduce glass effects"_s, u"Version"_s, u"And what it is"_s,
                         u"1.0.0"_s, bench.said("path").toString(), u"Change…"_s, u"Said underneath."_s}));
    }

    void aLongPathIsCutInTheMiddleAndToldWholeUnderThePointer() {
        FormBench bench(form());
        QQuickItem *path = bench.item("folderPath");
        QVERIFY(path->property("truncated").toBool());
        QCOMPARE(path->property("elide").toInt(), static_cast<int>(Qt::ElideMiddle));
        QTest::mouseMove(&bench.window, FormBench::middle(path));
        QTRY_VERIFY(!bench
                         .shown([&bench](const QQuickItem *each) {
                             return each != bench.item("folderPath") && each->property("text") == bench.said("path");
                         })
                         .isEmpty());
    }

    void aFolderLineSaysWhenThereIsNoPathAndAsksForOne() {
        FormBench bench(form());
        bench.root()->setProperty("path", QString());
        QCOMPARE(bench.item("folderPath")->property("text").toString(), u"Not set"_s);
        QCOMPARE(bench.item("folderPath")->property("color").value<QColor>(), bench.tokens().color()->secondary);
        bench.click(bench.item("folderChoose"));
        QVERIFY(press(bench.item("folderChoose")));
        QCOMPARE(bench.said("choosing").toInt(), 2);
    }
};

QTEST_MAIN(FormControlsTest)
#include "tst_formcontrols.moc"
