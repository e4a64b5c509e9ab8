#pragma once

#include <QCoroTask>

namespace zelk {

class SignInModel;

/// The way to a connected Spotify account, which the engine goes by itself: there is nothing to keep here.
class SpotifyAuthService {
public:
    /// The process's own, which the application makes.
    static SpotifyAuthService &shared();

    /// Ends when the model's own connecting has, on the main thread.
    QCoro::Task<> connect(SignInModel &model);
};

} // namespace zelk
