#pragma once

#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "Support/Await.h"
#include "Support/SampleData.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"

#include <QTest>

#include <memory>

namespace zelk {

inline QByteArray wrapped(const SafeConfig &config) {
    return "{\"config\":" + writeJSON(config) + "}";
}

/// A model over a scripted engine, and what the tests of its setup do with both.
class SetupBench {
protected:
    void open() {
        client = std::make_shared<ScriptedClient>();
        model = std::make_unique<AppModel>(client, surroundings());
    }
    void close() {
        model.reset();
        settle();
        client.reset();
    }

    void load(const SafeConfig &config) {
        client->reply(Method::getConfig, wrapped(config));
        QVERIFY(outcomeOf(model->settings()->refresh()).succeeded());
    }
    void commit(SetupCoordinator &coordinator) { QVERIFY(outcomeOf(coordinator.commit()).succeeded()); }
    void acceptPatch() {
        client->reply(Method::setConfig, "null");
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
    }
    /// The patch that was sent last.
    ConfigPatch sentPatch() const {
        ConfigPatch patch;
        for (const auto &request : client->sent()) {
            if (const auto *sent = caseOf<Request::SetConfig>(request))
                patch = sent->patch;
        }
        return patch;
    }
    QStringList storedTokens() const {
        QStringList tokens;
        for (const auto &request : client->sent()) {
            if (const auto *sent = caseOf<Request::StoreAccountToken>(request))
                tokens.append(QString(wireName(sent->service)) + u'=' + sent->token);
        }
        return tokens;
    }
    /// The setup as the model opens it.
    SetupCoordinator &openSetup(SetupCoordinator::Mode mode) {
        model->beginOnboarding(mode);
        settle();
        return *model->setupCoordinator();
    }

    std::shared_ptr<ScriptedClient> client;
    std::unique_ptr<AppModel> model;
};

} // namespace zelk
