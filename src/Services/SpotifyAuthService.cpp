#include "Services/SpotifyAuthService.h"

#include "Services/SignInModel.h"
#include "Support/SharedInstance.h"

namespace zelk {

SpotifyAuthService &SpotifyAuthService::shared() {
    return SharedInstance<SpotifyAuthService>::get();
}

QCoro::Task<> SpotifyAuthService::connect(SignInModel &model) {
    auto connecting = model.connectSpotify();
    co_await connecting;
}

} // namespace zelk
