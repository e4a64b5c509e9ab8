#pragma once

#include "Transport/HelperProtocolCatalogue.h"

#include <QCoroTask>
#include <QString>

#include <optional>

namespace zelk {

class SettingsStore;
class SyncStore;

/// What a sign-in needs of the application's model, which is made after the services. The model owns the stores: when
/// they go, so has it.
class SignInModel {
public:
    virtual ~SignInModel() = default;

    /// Gives a token to the engine. Throws `HelperError`.
    virtual QCoro::Task<> storeAccountToken(AccountService service, QString token,
                                            std::optional<QString> clientId = {}) = 0;
    /// Lets the engine connect a Spotify account, which takes as long as the user does. Failures show in a banner.
    virtual QCoro::Task<> connectSpotify() = 0;
    /// Null before there is a client.
    virtual SettingsStore *settings() const = 0;
    /// Never null.
    virtual SyncStore *sync() const = 0;
};

} // namespace zelk
