#include "Accessible.h"
#include "DialogBench.h"
#include "Views/AboutDialog.h"
#include "WindowBench.h"

#include <QCloseEvent>
#include <QDir>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class WindowCommandsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void theEntriesStandInTheirOrder() {
        WindowBench bench;
        bench.key(Qt::Key_F, Qt::AltModifier);
        QTRY_VERIFY(bench.item("menuSync"));
        bench.drawFrame();
        double last = -1;
        for (const char *name : {"menuSync", "menuCancelSync", "menuRefreshLibrary", "menuRevealOutput",
                                 "menuReviewMatches", "menuSettings", "menuQuit"}) {
            const double top = bench.item(name)->mapToScene(QPointF()).y();
            QVERIFY2(top > last, name);
            last = top;
        }
        QCOMPARE(spoken(bench.item("menuRevealOutput")), u"Reveal Output Folder"_s);
        QVERIFY(bench.item("menuRevealOutput")->isEnabled());
    }

    void theOutputFolderIsShownFromTheMenu() {
        WindowBench bench;
        bench.key(Qt::Key_F, Qt::AltModifier);
        QTRY_VERIFY(bench.item("menuRevealOutput"));
        QVERIFY(press(bench.item("menuRevealOutput")));
        QVERIFY(bench.files->revealed.isEmpty());
        SettingsStore *settings = bench.model.settings();
        startTask(settings, [settings](const std::stop_token &) { return settings->refresh(); });
        QTRY_VERIFY(settings->config());
        QTRY_VERIFY(!bench.item("menuRevealOutput"));
        bench.key(Qt::Key_F, Qt::AltModifier);
        QTRY_VERIFY(bench.item("menuRevealOutput"));
        QVERIFY(press(bench.item("menuRevealOutput")));
        QCOMPARE(bench.files->revealed, QStringList{QDir::homePath() + u"/Music/zelk"_s});
    }

    void helpOpensTheWebsite() {
        WindowBench bench;
        bench.key(Qt::Key_H, Qt::AltModifier);
        QTRY_VERIFY(bench.item("menuHelp"));
        QCOMPARE(spoken(bench.item("menuHelp")), u"zelk Help"_s);
        bench.click(bench.item("menuHelp"));
        QCOMPARE(bench.opened, QList{QUrl(QStringLiteral(ZELK_WEBSITE))});
        QTRY_VERIFY(!bench.item("menuHelp"));
    }

    void updatesAreCheckedForWhenAskedFor() {
        WindowBench bench;
        bench.key(Qt::Key_H, Qt::AltModifier);
        QTRY_VERIFY(bench.item("menuCheckForUpdates"));
        QCOMPARE(spoken(bench.item("menuCheckForUpdates")), u"Check for Updates…"_s);
        QVERIFY(press(bench.item("menuCheckForUpdates")));
        QCOMPARE(bench.updateChecks, 1);
    }

    void helpStandsBeforeWhatThisIsAndUpdates() {
        WindowBench bench;
        bench.key(Qt::Key_H, Qt::AltModifier);
        QTRY_VERIFY(bench.item("menuHelp"));
        bench.drawFrame();
        double last = -1;
        for (const char *name : {"menuHelp", "menuAbout", "menuCheckForUpdates"}) {
            const double top = bench.item(name)->mapToScene(QPointF()).y();
            QVERIFY2(top > last && bench.item(name)->isEnabled(), name);
            last = top;
        }
        QCOMPARE(spoken(bench.item("menuAbout")), u"About zelk"_s);
        QVERIFY(press(bench.item("menuAbout")));
        QCOMPARE(bench.aboutOpened, 1);
    }

    void theSettingsOpenFromTheMenuAndByTheirKeys() {
        WindowBench bench;
        bench.key(Qt::Key_F, Qt::AltModifier);
        QTRY_VERIFY(bench.item("menuSettings"));
        QCOMPARE(spoken(bench.item("menuSettings")), u"Settings…"_s);
        QVERIFY(press(bench.item("menuSettings")));
        QCOMPARE(bench.settingsOpened, 1);
        QTRY_VERIFY(!bench.item("menuSettings"));
        bench.key(Qt::Key_Comma, Qt::ControlModifier);
        QCOMPARE(bench.settingsOpened, 2);
    }

    void everyWayOutEndsTheApplicationAlthoughOtherWindowsAreOpen_data() {
        QTest::addColumn<int>("way");
        QTest::newRow("Ctrl+W") << 0;
        QTest::newRow("the window manager") << 1;
        QTest::newRow("Quit") << 2;
        QTest::newRow("Ctrl+Q") << 3;
    }
    void everyWayOutEndsTheApplicationAlthoughOtherWindowsAreOpen() {
        QFETCH(int, way);
        WindowBench bench;
        QWindow settings; // a window like any other, as the settings' is
        settings.show();
        DialogHost dialogs;
        AboutDialog about(dialogs, {});
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        about.open();
        QWindow *const window = bench.window.window();
        window->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window));
        bench.beginRun(1, 2); // nor does a run keep it, or ask
        const qsizetype asked = bench.sent().size();
        const auto leave = [&] {
            switch (way) {
            case 0:
                bench.key(Qt::Key_W, Qt::ControlModifier);
                break;
            case 1:
                QCoreApplication::postEvent(window, new QCloseEvent);
                break;
            case 2:
                bench.key(Qt::Key_F, Qt::AltModifier);
                QTRY_VERIFY(bench.item("menuQuit"));
                QVERIFY(press(bench.item("menuQuit")));
                break;
            default:
                bench.key(Qt::Key_Q, Qt::ControlModifier);
            }
        };
        QVERIFY(DialogBench::endsAfter(leave, DialogBench::untilItEnds));
        QVERIFY(!window->isVisible());
        QCOMPARE(bench.model.sync()->phase(), SyncPhase::running);
        settleDown();
        QCOMPARE(bench.sent().size(), asked); // the engine is told nothing
    }

    void otherWindowsCloseAlone() {
        WindowBench bench;
        DialogHost dialogs;
        AboutDialog about(dialogs, {});
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        about.open();
        QWindow other;
        other.show();
        QVERIFY(!DialogBench::endsAfter([&] {
            other.close();
            DialogBench::shown("aboutDialog")->close();
        }));
        QVERIFY(bench.window.window()->isVisible());
    }

    void theKeysOfFindLeadToTheFilter() {
        WindowBench bench;
        bench.loadLibrary();
        QQuickItem *field = bench.item("filterField");
        QVERIFY(!field->hasActiveFocus());
        bench.key(Qt::Key_F, Qt::ControlModifier);
        QVERIFY(field->hasActiveFocus());
        for (const Qt::Key letter : {Qt::Key_P, Qt::Key_E, Qt::Key_A, Qt::Key_K})
            bench.key(letter);
        QCOMPARE(field->property("text").toString(), u"peak"_s);
        bench.item("playlistList")->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(field->property("selectedText").toString(), u"peak"_s); // the next word takes its place
    }
};

QTEST_MAIN(WindowCommandsTest)
#include "tst_window_commands.moc"
