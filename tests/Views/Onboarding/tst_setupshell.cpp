#include "SetupWindow.h"
#include "Views/Onboarding/SetupTexts.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Mode = SetupCoordinator::Mode;
using Screen = SetupCoordinator::Screen;

namespace {

const auto allInstalled = R"({"ok":true,"tools":[]})";

} // namespace

class SetupShellTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void somebodyNewIsOfferedTheSetupByItself() {
        const auto defaults = freshDefaults();
        SetupWindow bench(defaults);
        // Once the window is there, before the engine has said a word.
        QTRY_COMPARE(bench.engine->held(), 1);
        QVERIFY(!bench.item("setupSheet"));
        // An engine that can't be reached is asked in both forms of the question.
        for (int i = 0; i < 2; ++i) {
            QTRY_COMPARE(bench.engine->held(), 1);
            bench.engine->releaseFailing(HelperError::helperUnavailable());
        }
        QTRY_VERIFY(bench.shows(u"Turn your playlists into a DJ-ready library"_s));
        QCOMPARE(bench.coordinator()->mode(), Mode::firstRun);
        QVERIFY(!defaults->boolValue(u"didOnboard"_s));
    }

    void whoHasBeenThroughItIsNotOfferedItAgain() {
        SetupWindow bench;
        bench.configure(SetupWindow::bare());
        settleDown();
        QVERIFY(!bench.model.isOnboardingPresented());
        QVERIFY(!bench.item("setupSheet"));
    }

    void anEmptySidebarOpensItAsAReRun() {
        SetupWindow bench;
        bench.engine->reply(Method::listPlaylists, R"({"playlists":[]})");
        startTask(&bench.model, [&bench](const std::stop_token &) { return bench.model.library()->refresh(); });
        QTRY_VERIFY(bench.part("sidebarEmpty", "unavailableAction"));
        QCOMPARE(spoken(bench.part("sidebarEmpty", "unavailableAction")), u"Open Setup"_s);
        bench.engine->reply(Method::getConfig, SetupWindow::wrapped(SetupWindow::bare()));
        bench.click(bench.part("sidebarEmpty", "unavailableAction"));
        QTRY_VERIFY(bench.item("setupPrimary"));
        QCOMPARE(bench.coordinator()->mode(), Mode::reRun);
    }

    void closedHalfWayItCountsAsDone() {
        const auto defaults = freshDefaults();
        SetupWindow bench(defaults);
        QTRY_COMPARE(bench.engine->held(), 1);
        bench.engine->release(SetupWindow::wrapped(SetupWindow::bare()));
        QTRY_VERIFY(bench.item("setupPrimary"));
        bench.goTo(Screen::downloadSources);
        bench.coordinator()->setOutputDir(u"/elsewhere"_s);
        const QPointer<SetupCoordinator> first = bench.coordinator();
        bench.key(Qt::Key_Escape);
        QTRY_VERIFY(!bench.item("setupSheet"));
        QVERIFY(defaults->boolValue(u"didOnboard"_s));
        QVERIFY(!bench.model.isOnboardingPresented());
        QTRY_VERIFY(!first);
        QCOMPARE(bench.engine->sentCount(Method::setConfig), 0);
        // The next showing starts anew, and as a re-run.
        bench.model.beginOnboarding();
        QTRY_VERIFY(bench.item("setupPrimary"));
        QCOMPARE(bench.coordinator()->mode(), Mode::reRun);
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::prepareTools);
        QCOMPARE(bench.coordinator()->outputDir(), u"~/Music/DjayImport"_s);
    }

    void withoutACoordinatorTheSheetIsEmptyAndStillCloses() {
        SetupWindow bench;
        bench.model.setOnboardingPresented(true);
        QTRY_VERIFY(bench.item("setupSheet"));
        QVERIFY(!bench.item("setupPrimary"));
        QTRY_VERIFY(bench.item("setupSheet")->hasActiveFocus());
        bench.key(Qt::Key_Escape);
        QTRY_VERIFY(!bench.item("setupSheet"));
    }

    void theSheetHasItsSizeAndStandsInTheMiddle() {
        SetupWindow bench;
        bench.open();
        const QQuickItem *sheet = bench.item("setupSheet");
        QCOMPARE(sheet->size(), QSizeF(620, 560));
        const QSize window = bench.window.window()->size();
        QCOMPARE(sheet->mapToScene(QPointF()), QPointF(window.width() - 620, window.height() - 560) / 2);
        // 36 % of a near black lies over the window, at its corner too.
        bench.drawFrame();
        const QColor corner = bench.window.window()->grabWindow().pixelColor(2, 2);
        const QColor ground = bench.window.tokens().color()->window;
        QVERIFY(qAbs(corner.red() - (ground.red() * 0.64 + 0x0D * 0.36)) < 3);
    }

    void noWordOfASubtitleStandsAlone() {
        SetupWindow bench;
        bench.engine->reply(Method::provisionTools, allInstalled);
        bench.open();
        for (const auto screen : {Screen::connectMusic, Screen::downloadSources, Screen::fineTuning}) {
            bench.goTo(screen);
            const QQuickItem *const subtitle = bench.item("setupSubtitle");
            const double whole = subtitle->implicitWidth();
            const int lines = subtitle->property("lineCount").toInt();
            QVERIFY(lines <= 2);
            QVERIFY2(lines == 1 || subtitle->width() < 0.65 * whole, qPrintable(QString::number(whole)));
        }
    }

    void eachScreenHasItsHeaderAndButtons() {
        SetupWindow bench;
        bench.engine->reply(Method::provisionTools, allInstalled);
        bench.open();
        const auto headed = [&bench] { return bench.item("setupHeader") != nullptr; };
        const auto primary = [&bench] { return spoken(bench.item("setupPrimary")); };
        QVERIFY(!headed() && !bench.item("setupBack") && !bench.item("setupSkip"));
        QCOMPARE(primary(), u"Get Started"_s);
        bench.goTo(Screen::prepareTools);
        QVERIFY(headed() && bench.item("setupBack") && !bench.item("setupSkip"));
        QVERIFY(!bench.item("setupSubtitle"));
        for (const auto screen : {Screen::connectMusic, Screen::downloadSources, Screen::fineTuning}) {
            bench.goTo(screen);
            QVERIFY(headed() && bench.item("setupBack") && bench.item("setupSkip"));
            QCOMPARE(bench.item("setupTitle")->property("text").toString(), headerInfo(screen)->title);
            QCOMPARE(bench.item("setupSubtitle")->property("text").toString(), headerInfo(screen)->subtitle);
            QCOMPARE(primary(), u"Continue"_s);
        }
        bench.goTo(Screen::finish);
        QVERIFY(!headed() && bench.item("setupBack") && !bench.item("setupSkip"));
        QCOMPARE(primary(), u"Start Using zelk"_s);
        // From left to right.
        bench.goTo(Screen::fineTuning);
        const auto x = [&bench](const char *name) { return bench.item(name)->mapToScene(QPointF()).x(); };
        QVERIFY(x("setupBack") < x("stepDots") && x("stepDots") < x("setupSkip") && x("setupSkip") < x("setupPrimary"));
    }

    void theButtonsMoveBetweenScreens() {
        SetupWindow bench;
        bench.engine->reply(Method::provisionTools, allInstalled);
        bench.open();
        bench.click(bench.item("setupPrimary"));
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::prepareTools);
        QTRY_VERIFY(bench.item("setupPrimary")->isEnabled());
        bench.press("setupPrimary");
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::connectMusic);
        bench.press("setupSkip"); // exactly as going on
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::downloadSources);
        bench.click(bench.item("setupBack"));
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::connectMusic);
        QCOMPARE(bench.engine->sentCount(Method::setConfig), 0);
    }

    void theDotsTellThePlace() {
        SetupWindow bench;
        bench.open();
        bench.goTo(Screen::connectMusic);
        QCOMPARE(spoken(bench.item("stepDots")), u"Step 3 of 6"_s);
        const auto dots = bench.items("stepDot");
        QCOMPARE(dots.size(), 6);
        const Palette &palette = *bench.window.tokens().color();
        for (int i = 0; i < 6; ++i) {
            QCOMPARE(dots[i]->width(), i == 2 ? 8.0 : 6.0);
            const QColor color = dots[i]->property("color").value<QColor>();
            QColor expected = i > 2 ? palette.secondary : palette.accentFill;
            expected.setAlphaF(i < 2 ? 0.5F : i > 2 ? 0.3F : 1.0F);
            QCOMPARE(color.rgba(), expected.rgba());
        }
    }

    void aReRunBeginsWithTheToolsAndHasNoWayBack() {
        SetupWindow bench;
        bench.open(Mode::reRun);
        QVERIFY(bench.shows(u"Getting things ready"_s));
        QVERIFY(!bench.item("setupBack"));
        QCOMPARE(spoken(bench.item("stepDots")), u"Step 1 of 5"_s);
    }

    void whileToolsAreInstalledThereIsNoWayOnOrBack() {
        SetupWindow bench;
        bench.openAt(Screen::prepareTools);
        QTRY_COMPARE(bench.tools()->phase(), ProvisioningPhase::running);
        QVERIFY(!bench.item("setupBack")->isEnabled());
        QVERIFY(!bench.item("setupPrimary")->isEnabled());
        for (const auto key : {Qt::Key_Return, Qt::Key_Enter})
            bench.key(key);
        bench.click(bench.item("setupPrimary"));
        bench.click(bench.item("setupBack"));
        bench.press("setupBack");
        bench.press("setupPrimary");
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::prepareTools);
        bench.engine->releaseFailing(HelperError::helperUnavailable());
        // What has failed lets nobody on, but back.
        QTRY_VERIFY(bench.item("setupBack")->isEnabled());
        QVERIFY(!bench.item("setupPrimary")->isEnabled() && !bench.item("setupSkip"));
        bench.press("toolsTryAgain");
        QTRY_COMPARE(bench.engine->held(), 1);
        bench.engine->release(allInstalled);
        QTRY_VERIFY(bench.item("setupPrimary")->isEnabled());
        bench.key(Qt::Key_Return);
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::connectMusic);
    }

    void returnGoesOnFromWhereverTheFocusIsButFromAnotherButton() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        bench.coordinator()->setIdentityEnabled(true);
        bench.type("acoustidKey", u"key"_s);
        bench.key(Qt::Key_Return);
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::downloadSources);
        bench.item("setupBack")->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Return);
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::connectMusic);
        // A key that is held goes on once.
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(bench.window.window(), &held);
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::connectMusic);
    }

    void theKeyboardStaysOnTheSheet() {
        SetupWindow bench;
        bench.loadLibraryInto();
        bench.openAt(Screen::downloadSources);
        QQuickItem *sheet = bench.item("setupSheet");
        QSet<QString> reached;
        for (const auto key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            for (int i = 0; i < 30; ++i) {
                bench.key(key);
                const QQuickItem *focus = bench.window.window()->activeFocusItem();
                QVERIFY2(focus == sheet || sheet->isAncestorOf(focus) || focus->isAncestorOf(sheet),
                         qPrintable(focus->objectName()));
                reached += focus->objectName();
            }
        }
        const QSet<QString> controls{u"sourceSwitch"_s, u"sourceToken"_s, u"proxySubscription"_s,
                                     u"setupBack"_s,    u"setupSkip"_s,   u"setupPrimary"_s};
        QVERIFY(reached.contains(controls));
    }

    void theSettingsOpenBesideTheSetup() {
        SetupWindow bench;
        bench.open();
        bench.key(Qt::Key_Comma, Qt::ControlModifier);
        QCOMPARE(bench.settingsOpened, 1);
        QVERIFY(bench.model.isOnboardingPresented());
        bench.press("setupPrimary");
        bench.model.setOnboardingPresented(false);
        QTRY_VERIFY(!bench.item("setupSheet"));
        bench.key(Qt::Key_Comma, Qt::ControlModifier);
        settleDown();
        QCOMPARE(bench.settingsOpened, 2); // once, as without a setup
    }

    void nothingBehindTheSheetIsInReach() {
        SetupWindow bench;
        bench.loadLibraryInto();
        bench.model.library()->setSelection({u"peak"_s});
        QTRY_VERIFY(bench.item("toolbarSync")->isEnabled());
        bench.open();
        const auto before = bench.engine->sent().size();
        QVERIFY(!bench.item("toolbarSync")->isEnabled());
        bench.press("toolbarSync");
        bench.click(bench.item("toolbarSync"));
        bench.key(Qt::Key_R, Qt::ControlModifier);
        bench.key(Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
        for (QQuickItem *row : bench.items("playlistRow"))
            zelk::press(row);
        settleDown();
        QCOMPARE(bench.engine->sent().size(), before);
        QCOMPARE(bench.model.library()->selection(), QSet<QString>{u"peak"_s});
        QVERIFY(bench.item("setupSheet"));
        bench.key(Qt::Key_Escape);
        QTRY_VERIFY(bench.item("toolbarSync")->isEnabled());
    }

    void withoutAPlaylistSourceItAsksBeforeItEnds() {
        SetupWindow bench;
        bench.openAt(Screen::finish);
        bench.key(Qt::Key_Return);
        QTRY_VERIFY(bench.warning());
        QCOMPARE(bench.inWarning("dialogHeading")->property("text").toString(),
                 u"Continue without a playlist source?"_s);
        QCOMPARE(bench.inWarning("dialogText")->property("text").toString(),
                 u"zelk needs Apple Music or Spotify to find playlists to download. You can connect later in Settings "
                 "— but there's nothing to sync until you do."_s);
        QCOMPARE(spoken(bench.inWarning("dialogPrimary")), u"Connect a Source"_s);
        QCOMPARE(spoken(bench.inWarning("dialogTertiary")), u"Continue Anyway"_s);
        // Escape is none of the two answers.
        QTest::keyClick(bench.warning(), Qt::Key_Escape);
        QTRY_VERIFY(!bench.warning());
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::finish);
        bench.press("setupPrimary");
        QTRY_VERIFY(bench.warning());
        QVERIFY(zelk::press(bench.inWarning("dialogPrimary")));
        QTRY_COMPARE(bench.coordinator()->currentScreen(), Screen::connectMusic);
        QVERIFY(!bench.warning());
        // It may come up again.
        bench.goTo(Screen::finish);
        bench.press("setupPrimary");
        QTRY_VERIFY(bench.warning());
        QCOMPARE(bench.engine->sentCount(Method::setConfig), 0);
        QVERIFY(zelk::press(bench.inWarning("dialogTertiary")));
        QTRY_COMPARE(bench.engine->sentCount(Method::setConfig), 1);
        QVERIFY(!bench.warning());
    }

    void aReRunEndsWithoutAQuestion() {
        SetupWindow bench;
        bench.openAt(Screen::finish, SetupWindow::bare(), Mode::reRun);
        bench.press("setupPrimary");
        QTRY_COMPARE(bench.engine->sentCount(Method::setConfig), 1);
        QVERIFY(!bench.warning());
    }

    void duringACommitOnlyTheWayOnIsShut() {
        SetupWindow bench;
        bench.openAt(Screen::finish, SampleData::sampleConfig());
        bench.key(Qt::Key_Return);
        bench.key(Qt::Key_Return); // in the same turn
        QTRY_VERIFY(bench.coordinator()->isCommitting());
        QVERIFY(!bench.item("setupPrimary")->isEnabled());
        bench.key(Qt::Key_Return);
        bench.press("setupPrimary");
        QVERIFY(bench.item("setupBack")->isEnabled());
        settleDown();
        QCOMPARE(bench.engine->sentCount(Method::setConfig), 1);
        // What the engine refuses keeps the setup open, with all in it, and the button comes back.
        bench.engine->releaseFailing(HelperError::helperUnavailable());
        QTRY_VERIFY(bench.item("setupPrimary")->isEnabled());
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::finish);
        QVERIFY(bench.coordinator()->lastError());
        bench.engine->reply(Method::setConfig, "null");
        bench.engine->reply(Method::getConfig, SetupWindow::wrapped(SampleData::sampleConfig()));
        bench.press("setupPrimary");
        QTRY_VERIFY(!bench.item("setupSheet"));
    }

    void aScreenComesInWithASpringUnlessMotionIsUnwanted() {
        SetupWindow bench;
        bench.open();
        const auto arrival = [&bench] { return bench.item("setupBody")->property("arrival").toReal(); };
        bench.coordinator()->advance();
        QTRY_COMPARE(arrival(), 1.0);
        bench.desktop->setReducedMotion(false);
        bench.coordinator()->advance();
        QVERIFY(arrival() < 1);
        QTRY_COMPARE(arrival(), 1.0);
        QCOMPARE(bench.window.tokens().motion()->spring(), 450);
    }

    void theHeroGrowsUnlessMotionIsUnwanted() {
        SetupWindow bench;
        bench.open();
        QCOMPARE(bench.item("welcomeHero")->scale(), 0.96);
        QCOMPARE(bench.item("welcomeHero")->property("animate").toBool(), true);
        QCOMPARE(bench.item("welcomeHero")->width(), 132.0);
        bench.desktop->setReducedMotion(false);
        bench.coordinator()->advance();
        bench.coordinator()->back();
        QTRY_COMPARE(bench.item("welcomeHero")->scale(), 1.0);
    }

    void theSealBouncesOnceUnlessMotionIsUnwanted() {
        SetupWindow bench;
        bench.openAt(Screen::finish);
        QCOMPARE(bench.item("finishSeal")->property("bounce").toInt(), 0);
        QCOMPARE(spoken(bench.item("finishSeal")), u"Setup complete"_s);
        bench.desktop->setReducedMotion(false);
        bench.coordinator()->back();
        bench.coordinator()->advance();
        QTRY_COMPARE(bench.item("finishSeal")->property("bounce").toInt(), 1);
    }

    void theWelcomeSaysItsTexts() {
        SetupWindow bench;
        bench.open();
        QCOMPARE(bench.texts(bench.item("setupBody")),
                 (QStringList{u"Turn your playlists into a DJ-ready library"_s,
                              u"zelk finds and downloads clean audio for the playlists you already love, then drops "
                              "them straight into your djay library."_s,
                              u"Connect Apple Music or Spotify"_s, u"zelk downloads matching audio"_s,
                              u"Auto-imports into your djay library"_s}));
    }
};

QTEST_MAIN(SetupShellTest)
#include "tst_setupshell.moc"
