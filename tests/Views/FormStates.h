#pragma once

#include "Onboarding/SetupWindow.h"
#include "Settings/SettingsBench.h"
#include "Views/Onboarding/ConnectMusicLogic.h"

#include <functional>

namespace zelk {

// Shows the setup and the settings as full as they get, one state after the other.
class FormStates {
public:
    // Looks at a window whose state is named.
    using Look = std::function<void(QQuickWindow *window, const char *state)>;

    // The six screens, and the question at the end.
    static void ofSetup(SetupWindow &bench, const Look &look) {
        using Screen = SetupCoordinator::Screen;
        const auto see = [&](const char *state) {
            drawn(bench);
            look(bench.window.window(), state);
        };
        bench.open(SetupWindow::Mode::firstRun, everything(false));
        see("welcome");
        bench.coordinator()->advance();
        QTRY_COMPARE(bench.engine->sentCount(Method::provisionTools), 1);
        say(bench, ServerEvent::ToolProgress{QStringLiteral("yt-dlp"), ToolPhase::verify, {}, {}});
        say(bench, ServerEvent::ToolProgress{QStringLiteral("ffmpeg"), ToolPhase::download, 63, {}});
        say(bench, ServerEvent::Log{{}, ServerEvent::LogLevel::info, QStringLiteral("ffmpeg: fetched 28.4 MB")});
        see("tools that are fetched");
        say(bench, ServerEvent::ToolProgress{QStringLiteral("yt-dlp"), ToolPhase::done, {}, {}});
        bench.engine->release(
            R"({"ok":false,"tools":[{"id":"yt-dlp","name":"yt-dlp","status":"ok","detail":"1"},)"
            R"({"id":"ffmpeg","name":"ffmpeg","status":"missing","detail":"The download ended too early."}]})");
        QTRY_VERIFY(bench.item("toolsFailed"));
        see("tools that failed");
        bench.goTo(Screen::connectMusic);
        see("accounts to connect");
        bench.consent->status = ConsentStatus::denied;
        bench.monitor->recheck();
        bench.press(bench.part("appleMusicLine", "accountConnect"));
        bench.press(bench.part("spotifyLine", "accountConnect"));
        QTRY_VERIFY(bench.shows(ConnectMusicLogic::tr("Connecting in your browser…")));
        see("accounts under way, a library that is denied");
        bench.goTo(Screen::downloadSources);
        see("sources");
        bench.goTo(Screen::fineTuning);
        see("folder and quality");
        bench.goTo(Screen::finish);
        see("finish without playlists");
        bench.press("setupPrimary");
        QTRY_VERIFY(bench.warning());
        QVERIFY(QTest::qWaitForWindowExposed(bench.warning()));
        look(bench.warning(), "question");
        bench.warning()->close();
        bench.configure(everything(true));
        see("finish with everything");
    }

    // The eight tabs.
    static void ofSettings(SettingsBench &bench, const Look &look) {
        const auto see = [&](const char *state) {
            settle();
            bench.window()->grabWindow();
            look(bench.window(), state);
        };
        bench.model.cliTool()->setDetectedVersion(QStringLiteral("1.2.3"));
        see("general");
        bench.show(1);
        see("accounts");
        bench.show(2);
        bench.item("soundcloudToken")->setProperty("text", QStringLiteral("a token"));
        see("sources");
        bench.show(3);
        see("quality");
        bench.show(4);
        see("output");
        bench.show(5);
        see("tunnel");
        bench.client->reply(Method::testProxy,
                            R"({"ok":false,"detail":"None of the tunnel's nodes could be reached."})");
        bench.click("proxyAction");
        QTRY_VERIFY(bench.item("testDetail"));
        see("tunnel that was tested");
        bench.show(6);
        see("command line");
        QFile::remove(bench.machine.engine);
        bench.click("cliInstall");
        QTRY_VERIFY(!bench.item("cliNote"));
        see("command line that failed");
        bench.show(7);
        see("diagnostics before a run");
        bench.client->reply(Method::runDoctor, R"({"checks":[
            {"id":"ffmpeg","title":"ffmpeg","status":"ok","detail":"Version 5.1."},
            {"id":"output","title":"Output folder","status":"fail","detail":"It isn't there.","fixable":true},
            {"id":"space","title":"Disk space","status":"warn"}]})");
        bench.click("runAll");
        QTRY_VERIFY(bench.item("fix"));
        see("diagnostics");
    }

    static SafeConfig everything(bool isConnected) {
        SafeConfig config = SampleData::sampleConfig();
        config.sources = {SourceId::soulseek, SourceId::bandcamp, SourceId::soundcloud, SourceId::youtube};
        config.appleMusicConnected = config.spotifyConnected = isConnected;
        config.identity = {true, true};
        config.proxy.configured = true;
        return config;
    }

private:
    static void say(SetupWindow &bench, const ServerEvent &event) {
        bench.engine->emit(HelperEvent::server(event));
        settleDown();
    }
    static void drawn(const SetupWindow &bench) {
        bench.drawFrame();
        settleDown();
        bench.drawFrame();
    }
};

} // namespace zelk
