#include "App/AppModel.h"

#include <QCoreApplication>
#include <QPointer>

#include <exception>
#include <utility>

// The commands of the model around accounts and the setup that asks for them.
namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(AppModel)
};

/// A user needs that long to sign in with a browser.
constexpr std::chrono::seconds spotifyTimeout{300};

} // namespace

QCoro::Task<> AppModel::storeAccountToken(AccountService service, QString token, std::optional<QString> clientId) {
    if (!_client)
        throw HelperError::helperUnavailable();
    auto sending = _client->send(Request::storeAccountToken(service, std::move(token), std::move(clientId)),
                                 HelperClienting::standardTimeout, _lifetime.token());
    co_await sending;
}

QCoro::Task<> AppModel::disconnectAccount(AccountService service) {
    if (!_client)
        throw HelperError::helperUnavailable();
    const QPointer<AppModel> self(this);
    auto sending =
        _client->send(Request::disconnectAccount(service), HelperClienting::standardTimeout, _lifetime.token());
    co_await sending;
    if (!self || !_settings)
        co_return;
    auto refreshing = _settings->refresh();
    co_await refreshing;
}

QCoro::Task<> AppModel::connectSpotify() {
    if (!_client)
        co_return;
    const QPointer<AppModel> self(this);
    std::exception_ptr failure;
    try {
        auto sending = _client->send(Request::connectSpotify(), spotifyTimeout, _lifetime.token());
        co_await sending;
    } catch (...) {
        failure = std::current_exception();
    }
    if (!self)
        co_return;
    if (failure) {
        _sync->setBanner(SyncBanner::error(Texts::tr("Spotify connection failed: ") + describe(failure)));
        co_return;
    }
    // First the account, then the playlists that it makes reachable.
    auto fetching = initialFetch();
    co_await fetching;
}

void AppModel::beginOnboarding(std::optional<SetupCoordinator::Mode> mode) {
    using Mode = SetupCoordinator::Mode;
    if (!mode)
        mode = _surroundings.defaults->boolValue(QStringLiteral("didOnboard")) ? Mode::reRun : Mode::firstRun;
    startTask(this, [self = QPointer(this), mode = *mode](std::stop_token) -> QCoro::Task<> {
        if (self->_settings && !self->_settings->config()) {
            auto refreshing = self->_settings->refresh();
            co_await refreshing;
            if (!self)
                co_return;
        }
        const auto config = self->_settings ? self->_settings->config() : std::nullopt;
        self->setSetupCoordinator(new SetupCoordinator(mode, self, config, self));
        self->setOnboardingPresented(true);
    });
}

void AppModel::finishOnboarding() {
    setOnboardingPresented(false);
    setSetupCoordinator(nullptr);
    // What the setup has changed takes effect through this.
    startTask(this, [self = QPointer(this)](std::stop_token) { return self->initialFetch(); });
}

void AppModel::setSetupCoordinator(SetupCoordinator *coordinator) {
    if (coordinator == _setupCoordinator)
        return;
    // The old one may be the very caller.
    if (_setupCoordinator)
        _setupCoordinator->deleteLater();
    _setupCoordinator = coordinator;
    // A setup that was closed while it stored, to no avail, goes once that is over.
    if (coordinator)
        connect(coordinator, &SetupCoordinator::isCommittingChanged, this, [this, coordinator] {
            if (!coordinator->isCommitting() && !_isOnboardingPresented)
                setSetupCoordinator(nullptr);
        });
    Q_EMIT setupCoordinatorChanged();
}

} // namespace zelk
