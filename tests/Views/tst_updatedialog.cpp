#include "DialogBench.h"
#include "Views/UpdateDialog.h"

#include <QTest>

#include <functional>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(std::function<void()>)

namespace {

QQuickWindow *dialog() {
    return DialogBench::shown("updateDialog");
}

UpdateScene::Found found(const QString &notes = u"Faster."_s) {
    return {.version = u"2.0"_s, .current = u"1.0"_s, .notes = notes, .delivery = UpdateDelivery::download};
}

// The dialog, and what was answered in it.
class Bench {
public:
    Bench() {
        driver.answered = [this](UpdateAnswer given) { answers.append(given); };
    }
    void show(const UpdateScene::Any &scene) {
        driver.show(scene);
        if (dialog())
            QVERIFY(QTest::qWaitForWindowActive(dialog()));
    }

    DialogBench dialogs;
    UpdateDialog driver{dialogs.host};
    QList<UpdateAnswer> answers;
};

QQuickItem *item(const char *name) {
    return DialogBench::item(dialog(), name);
}

} // namespace

class TestUpdateDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QCOMPARE(dialog(), nullptr); }

    void thereIsNoWindowBeforeThereIsSomethingToShow() {
        Bench bench;
        bench.show(UpdateScene::Nothing());
        bench.driver.raise();
        QCOMPARE(dialog(), nullptr);
    }

    void anOfferShowsItsWordsNotesAndButtons() {
        Bench bench;
        bench.show(found(u"<b>Faster</b>"_s));
        QCOMPARE(dialog()->title(), u"zelk 2.0 Is Available"_s);
        QCOMPARE(DialogBench::text(dialog(), "dialogHeading"), u"zelk 2.0 Is Available"_s);
        QVERIFY(DialogBench::text(dialog(), "dialogText").startsWith(u"You have version 1.0."_s));
        QCOMPARE(DialogBench::text(dialog(), "releaseNotesText"), u"<b>Faster</b>"_s);
        QCOMPARE(item("releaseNotesText")->property("textFormat").toInt(), int(Qt::PlainText));
        QCOMPARE(DialogBench::text(dialog(), "dialogPrimary"), u"Download"_s);
        QCOMPARE(DialogBench::text(dialog(), "dialogSecondary"), u"Later"_s);
        QCOMPARE(DialogBench::text(dialog(), "dialogTertiary"), u"Skip This Version"_s);
        QVERIFY(!item("updateProgress"));
        QVERIFY(!item("updateSpinner"));
    }

    void withoutNotesThereIsNoPlaceForThem() {
        Bench bench;
        bench.show(found({}));
        QVERIFY(!item("releaseNotesText"));
    }

    void everyWayOutHasItsAnswer_data() {
        QTest::addColumn<UpdateScene::Any>("scene");
        QTest::addColumn<std::function<void()>>("leave");
        QTest::addColumn<UpdateAnswer>("expected");
        using Leave = std::function<void()>;
        const auto key = [](Qt::Key which) { return Leave([which] { QTest::keyClick(dialog(), which); }); };
        const auto click = [](const char *name) { return Leave([name] { DialogBench::click(dialog(), name); }); };
        const auto press = [](const char *name) { return Leave([name] { QVERIFY(DialogBench::press(item(name))); }); };
        const auto closing = Leave([] { dialog()->close(); });
        const UpdateScene::Any offer = found();
        const UpdateScene::Any checking = UpdateScene::Checking();
        const UpdateScene::Any downloading = UpdateScene::Downloading{u"2.0"_s, 1, 2};
        const UpdateScene::Any ready = UpdateScene::Ready{u"2.0"_s, u"/opt/zelk-2.0"_s};
        const UpdateScene::Any failed = UpdateScene::Failed{UpdateProblem::silence};
        using enum UpdateAnswer;
        QTest::newRow("offer, click download") << offer << click("dialogPrimary") << download;
        QTest::newRow("offer, press download") << offer << press("dialogPrimary") << download;
        QTest::newRow("offer, Return") << offer << key(Qt::Key_Return) << download;
        QTest::newRow("offer, click later") << offer << click("dialogSecondary") << later;
        QTest::newRow("offer, Escape") << offer << key(Qt::Key_Escape) << later;
        QTest::newRow("offer, closed") << offer << closing << later;
        QTest::newRow("offer, click skip") << offer << click("dialogTertiary") << skip;
        QTest::newRow("offer, press skip") << offer << press("dialogTertiary") << skip;
        QTest::newRow("check, click cancel") << checking << click("dialogSecondary") << cancel;
        QTest::newRow("check, Escape") << checking << key(Qt::Key_Escape) << cancel;
        QTest::newRow("check, closed") << checking << closing << cancel;
        QTest::newRow("download, press cancel") << downloading << press("dialogSecondary") << cancel;
        QTest::newRow("download, Escape") << downloading << key(Qt::Key_Escape) << cancel;
        QTest::newRow("download, closed") << downloading << closing << cancel;
        QTest::newRow("ready, Return") << ready << key(Qt::Key_Return) << showInFolder;
        QTest::newRow("ready, Escape") << ready << key(Qt::Key_Escape) << later;
        QTest::newRow("failed, Return") << failed << key(Qt::Key_Return) << later;
        QTest::newRow("failed, Escape") << failed << key(Qt::Key_Escape) << later;
    }
    void everyWayOutHasItsAnswer() {
        QFETCH(const UpdateScene::Any, scene);
        QFETCH(const std::function<void()>, leave);
        QFETCH(const UpdateAnswer, expected);
        Bench bench;
        bench.show(scene);
        leave();
        QCOMPARE(bench.answers, QList<UpdateAnswer>{expected});
        // It is taken away by whoever shows it, unless the user has closed it.
        const bool isClosed = QByteArray(QTest::currentDataTag()).endsWith("closed");
        QCOMPARE(dialog() == nullptr, isClosed);
    }

    void returnDoesNothingWhileThereIsOnlyToWait() {
        Bench bench;
        for (const auto &scene :
             {UpdateScene::Any(UpdateScene::Checking()), UpdateScene::Any(UpdateScene::Downloading{u"2.0"_s, 1, 2})}) {
            bench.show(scene);
            QVERIFY(!item("dialogPrimary"));
            QTest::keyClick(dialog(), Qt::Key_Return);
        }
        QVERIFY(bench.answers.isEmpty());
    }

    void everyButtonIsReachedByTab() {
        Bench bench;
        bench.show(found(QString(20'000, u'x')));
        QStringList reached;
        for (int i = 0; i < 4; ++i) {
            QTest::keyClick(dialog(), Qt::Key_Tab);
            reached.append(dialog()->activeFocusItem()->objectName());
        }
        reached.sort();
        QCOMPARE(reached,
                 (QStringList{u"dialogPrimary"_s, u"dialogSecondary"_s, u"dialogTertiary"_s, u"releaseNotes"_s}));
    }

    void returnBelongsToThePrimaryButtonAgainWhenTheButtonsChange() {
        Bench bench;
        bench.show(UpdateScene::Checking());
        QTest::keyClick(dialog(), Qt::Key_Tab);
        QVERIFY(item("dialogSecondary")->property("visualFocus").toBool());
        bench.show(UpdateScene::UpToDate{u"1.0"_s});
        QTest::keyClick(dialog(), Qt::Key_Return);
        QCOMPARE(bench.answers, QList<UpdateAnswer>{UpdateAnswer::later});
    }

    void theFocusStaysWhileADownloadProceeds() {
        Bench bench;
        bench.show(UpdateScene::Downloading{u"2.0"_s, 1, 100});
        QTest::keyClick(dialog(), Qt::Key_Tab);
        bench.show(UpdateScene::Downloading{u"2.0"_s, 2, 100});
        QVERIFY(item("dialogSecondary")->property("visualFocus").toBool());
    }

    void progressIsABarWithWords() {
        Bench bench;
        bench.show(UpdateScene::Downloading{u"2.0"_s, 25, 100});
        QQuickItem *bar = item("updateProgress");
        QCOMPARE(bar->property("value").toDouble(), 0.25);
        QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(bar);
        QCOMPARE(spoken->role(), QAccessible::ProgressBar);
        QCOMPARE(spoken->text(QAccessible::Description), DialogBench::text(dialog(), "dialogText"));
    }

    void manyNotesScrollByKeyboardInAWindowOfBoundedHeight() {
        Bench bench;
        bench.show(found(u"A line of what is new.\n"_s.repeated(200)));
        QVERIFY(dialog()->height() < 500);
        QQuickItem *notes = item("releaseNotes");
        notes->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(dialog(), Qt::Key_Down);
        QVERIFY(notes->property("contentY").toDouble() > 0);
        QTest::keyClick(dialog(), Qt::Key_End);
        const double end = notes->property("contentHeight").toDouble() - notes->height();
        QCOMPARE(notes->property("contentY").toDouble(), end);
        QTest::keyClick(dialog(), Qt::Key_PageDown);
        QCOMPARE(notes->property("contentY").toDouble(), end);
        QTest::keyClick(dialog(), Qt::Key_Home);
        QCOMPARE(notes->property("contentY").toDouble(), 0.0);
        QTest::keyClick(dialog(), Qt::Key_Up);
        QCOMPARE(notes->property("contentY").toDouble(), 0.0);
        QTest::keyClick(dialog(), Qt::Key_Return);
        QCOMPARE(bench.answers, QList<UpdateAnswer>{UpdateAnswer::download});
    }

    void theNextOfferBeginsAtTheTopOfItsNotes() {
        Bench bench;
        bench.show(found(u"A line of what is new.\n"_s.repeated(200)));
        item("releaseNotes")->setProperty("contentY", 500);
        bench.show(UpdateScene::Nothing());
        bench.show(UpdateScene::Checking());
        bench.show(found(u"Another line.\n"_s.repeated(200)));
        QCOMPARE(item("releaseNotes")->property("contentY").toDouble(), 0.0);
    }

    void nothingPutsTheWindowAwayUntilTheNextScene() {
        Bench bench;
        bench.show(UpdateScene::Checking());
        bench.show(UpdateScene::Nothing());
        QCOMPARE(dialog(), nullptr);
        bench.show(UpdateScene::UpToDate{u"1.0"_s});
        QVERIFY(dialog());
        QCOMPARE(DialogBench::count("updateDialog"), 1);
    }

    void withoutAnUpdaterAnAnswerGoesNowhere() {
        Bench bench;
        bench.show(found());
        bench.driver.answered = {};
        QTest::keyClick(dialog(), Qt::Key_Return);
        QVERIFY(bench.answers.isEmpty());
        QVERIFY(dialog());
    }
};

QTEST_MAIN(TestUpdateDialog)
#include "tst_updatedialog.moc"
