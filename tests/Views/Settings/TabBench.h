#pragma once

#include "App/Surroundings.h"
#include "Services/TurnableConsent.h"
#include "Styling/FormBench.h"
#include "Support/Await.h"
#include "Support/SampleData.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"
#include "Support/SharedInstance.h"

namespace zelk {

// The model behind a tab of the settings, over an engine that answers as it is told.
class TabBench {
public:
    explicit TabBench(ConsentStatus consent = ConsentStatus::undetermined) {
        access->status = consent;
        access->answer = consent;
        monitor->recheck();
    }
    ~TabBench() { settle(); }
    Q_DISABLE_COPY_MOVE(TabBench)

    // What the engine will say of its configuration next.
    void replyConfig(const SafeConfig &config) {
        client->reply(Method::getConfig, "{\"config\":" + writeJSON(config) + "}");
    }
    // Has the model read that configuration; what was sent for it isn't told.
    void load(const SafeConfig &config) {
        replyConfig(config);
        outcomeOf(model.settings()->refresh());
        m_before = client->sent().size();
    }
    // What has reached the engine since.
    std::vector<Request> sent() const {
        const auto &all = client->sent();
        return {all.begin() + static_cast<std::ptrdiff_t>(m_before), all.end()};
    }
    QString banner() const {
        const auto &banner = model.sync()->banner();
        return banner ? banner->message : QString();
    }

    static SafeConfig config(bool appleMusic, bool spotify, bool proxy = false) {
        SafeConfig config = SampleData::sampleConfig();
        config.appleMusicConnected = appleMusic;
        config.spotifyConnected = spotify;
        config.proxy.configured = proxy;
        return config;
    }

    std::shared_ptr<ScriptedClient> client = std::make_shared<ScriptedClient>();
    std::shared_ptr<TurnableConsent> access = std::make_shared<TurnableConsent>();
    std::shared_ptr<CountedSettings> permissions = std::make_shared<CountedSettings>();
    AppleMusicLocalAccess localAccess{access, permissions};
    const SharedInstance<AppleMusicLocalAccess> sharedAccess{localAccess};
    ApplicationActivation activation;
    std::shared_ptr<AutomationPermissionMonitor> monitor =
        std::make_shared<AutomationPermissionMonitor>(localAccess, activation);
    AppModel model{client, surroundingsWith(monitor)};

private:
    static AppModel::Surroundings surroundingsWith(std::shared_ptr<AutomationPermissionMonitor> monitor) {
        auto made = surroundings();
        made.automationPermission = std::move(monitor);
        return made;
    }

    std::size_t m_before = 0;
};

// How a control is used.
enum class Hand { mouse, space, enter, screenReader };

inline void use(FormBench &bench, QQuickItem *item, Hand hand = Hand::mouse) {
    QVERIFY(item);
    switch (hand) {
    case Hand::mouse:
        bench.drawFrame();
        bench.click(item);
        return;
    case Hand::space:
    case Hand::enter:
        item->forceActiveFocus(Qt::TabFocusReason);
        bench.key(hand == Hand::space ? Qt::Key_Space : Qt::Key_Return);
        return;
    case Hand::screenReader:
        QVERIFY(press(item));
        return;
    }
}

inline void addHands() {
    QTest::addColumn<Hand>("hand");
    QTest::newRow("mouse") << Hand::mouse;
    QTest::newRow("space") << Hand::space;
    QTest::newRow("return") << Hand::enter;
    QTest::newRow("screen reader") << Hand::screenReader;
}

} // namespace zelk

Q_DECLARE_METATYPE(zelk::Hand)
