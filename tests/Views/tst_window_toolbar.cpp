#include "Accessible.h"
#include "Support/ScriptedClient.h"
#include "WindowBench.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Event = ServerEvent;

namespace {

// The window over an engine that has a tunnel, or not.
class TunnelBench : public WindowBench {
public:
    TunnelBench(bool configured, bool enabled) : TunnelBench(std::make_shared<ScriptedClient>()) {
        setTunnel(configured, enabled);
    }

    void setTunnel(bool configured, bool enabled) {
        SafeConfig config = SampleData::sampleConfig();
        config.proxy.configured = configured;
        config.proxy.enabled = enabled;
        engine->reply(Method::getConfig, "{\"config\":" + writeJSON(config) + "}");
        SettingsStore *settings = model.settings();
        startTask(settings, [settings](const std::stop_token &) { return settings->refresh(); });
        QTRY_VERIFY(settings->config() == config);
    }

    std::shared_ptr<ScriptedClient> engine;

private:
    explicit TunnelBench(const std::shared_ptr<ScriptedClient> &client) : WindowBench(client), engine(client) {
        engine->reply(Method::listPlaylists, "{\"playlists\":" + writeJSON(library()) + "}");
        engine->reply(Method::proxyInfo, R"({"ok":false,"nodeCount":0})");
    }
};

} // namespace

class WindowToolbarTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void shortOfRoomTheToolbarKeepsToItsPaneAndItsNames() {
        TunnelBench bench(true, true);
        bench.loadLibrary();
        bench.beginRun(1, 2);
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::awaitingReview({}));
        QTRY_VERIFY(bench.item("toolbarReview"));
        QVERIFY(bench.texts(bench.item("toolbarReview")).contains(u"1 review"_s));
        bench.window.window()->resize(880, 600);
        bench.model.openReview();
        // The tunnel's words go first, which is enough here.
        QTRY_VERIFY(bench.texts(bench.item("toolbarVPN")).isEmpty());
        QVERIFY(bench.texts(bench.item("toolbarCancel")).contains(u"Cancel Sync"_s));
        QCOMPARE(spoken(bench.item("toolbarReview")), u"1 review"_s);
        const QQuickItem *edge = bench.item("sidebarEdge");
        QTRY_VERIFY(bench.item("toolbarVPN")->mapToScene(QPointF()).x() > edge->x() + edge->width());
        bench.window.window()->resize(1400, 900);
        QTRY_VERIFY(!bench.texts(bench.item("toolbarVPN")).isEmpty());
    }

    void withoutATunnelOnlyItsControlIsAbsent() {
        TunnelBench bench(false, false);
        bench.loadLibrary();
        bench.model.library()->setSelection({u"peak"_s});
        QVERIFY(!bench.item("toolbarVPN"));
        QVERIFY(bench.item("toolbarSync")->isEnabled());
        bench.beginRun(1, 1);
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::awaitingReview({}));
        QTRY_VERIFY(bench.item("toolbarReview"));
        QVERIFY(bench.item("toolbarCancel"));
    }

    void theTunnelStandsFirst() {
        TunnelBench bench(true, true);
        bench.beginRun(1, 1);
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::awaitingReview({}));
        QTRY_VERIFY(bench.item("toolbarReview"));
        bench.drawFrame();
        const auto left = [&bench](const char *name) { return bench.item(name)->mapToScene(QPointF()).x(); };
        QVERIFY(left("toolbarVPN") < left("toolbarReview"));
        QVERIFY(left("toolbarReview") < left("toolbarCancel"));
    }

    void itSaysHowTheTunnelStands() {
        TunnelBench bench(true, true);
        bench.route(Event::ProxyStatus{ProxyStatusValue::connected, u"3 nodes"_s});
        QVERIFY(bench.shows(u"3 nodes"_s));
        QCOMPARE(spoken(bench.item("toolbarVPN")), u"Vantrix VPN"_s);
        QCOMPARE(spoken(bench.item("toolbarVPN"), QAccessible::Description), u"Connected (3 nodes)"_s);
        QCOMPARE(bench.item("toolbarVPN")->property("hint").toString(), u"Connected (3 nodes)"_s);
        bench.route(Event::ProxyStatus{ProxyStatusValue::connected, u"1 node"_s});
        QVERIFY(bench.shows(u"1 node"_s));
    }

    void theReviewButtonGoesWithTheLastReview() {
        WindowBench bench;
        bench.beginRun(1, 1);
        TrackModel *track = bench.model.sync()->groups()->at(0)->track(0);
        track->setState(TrackState::awaitingReview({}));
        QTRY_VERIFY(bench.item("toolbarReview"));
        track->setState(TrackState::done(Finish::ok));
        QTRY_VERIFY(!bench.item("toolbarReview"));
    }

    void itsMenuSaysTheStateAndOffersTwoThings() {
        TunnelBench bench(true, true);
        QVERIFY(!bench.item("menuVPNToggle"));
        bench.click(bench.item("toolbarVPN"));
        QTRY_VERIFY(bench.item("menuVPNToggle"));
        QCOMPARE(bench.texts(bench.item("menuVPNStatus")), QStringList{u"On"_s});
        QCOMPARE(spoken(bench.item("menuVPNToggle")), u"Turn Vantrix VPN Off"_s);
        QCOMPARE(spoken(bench.item("menuVPNTest")), u"Test Connection…"_s);
        QVERIFY(bench.item("menuVPNTest")->isEnabled());
        const auto top = [&bench](const char *name) { return bench.item(name)->mapToScene(QPointF()).y(); };
        QVERIFY(top("menuVPNStatus") < top("menuVPNToggle"));
        QVERIFY(top("menuVPNToggle") < top("menuVPNTest"));
        // The words do nothing, and leave the menu open.
        bench.click(bench.item("menuVPNStatus"));
        QVERIFY(bench.item("menuVPNToggle"));
        bench.click(bench.item("toolbarVPN"));
        QTRY_VERIFY(!bench.item("menuVPNToggle"));
    }

    void aTunnelThatIsOffCanBeTurnedOnAndNotTested() {
        TunnelBench bench(true, false);
        QVERIFY(press(bench.item("toolbarVPN")));
        QTRY_VERIFY(bench.item("menuVPNToggle"));
        QCOMPARE(bench.texts(bench.item("menuVPNStatus")), QStringList{u"Vantrix VPN is off"_s});
        QCOMPARE(spoken(bench.item("menuVPNToggle")), u"Turn Vantrix VPN On"_s);
        QVERIFY(!bench.item("menuVPNTest")->isEnabled());
    }

    void theKeyboardReachesTheTwoThingsAndPassesTheWords() {
        TunnelBench bench(true, true);
        bench.item("toolbarVPN")->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Return);
        QTRY_VERIFY(bench.item("menuVPNToggle"));
        bench.key(Qt::Key_Down);
        QVERIFY(bench.item("menuVPNToggle")->hasActiveFocus());
        bench.key(Qt::Key_Down);
        QVERIFY(bench.item("menuVPNTest")->hasActiveFocus());
        bench.engine->reply(Method::testProxy, R"({"ok":false})");
        bench.key(Qt::Key_Return);
        QTRY_VERIFY(bench.shows(u"Failed"_s));
        QTRY_VERIFY(!bench.item("menuVPNTest"));
        QTRY_COMPARE(bench.clock->pendingAlarms(), 1);
        bench.clock->advance(std::chrono::seconds(4));
        QTRY_VERIFY(!bench.shows(u"Failed"_s));
    }

    void theMenuGoesWithItsControl() {
        TunnelBench bench(true, true);
        bench.click(bench.item("toolbarVPN"));
        QTRY_VERIFY(bench.item("menuVPNToggle"));
        bench.setTunnel(false, true);
        QTRY_VERIFY(!bench.item("menuVPNToggle"));
    }
};

QTEST_MAIN(WindowToolbarTest)
#include "tst_window_toolbar.moc"
