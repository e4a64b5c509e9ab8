#include "DialogBench.h"
#include "Views/QuestionDialog.h"

#include <QTest>

#include <functional>
#include <optional>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(zelk::Question::Answer)
Q_DECLARE_METATYPE(std::function<void()>)

namespace {

const Question::Wording wording{u"Read your library?"_s, u"It stays <b>here</b>."_s, u"Allow"_s, u"Don't Allow"_s};

QQuickWindow *dialog() {
    return DialogBench::shown("questionDialog");
}

} // namespace

class TestQuestionDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QCOMPARE(dialog(), nullptr); }

    void itSaysWhatItAsksAndWhatBothButtonsMean() {
        DialogBench bench;
        QuestionDialog question(bench.host);
        const auto answer = question.ask(wording);
        QVERIFY(!answer.isFinished());
        QVERIFY(dialog());
        QCOMPARE(dialog()->title(), wording.title);
        QCOMPARE(DialogBench::text(dialog(), "dialogHeading"), wording.title);
        QCOMPARE(DialogBench::text(dialog(), "dialogText"), wording.text);
        QCOMPARE(DialogBench::text(dialog(), "dialogPrimary"), wording.yes);
        QCOMPARE(DialogBench::text(dialog(), "dialogSecondary"), wording.no);
        QCOMPARE(DialogBench::item(dialog(), "dialogText")->property("textFormat").toInt(), int(Qt::PlainText));
    }

    void everyWayOutHasItsAnswer_data() {
        QTest::addColumn<std::function<void()>>("leave");
        QTest::addColumn<Question::Answer>("expected");
        const auto key = [](Qt::Key which) { return [which] { QTest::keyClick(dialog(), which); }; };
        const auto click = [](const char *name) { return [name] { DialogBench::click(dialog(), name); }; };
        const auto press = [](const char *name) {
            return [name] { QVERIFY(DialogBench::press(DialogBench::item(dialog(), name))); };
        };
        using Leave = std::function<void()>;
        using enum Question::Answer;
        QTest::newRow("a click that agrees") << Leave(click("dialogPrimary")) << yes;
        QTest::newRow("a click that refuses") << Leave(click("dialogSecondary")) << no;
        QTest::newRow("a screen reader that agrees") << Leave(press("dialogPrimary")) << yes;
        QTest::newRow("a screen reader that refuses") << Leave(press("dialogSecondary")) << no;
        QTest::newRow("Return") << Leave(key(Qt::Key_Return)) << yes;
        QTest::newRow("Enter") << Leave(key(Qt::Key_Enter)) << yes;
        QTest::newRow("Escape") << Leave(key(Qt::Key_Escape)) << no;
        QTest::newRow("Return on the other button") << Leave([] {
            QTest::keyClick(dialog(), Qt::Key_Tab);
            QVERIFY(DialogBench::item(dialog(), "dialogSecondary")->property("visualFocus").toBool());
            QTest::keyClick(dialog(), Qt::Key_Return);
        }) << no;
        QTest::newRow("Ctrl+W") << Leave([] { QTest::keyClick(dialog(), Qt::Key_W, Qt::ControlModifier); }) << none;
        QTest::newRow("closed") << Leave([] { dialog()->close(); }) << none;
    }
    void everyWayOutHasItsAnswer() {
        QFETCH(std::function<void()>, leave);
        QFETCH(Question::Answer, expected);
        DialogBench bench;
        QuestionDialog question(bench.host);
        const auto answer = question.ask(wording);
        QVERIFY(QTest::qWaitForWindowActive(dialog()));
        leave();
        QVERIFY(answer.isFinished());
        QCOMPARE(answer.result(), expected);
        QCOMPARE(dialog(), nullptr);
    }

    void spaceAgreesToNothingUnasked() {
        DialogBench bench;
        QuestionDialog question(bench.host);
        const auto answer = question.ask(wording);
        QVERIFY(QTest::qWaitForWindowActive(dialog()));
        QTest::keyClick(dialog(), Qt::Key_Space);
        QVERIFY(!answer.isFinished());
    }

    void leavingTheApplicationAnswersNothing() {
        DialogBench bench;
        std::optional<QuestionDialog> question(bench.host);
        const auto answer = question->ask(wording);
        question.reset();
        QVERIFY(answer.isFinished());
        QCOMPARE(answer.result(), Question::Answer::none);
    }

    void twoQuestionsAreAnsweredEachForItself() {
        DialogBench bench;
        QuestionDialog question(bench.host);
        const auto first = question.ask(wording);
        const auto second = question.ask(wording);
        QCOMPARE(DialogBench::count("questionDialog"), 2);
        // The last asked stands in front and keeps the others from being used.
        const auto windows = DialogBench::all("questionDialog");
        DialogBench::click(windows.last(), "dialogPrimary");
        QVERIFY(second.isFinished());
        QVERIFY(!first.isFinished());
        DialogBench::click(windows.first(), "dialogSecondary");
        QVERIFY(first.isFinished());
        QCOMPARE(second.result(), Question::Answer::yes);
        QCOMPARE(first.result(), Question::Answer::no);
        QCOMPARE(DialogBench::count("questionDialog"), 0);
    }

    void answeringTheOnlyWindowDoesNotEndTheApplication() {
        DialogBench bench;
        QuestionDialog question(bench.host);
        (void)question.ask(wording);
        QVERIFY(!DialogBench::endsAfter([] { dialog()->close(); }));
        (void)question.ask(wording);
        QVERIFY(!DialogBench::endsAfter([] { DialogBench::click(dialog(), "dialogPrimary"); }));
    }

    void itStandsBeforeTheWindowThatTheUserIsIn() {
        DialogBench bench;
        QuestionDialog question(bench.host);
        QWindow front;
        front.show();
        front.requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&front));
        (void)question.ask(wording);
        QCOMPARE(dialog()->transientParent(), &front);
        QCOMPARE(dialog()->modality(), Qt::ApplicationModal);
    }

    void itKeepsNoApplicationThatHasLostItsWindow() {
        DialogBench bench;
        QuestionDialog question(bench.host);
        QWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const auto answer = question.ask(wording);
        QCOMPARE(dialog()->transientParent(), &window);
        QVERIFY(DialogBench::endsAfter([&window] { window.close(); }, DialogBench::untilItEnds));
        QVERIFY(answer.isFinished());
        QCOMPARE(answer.result(), Question::Answer::none);
    }

    void quittingClosesTheQuestion() {
        DialogBench bench;
        QuestionDialog question(bench.host);
        const auto answer = question.ask(wording);
        QVERIFY(DialogBench::endsAfter([] { QCoreApplication::quit(); }, DialogBench::untilItEnds));
        QVERIFY(answer.isFinished());
        QCOMPARE(answer.result(), Question::Answer::none);
    }

    void itIsReadToAScreenReader() {
        DialogBench bench;
        QuestionDialog question(bench.host);
        (void)question.ask(wording);
        const auto named = [](const char *name) {
            return QAccessible::queryAccessibleInterface(DialogBench::item(dialog(), name));
        };
        QCOMPARE(named("dialogHeading")->role(), QAccessible::StaticText);
        QCOMPARE(named("dialogHeading")->text(QAccessible::Name), wording.title);
        QCOMPARE(named("dialogText")->text(QAccessible::Name), wording.text);
        QCOMPARE(named("dialogPrimary")->role(), QAccessible::Button);
        QCOMPARE(named("dialogPrimary")->text(QAccessible::Name), wording.yes);
        QCOMPARE(named("dialogSecondary")->text(QAccessible::Name), wording.no);
        QAccessibleInterface *const frame = named("dialogFrame");
        QCOMPARE(frame->role(), QAccessible::Dialog);
        QCOMPARE(frame->text(QAccessible::Name), wording.title);
    }
};

QTEST_MAIN(TestQuestionDialog)
#include "tst_questiondialog.moc"
