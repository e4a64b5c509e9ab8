#pragma once

#include "Platform/MusicAuthorization.h"
#include "Platform/MusicUserTokenProvider.h"
#include "Services/SignInModel.h"
#include "State/SettingsStore.h"
#include "State/SyncStore.h"
#include "Support/OneShot.h"
#include "Support/ScriptedClient.h"

#include <QCoroFuture>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zelk {

/// A model with stores over a scripted engine, which says what was asked of it.
class ScriptedModel final : public SignInModel {
public:
    struct Stored {
        AccountService service;
        QString token;
        std::optional<QString> clientId;
        bool operator==(const Stored &) const = default;
    };

    QCoro::Task<> storeAccountToken(AccountService service, QString token, std::optional<QString> clientId) override {
        stored.push_back({service, token, clientId});
        if (storeFailure)
            std::rethrow_exception(storeFailure);
        co_return;
    }
    QCoro::Task<> connectSpotify() override {
        ++spotifyConnects;
        if (onConnectSpotify) {
            const auto future = *onConnectSpotify;
            co_await future;
        }
    }
    SettingsStore *settings() const override { return settingsStore.get(); }
    SyncStore *sync() const override { return syncStore.get(); }

    std::shared_ptr<ScriptedClient> client = std::make_shared<ScriptedClient>();
    std::unique_ptr<SettingsStore> settingsStore = std::make_unique<SettingsStore>(client);
    std::unique_ptr<SyncStore> syncStore = std::make_unique<SyncStore>();
    std::exception_ptr storeFailure;
    std::optional<QFuture<void>> onConnectSpotify;
    std::vector<Stored> stored;
    int spotifyConnects = 0;
};

class ScriptedAuthorization final : public MusicAuthorization {
public:
    QCoro::Task<ConsentStatus> request() override {
        ++requests;
        co_return status;
    }

    ConsentStatus status = ConsentStatus::authorized;
    int requests = 0;
};

/// Gives tokens, fails, or waits until it is stopped, as the test tells it.
struct TokenScript {
    struct Request {
        QString developerToken;
        MusicTokenRequestOptions options;
    };
    QString userToken;
    std::exception_ptr failure;
    bool waits = false;
    std::vector<Request> requests;
};

class ScriptedTokenProvider final : public MusicUserTokenProvider {
public:
    explicit ScriptedTokenProvider(std::shared_ptr<TokenScript> script) : _script(std::move(script)) {}

    QCoro::Task<QString> userToken(QString developerToken, MusicTokenRequestOptions options,
                                   std::stop_token stop) override {
        const auto script = _script;
        script->requests.push_back({developerToken, options});
        if (script->failure)
            std::rethrow_exception(script->failure);
        if (script->waits) {
            const auto wait = std::make_shared<OneShot<void>>(std::make_exception_ptr(Cancelled()));
            const auto future = wait->future();
            const std::stop_callback onStop(stop, [wait] { wait->fail(std::make_exception_ptr(Cancelled())); });
            co_await future;
        }
        co_return script->userToken;
    }

private:
    const std::shared_ptr<TokenScript> _script;
};

} // namespace zelk
