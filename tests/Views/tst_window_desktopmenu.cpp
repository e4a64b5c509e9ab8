// The window's menus on a desktop that shows them in a bar of its own.
#include "Platform/AppMenuRegistrar.h"
#include "Platform/DesktopBar.h"
#include "Platform/PrivateBus.h"
#include "WindowBench.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class WindowDesktopMenuTest : public QObject {
    Q_OBJECT

    PrivateBus _bus;
    std::unique_ptr<AppMenuRegistrar> _registrar;

    std::unique_ptr<WindowBench> bench() const {
        return std::make_unique<WindowBench>(WindowBench::library(), GlobalMenu::on(_bus.connection(u"application"_s)));
    }
    void startRegistrar() { _registrar = std::make_unique<AppMenuRegistrar>(_bus.connection(u"registrar"_s)); }
    std::unique_ptr<DesktopBar> barOf(const WindowBench &bench) const {
        [&] { QTRY_COMPARE(slimBar(bench)->height(), 0.0); }();
        return std::make_unique<DesktopBar>(_bus.connection(u"bar"_s),
                                            _registrar->menus.value(static_cast<uint>(bench.window.window()->winId())));
    }
    static QQuickItem *slimBar(const WindowBench &bench) {
        return bench.window.window()->property("slimBar").value<QQuickItem *>();
    }
    static double topOfTheRest(const WindowBench &bench) {
        return bench.item("toolbarSync")->mapToScene(QPointF()).y();
    }

private Q_SLOTS:
    void initTestCase() { _bus.start(); }
    void cleanupTestCase() { _bus.stop(); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() {
        settleDown();
        _registrar.reset();
        for (const auto &name : {u"application"_s, u"registrar"_s, u"bar"_s})
            QDBusConnection::disconnectFromBus(name);
    }

    void theSlimBarGoesAndComesWithTheRegistrar() {
        const auto window = bench();
        const double height = slimBar(*window)->height();
        QVERIFY(height > 0);
        QVERIFY(slimBar(*window)->isVisible());
        const double top = topOfTheRest(*window);
        for (int i = 0; i < 2; ++i) {
            startRegistrar();
            QTRY_COMPARE(slimBar(*window)->height(), 0.0);
            QVERIFY(!slimBar(*window)->isVisible());
            QCOMPARE(topOfTheRest(*window), top - height);
            _registrar.reset();
            QTRY_COMPARE(slimBar(*window)->height(), height);
            QVERIFY(slimBar(*window)->isVisible());
            QCOMPARE(topOfTheRest(*window), top);
        }
        window->key(Qt::Key_F, Qt::AltModifier);
        QTRY_VERIFY(window->item("menuSync"));
    }

    void aRegistrarThatRefusesLeavesTheSlimBar() {
        startRegistrar();
        _registrar->refuses = true;
        const auto window = bench();
        QTRY_VERIFY(_registrar->registrations > 0);
        settleDown();
        QVERIFY(slimBar(*window)->isVisible());
    }

    void theDesktopShowsTheSameMenus() {
        startRegistrar();
        const auto window = bench();
        const auto bar = barOf(*window);
        const QStringList wanted{u"_File"_s,
                                 u"  Sync [Control R]"_s,
                                 u"  Cancel Sync [Control .] off"_s,
                                 u"  Refresh Library [Control Shift R]"_s,
                                 u"  Reveal Output Folder"_s,
                                 u"  -"_s,
                                 u"  Review Matches [Control Alt R] off"_s,
                                 u"  -"_s,
                                 u"  Settings… [Control ,]"_s,
                                 u"  -"_s,
                                 u"  Quit [Control Q]"_s,
                                 u"_Help"_s,
                                 u"  zelk Help"_s,
                                 u"  -"_s,
                                 u"  About zelk"_s,
                                 u"  Check for Updates…"_s};
        QCOMPARE(DesktopBar::lines(bar->layout()), wanted);
    }

    void whatIsEnabledFollowsTheRun() {
        startRegistrar();
        const auto window = bench();
        const auto bar = barOf(*window);
        const int sync = DesktopBar::find(bar->layout(), u"Sync"_s);
        const int cancel = DesktopBar::find(bar->layout(), u"Cancel Sync"_s);
        window->beginRun(1, 2);
        QTRY_VERIFY(bar->updates.contains(DesktopBar::Update{sync, {{u"enabled"_s, false}}}));
        QTRY_VERIFY(bar->removals.contains(std::pair{cancel, QStringList{u"enabled"_s}}));
        window->model.sync()->markCancelled();
        QTRY_VERIFY(bar->updates.contains(DesktopBar::Update{cancel, {{u"enabled"_s, false}}}));
        QTRY_VERIFY(bar->removals.contains(std::pair{sync, QStringList{u"enabled"_s}}));
    }

    void aClickThereDoesWhatTheEntryDoes() {
        startRegistrar();
        const auto window = bench();
        const auto bar = barOf(*window);
        const auto layout = bar->layout();
        const auto pick = [&](const QString &label) { bar->send(DesktopBar::find(layout, label)); };
        pick(u"About zelk"_s);
        QTRY_COMPARE(window->aboutOpened, 1);
        pick(u"Check for Updates…"_s);
        QTRY_COMPARE(window->updateChecks, 1);
        pick(u"Settings…"_s);
        QTRY_COMPARE(window->settingsOpened, 1);
        settleDown();
        QCOMPARE(window->aboutOpened, 1);
    }

    void aDisabledEntryDoesNothing() {
        startRegistrar();
        const auto window = bench();
        const auto bar = barOf(*window);
        const auto layout = bar->layout();
        QVERIFY(!window->model.sync()->isRunning());
        bar->send(DesktopBar::find(layout, u"Review Matches"_s));
        bar->send(DesktopBar::find(layout, u"About zelk"_s));
        QTRY_COMPARE(window->aboutOpened, 1);
        QVERIFY(!window->item("reviewInspector"));
    }

    void behindTheSetupNothingIsInReach() {
        startRegistrar();
        const auto window = bench();
        const auto bar = barOf(*window);
        const int refresh = DesktopBar::find(bar->layout(), u"Refresh Library"_s);
        window->model.beginOnboarding(SetupCoordinator::Mode::reRun);
        QTRY_VERIFY(bar->updates.contains(DesktopBar::Update{refresh, {{u"enabled"_s, false}}}));
        window->model.setOnboardingPresented(false);
        QTRY_VERIFY(bar->removals.contains(std::pair{refresh, QStringList{u"enabled"_s}}));
    }

    void theKeysWorkOnceAsBefore() {
        startRegistrar();
        const auto window = bench();
        const auto bar = barOf(*window);
        window->window.window()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window->window.window()));
        window->key(Qt::Key_Comma, Qt::ControlModifier);
        settleDown();
        QCOMPARE(window->settingsOpened, 1);
        window->key(Qt::Key_F, Qt::AltModifier); // there is nothing that it could open
        settleDown();
        QVERIFY(!window->item("menuSync"));
        _registrar.reset();
        QTRY_VERIFY(slimBar(*window)->isVisible());
        window->key(Qt::Key_Comma, Qt::ControlModifier);
        settleDown();
        QCOMPARE(window->settingsOpened, 2);
    }

    void theWindowThatGoesIsForgotten() {
        startRegistrar();
        auto window = bench();
        barOf(*window);
        QCOMPARE(_registrar->menus.size(), 1);
        window.reset();
        QTRY_VERIFY(_registrar->menus.isEmpty());
    }
};

QTEST_MAIN(WindowDesktopMenuTest)
#include "tst_window_desktopmenu.moc"
