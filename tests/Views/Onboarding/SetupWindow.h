#pragma once

#include "Platform/MusicAuthorization.h"
#include "Platform/MusicUserTokenProvider.h"
#include "Services/AppleMusicAuthService.h"
#include "Services/TurnableConsent.h"
#include "Services/URLSession.h"
#include "Support/OneShot.h"
#include "Support/ScriptedClient.h"
#include "Support/SharedInstance.h"
#include "Views/Accessible.h"
#include "Views/WindowBench.h"

#include <QCoroFuture>

#include <optional>

namespace zelk {

/// Waits for the test to say no to a sign-in, which is all that the window sees of one.
class HeldAuthorization final : public MusicAuthorization {
public:
    QCoro::Task<ConsentStatus> request() override {
        ++requests;
        auto held = std::make_shared<OneShot<ConsentStatus>>(std::make_exception_ptr(std::exception()));
        const auto future = held->future();
        open.push_back(std::move(held));
        const auto status = co_await future;
        co_return status;
    }
    void refuse() {
        for (const auto &each : std::exchange(open, {}))
            each->fulfil(ConsentStatus::denied);
    }
    ~HeldAuthorization() override { refuse(); }

    std::vector<OneShotRef<ConsentStatus>> open;
    int requests = 0;
};

/// What stands behind the setup's window, and outlives it.
struct SetupServices {
    SetupServices() = default;
    /// A sign-in that still waits keeps all that it needs, itself among it.
    ~SetupServices() { authorization->refuse(); }
    Q_DISABLE_COPY_MOVE(SetupServices)

    std::shared_ptr<TurnableConsent> consent = std::make_shared<TurnableConsent>();
    std::shared_ptr<CountedSettings> consentSettings = std::make_shared<CountedSettings>();
    AppleMusicLocalAccess access{consent, consentSettings};
    ApplicationActivation activation;
    std::shared_ptr<AutomationPermissionMonitor> monitor =
        std::make_shared<AutomationPermissionMonitor>(access, activation);
    std::shared_ptr<HeldAuthorization> authorization = std::make_shared<HeldAuthorization>();
    AppleMusicAuthService appleMusic{{.authorization = authorization, .makeTokenProvider = {}, .session = {}},
                                     QUrl(QStringLiteral("http://127.0.0.1:9/"))};
    const SharedInstance<AppleMusicLocalAccess> sharedAccess{access};
    const SharedInstance<AppleMusicAuthService> sharedAppleMusic{appleMusic};
};

/// The window of somebody who uses the setup, over a scripted engine.
class SetupWindow : public SetupServices, public WindowBench {
public:
    using Mode = SetupCoordinator::Mode;
    using Screen = SetupCoordinator::Screen;

    explicit SetupWindow(const std::shared_ptr<UserDefaults> &defaults = onboardedDefaults())
        : SetupWindow(std::make_shared<ScriptedClient>(), defaults) {}

    /// A configuration with nothing connected.
    static SafeConfig bare() {
        SafeConfig config = SampleData::sampleConfig();
        config.appleMusicConnected = config.spotifyConnected = false;
        config.outputDir.reset();
        return config;
    }
    static QByteArray wrapped(const SafeConfig &config) { return "{\"config\":" + writeJSON(config) + "}"; }

    /// Opens the setup, on its first screen.
    void open(Mode mode = Mode::firstRun, const SafeConfig &config = bare()) {
        engine->reply(Method::getConfig, wrapped(config));
        model.beginOnboarding(mode);
        QTRY_VERIFY(item("setupPrimary"));
        window.window()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window.window()));
        QTRY_VERIFY(item("setupSheet")->hasActiveFocus());
    }
    void openAt(Screen screen, const SafeConfig &config = bare(), Mode mode = Mode::firstRun) {
        open(mode, config);
        goTo(screen);
    }
    void goTo(Screen screen) {
        if (screen > Screen::prepareTools && tools()->phase() == ProvisioningPhase::idle)
            engine->reply(Method::provisionTools, R"({"ok":true,"tools":[]})");
        while (coordinator()->currentScreen() < screen)
            coordinator()->advance();
        while (coordinator()->currentScreen() > screen)
            coordinator()->back();
        drawFrame();
    }
    /// Lets the engine report that configuration.
    void configure(const SafeConfig &config) {
        engine->reply(Method::getConfig, wrapped(config));
        SettingsStore *settings = model.settings();
        startTask(settings, [settings](const std::stop_token &) { return settings->refresh(); });
        QTRY_VERIFY(settings->config() == config);
    }
    /// Lets the engine list the playlists of the bench.
    void loadLibraryInto() {
        engine->reply(Method::listPlaylists, "{\"playlists\":" + writeJSON(library()) + "}");
        loadLibrary();
    }
    void type(const char *field, const QString &text) {
        QVERIFY2(item(field), field);
        item(field)->forceActiveFocus(Qt::TabFocusReason);
        for (const QChar c : text)
            QTest::keyClick(window.window(), c.toLatin1());
    }
    void press(const char *name) {
        QVERIFY2(item(name), name);
        QVERIFY2(zelk::press(item(name)), name);
    }
    void press(QQuickItem *control) {
        QVERIFY(control);
        QVERIFY2(zelk::press(control), qPrintable(control->objectName()));
    }
    /// An item within another, by its name; null while it isn't in view.
    QQuickItem *part(const char *outer, const char *name) const {
        const QString wanted = QString::fromLatin1(name);
        QQuickItem *const within = item(outer);
        return within ? itemsOf(within, [&wanted](QQuickItem *each) { return each->objectName() == wanted; }).value(0)
                      : nullptr;
    }
    QQuickWindow *warning() const {
        for (QWindow *each : QGuiApplication::topLevelWindows()) {
            if (each->isVisible() && each->objectName() == QStringLiteral("sourceWarning"))
                return qobject_cast<QQuickWindow *>(each);
        }
        return nullptr;
    }
    QQuickItem *inWarning(const char *name) const {
        const QString wanted = QString::fromLatin1(name);
        return itemsOf(warning()->contentItem(), [&wanted](QQuickItem *each) { return each->objectName() == wanted; })
            .value(0);
    }
    SetupCoordinator *coordinator() const { return model.setupCoordinator(); }
    ToolProvisioningStore *tools() const { return model.toolProvisioning(); }

    std::shared_ptr<ScriptedClient> engine;

private:
    SetupWindow(const std::shared_ptr<ScriptedClient> &client, const std::shared_ptr<UserDefaults> &defaults)
        : WindowBench(client, defaults, monitor), engine(client) {
        desktop->setReducedMotion(true);
    }
};

} // namespace zelk
