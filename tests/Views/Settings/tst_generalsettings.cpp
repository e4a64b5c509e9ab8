#include "SettingsBench.h"
#include "Views/Settings/GeneralLogic.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class GeneralSettingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { failOnWarnings(); }
    void cleanup() { settle(); }

    void itReadsAsItIsWritten() {
        SettingsBench bench;
        bench.model.cliTool()->setDetectedVersion(u"1.2.3"_s);
        QCOMPARE(bench.spokenTree(),
                 (QStringList{u"section: Appearance"_s,
                              u"heading: Appearance"_s,
                              u"pop-up: Theme"_s,
                              u"text: System"_s,
                              u"switch: Reduce glass effects"_s,
                              u"section: Updates"_s,
                              u"heading: Updates"_s,
                              u"switch: Check for updates automatically"_s,
                              u"button: Check for Updates…"_s,
                              u"section: Setup"_s,
                              u"heading: Setup"_s,
                              u"button: Re-run Setup Wizard…"_s,
                              u"text: Reconnect accounts and reconfigure sources, quality, and output."_s,
                              u"section: About"_s,
                              u"heading: About"_s,
                              u"text: Version"_s,
                              u"text: 0.0.0"_s,
                              u"text: CLI version"_s,
                              u"text: 1.2.3"_s,
                              u"text: Apple Music and Spotify are trademarks of their respective owners."_s}));
    }

    void theThemeIsRemembered_data() {
        QTest::addColumn<int>("entry");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("Light") << 1 << u"light"_s << u"Light"_s;
        QTest::newRow("Dark") << 2 << u"dark"_s << u"Dark"_s;
    }
    void theThemeIsRemembered() {
        QFETCH(int, entry);
        SettingsBench bench;
        bench.click("theme");
        QTRY_COMPARE(bench.entries().size(), 3);
        QVERIFY(press(bench.entries().at(entry)));
        QCOMPARE(bench.around.defaults->value(u"appAppearance"_s).toString(),
                 QTest::currentDataTag() == QByteArray("Dark") ? u"dark"_s : u"light"_s);
        QTEST(bench.item("theme")->property("currentText").toString(), "text");
    }

    void theThemeGoesBackToTheSystems() {
        SettingsBench bench;
        GeneralLogic logic(bench.model, bench.updater, bench.appearance, bench.around.defaults);
        logic.setTheme(2);
        logic.setTheme(0);
        QCOMPARE(bench.around.defaults->value(u"appAppearance"_s).toString(), u"system"_s);
        logic.setTheme(7);
        logic.setTheme(-1);
        QCOMPARE(logic.theme(), 0);
    }

    void noWindowGoesByTheThemeAndTheEngineHearsNothingOfIt() {
        SettingsBench bench;
        const bool dark = bench.settings->tokens().color()->dark();
        GeneralLogic logic(bench.model, bench.updater, bench.appearance, bench.around.defaults);
        logic.setTheme(1);
        logic.setTheme(2);
        settle();
        QCOMPARE(bench.settings->tokens().color()->dark(), dark);
        QVERIFY(bench.changes().empty());
    }

    void anUnknownThemePicksNone() {
        SettingsBench bench;
        bench.key(Qt::Key_Escape);
        bench.around.defaults->set(u"appAppearance"_s, u"sepia"_s);
        bench.open();
        QCOMPARE(bench.item("theme")->property("currentText").toString(), QString());
    }

    void theSwitchForGlassIsTheUsersWish() {
        SettingsBench bench;
        QVERIFY(!SettingsBench::isOn(bench.item("reduceGlassEffects")));
        bench.click("reduceGlassEffects");
        QVERIFY(SettingsBench::isOn(bench.item("reduceGlassEffects")));
        QVERIFY(bench.around.defaults->boolValue(u"reduceGlassEffects"_s));
        QVERIFY(press(bench.item("reduceGlassEffects"), QAccessibleActionInterface::toggleAction()));
        QVERIFY(!bench.appearance->reduceGlassEffects());
    }

    void theSwitchForUpdatesIsTheUpdaters() {
        SettingsBench bench;
        QVERIFY(!SettingsBench::isOn(bench.item("automaticallyChecks")));
        bench.focus("automaticallyChecks");
        bench.key(Qt::Key_Space);
        QVERIFY(bench.updater.automaticallyChecks());
        QVERIFY(SettingsBench::isOn(bench.item("automaticallyChecks")));
        bench.updater.setAutomaticallyChecks(false);
        QVERIFY(!SettingsBench::isOn(bench.item("automaticallyChecks")));
    }

    void updatesAreCheckedAtOnce() {
        SettingsBench bench;
        QVERIFY(bench.item("checkForUpdates")->isEnabled());
        bench.click("checkForUpdates");
        QTRY_VERIFY(bench.updates.scenes > 0);
        QVERIFY(bench.item("checkForUpdates")->isEnabled());
    }

    void theVersionOfTheCommandLineToolShowsOnceItIsKnown() {
        SettingsBench bench;
        QVERIFY(!bench.shows(u"CLI version"_s));
        bench.model.cliTool()->setDetectedVersion(u"1.2.3"_s);
        QTRY_VERIFY(bench.shows(u"CLI version"_s));
        QVERIFY(bench.shows(u"1.2.3"_s));
    }

    void theSetupIsRunAgainOverTheMainWindow() {
        QQuickWindow main;
        main.setTitle(u"zelk"_s);
        main.show();
        SettingsBench bench;
        bench.click("reRunSetup");
        QTRY_VERIFY(bench.model.isOnboardingPresented());
        QVERIFY(bench.model.setupCoordinator());
        QCOMPARE(bench.model.setupCoordinator()->mode(), SetupCoordinator::Mode::reRun);
        QTRY_VERIFY(main.isActive());
    }

    void theSetupIsRunAgainEvenWithoutAnotherWindow() {
        SettingsBench bench;
        QVERIFY(press(bench.item("reRunSetup")));
        QTRY_VERIFY(bench.model.isOnboardingPresented());
        QVERIFY(bench.window()->isActive());
    }

    void theWindowToWorkInIsTheFirstThatIsNotTheSettings_data() {
        QTest::addColumn<QStringList>("titles");
        QTest::addColumn<int>("found");
        QTest::newRow("behind the settings") << QStringList{u"Settings"_s, u"zelk"_s} << 1;
        QTest::newRow("upper case") << QStringList{u"ZELK SETTINGS"_s, u"zelk"_s} << 1;
        QTest::newRow("lower case") << QStringList{u"my settings of it"_s, u"zelk"_s} << 1;
        QTest::newRow("the first of two") << QStringList{u"one"_s, u"two"_s} << 0;
        QTest::newRow("the settings alone") << QStringList{u"Settings"_s} << -1;
        QTest::newRow("none") << QStringList() << -1;
    }
    void theWindowToWorkInIsTheFirstThatIsNotTheSettings() {
        QFETCH(QStringList, titles);
        std::vector<std::unique_ptr<QWindow>> windows;
        QWindowList list;
        for (const QString &title : titles) {
            windows.push_back(std::make_unique<QWindow>());
            windows.back()->setTitle(title);
            windows.back()->show();
            list += windows.back().get();
        }
        QFETCH(int, found);
        QCOMPARE(workWindow(list), found < 0 ? nullptr : list.at(found));
    }

    void aDialogAndAWindowThatIsNotInViewAreNoWindowsToWorkIn() {
        QWindow dialog;
        dialog.setFlags(Qt::Dialog);
        dialog.show();
        QWindow hidden;
        QCOMPARE(workWindow({&dialog, &hidden}), nullptr);
    }
};

QTEST_MAIN(GeneralSettingsTest)
#include "tst_generalsettings.moc"
