#include "SettingsBench.h"

#include <atomic>
#include <semaphore>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

enum Tab { accounts = 1, sources = 2, proxy = 5, cliTool = 6, diagnostics = 7 };

SafeConfig config(bool spotifyConnected) {
    SafeConfig config = SampleData::sampleConfig();
    config.spotifyConnected = spotifyConnected;
    config.proxy.configured = true;
    return config;
}

// The settings on one tab, which are closed and opened again.
struct Bench : SettingsBench {
    explicit Bench(Tab tab, const SafeConfig &engines = config(false)) : SettingsBench(engines) { show(tab); }

    void close() const {
        key(Qt::Key_Escape);
        QVERIFY(!window());
    }
    void reopen() {
        close();
        open();
    }
    QQuickItem *in(const char *outer, const char *name) const {
        return item(outer)->findChild<QQuickItem *>(QLatin1StringView(name));
    }
    QString text(const char *name) const { return item(name) ? item(name)->property("text").toString() : QString(); }
};

// An administrator whose password is waited for, and who then refuses.
struct Administrator {
    std::atomic<bool> isAsked = false;
    std::counting_semaphore<> answered{0};

    static std::shared_ptr<Administrator> of(const InstallerBench &machine) {
        auto made = std::make_shared<Administrator>();
        machine.shell->answer = [made](const QString &, const std::stop_token &stop) -> QString {
            made->isAsked = true;
            while (!made->answered.try_acquire_for(std::chrono::milliseconds(1))) {
                if (stop.stop_requested())
                    return {};
            }
            throw RaisedShell::Failure(RaisedShell::Failure::Reason::refused, u"Not today."_s);
        };
        return made;
    }
};

} // namespace

class SettingsReopenedTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void cleanup() { settle(); }

    void anInstallationGoesOnAndShowsHowItEnded() {
        Bench bench(cliTool);
        const auto administrator = Administrator::of(bench.machine);
        bench.click("cliInstall");
        QTRY_VERIFY(administrator->isAsked);
        bench.reopen();
        QVERIFY(!bench.item("cliInstall")->isEnabled());
        QCOMPARE(bench.text("cliInstall"), u"Install"_s);
        administrator->answered.release();
        QTRY_VERIFY(bench.item("cliInstall")->isEnabled());
        // Without the administrator the user has a link of their own.
        QCOMPARE(InstallerBench::targetOf(bench.machine.places().userLink()), bench.machine.engine);
        QCOMPARE(bench.text("cliInstall"), u"Reinstall"_s);
    }

    void anInstallationThatEndsMeanwhileIsToldAfterwards() {
        Bench bench(cliTool);
        bench.machine.makeSystemFolder();
        bench.click("cliInstall");
        bench.close();
        QTRY_COMPARE(bench.model.cliTool()->state(), CLIToolState::installedSymlink(bench.machine.engine));
        settle();
        bench.open();
        QVERIFY(bench.item("cliInstall")->isEnabled());
        QCOMPARE(bench.text("cliInstall"), u"Reinstall"_s);
    }

    void aFailedInstallationStandsUntilTheNextOne() {
        Bench bench(cliTool);
        QVERIFY(QFile::remove(bench.machine.engine));
        bench.click("cliInstall");
        const QString text = u"The bundled zelk helper could not be located."_s;
        QTRY_VERIFY(bench.shows(text));
        bench.reopen();
        QVERIFY(bench.shows(text));
    }

    void aSignInGoesOnAndKeepsItsButtonShut() {
        Bench bench(accounts);
        bench.click(bench.in("spotifyAccount", "action"));
        QTRY_COMPARE(bench.client->sentCount(Method::connectSpotify), 1);
        bench.reopen();
        QVERIFY(!bench.in("spotifyAccount", "action")->isEnabled());
        bench.client->reply(Method::listPlaylists, R"({"playlists":[]})");
        bench.client->reply(Method::getConfig, SettingsBench::reply(config(true)));
        bench.client->release("{}");
        QTRY_COMPARE(bench.in("spotifyAccount", "action")->property("text").toString(), u"Disconnect"_s);
        QVERIFY(bench.in("spotifyAccount", "action")->isEnabled());
        QCOMPARE(bench.client->sentCount(Method::connectSpotify), 1);
    }

    void aFailureThatNobodySawIsToldAndOneThatWasSeenIsNot() {
        Bench bench(accounts, config(true));
        bench.click(bench.in("spotifyAccount", "action"));
        QTRY_COMPARE(bench.client->sentCount(Method::disconnectAccount), 1);
        bench.close();
        bench.client->releaseFailing(HelperError::engineError(u"x"_s, u"The keyring is locked."_s));
        settle();
        bench.open();
        QVERIFY(bench.shows(u"The keyring is locked."_s));
        bench.reopen();
        QVERIFY(!bench.shows(u"The keyring is locked."_s));
    }

    void aTestOfTheTunnelGoesOnAndShowsHowItWent() {
        Bench bench(proxy);
        bench.click("proxyAction");
        QTRY_COMPARE(bench.client->sentCount(Method::testProxy), 1);
        bench.reopen();
        QVERIFY(bench.item("testing"));
        QVERIFY(!bench.item("proxyAction")->isEnabled());
        bench.client->release(R"({"ok":false,"detail":"No route."})");
        QTRY_COMPARE(bench.text("testResult"), u"Failed"_s);
        QCOMPARE(bench.text("testDetail"), u"No route."_s);
        // What was seen needn't be told again.
        bench.reopen();
        QVERIFY(!bench.item("testResult"));
        QVERIFY(bench.item("proxyAction")->isEnabled());
    }

    void aTestThatEndsMeanwhileIsToldAfterwards() {
        Bench bench(proxy);
        bench.click("proxyAction");
        QTRY_COMPARE(bench.client->sentCount(Method::testProxy), 1);
        bench.close();
        bench.client->release(R"({"ok":true})");
        settle();
        bench.open();
        QCOMPARE(bench.text("testResult"), u"Connected"_s);
    }

    void aSecretThatWasNotSavedIsForgotten() {
        Bench bench(proxy);
        bench.item("subscription")->setProperty("text", u"https://vpn.example/secret"_s);
        QCOMPARE(bench.text("proxyAction"), u"Save"_s);
        bench.reopen();
        QCOMPARE(bench.text("subscription"), QString());
        QCOMPARE(bench.text("proxyAction"), u"Test"_s);
    }

    void theDoctorGoesOn() {
        Bench bench(diagnostics);
        bench.click("runAll");
        QTRY_COMPARE(bench.client->sentCount(Method::runDoctor), 1);
        bench.reopen();
        QVERIFY(!bench.item("runAll")->isEnabled());
        bench.client->release(R"({"checks":[{"id":"ffmpeg","status":"ok"}]})");
        QTRY_VERIFY(bench.item("runAll")->isEnabled());
        QVERIFY(bench.shows(u"ffmpeg"_s));
    }

    void theOrderOfTheSourcesIsReadAnew() {
        Bench bench(sources);
        const auto first = [&bench] { return bench.item("sourceRow")->property("label").toString(); };
        QCOMPARE(first(), u"Soulseek"_s);
        bench.close();
        SafeConfig now = config(false);
        now.sources = {SourceId::youtube};
        bench.engineHas = now;
        bench.answerConfig();
        startTask(bench.model.settings(),
                  [&bench](const std::stop_token &) { return bench.model.settings()->refresh(); });
        settle();
        bench.open();
        QCOMPARE(first(), u"YouTube"_s);
    }
};

QTEST_MAIN(SettingsReopenedTest)
#include "tst_settingsreopened.moc"
