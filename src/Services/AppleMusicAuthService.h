#pragma once

#include <QCoroTask>
#include <QUrl>

#include <exception>
#include <functional>
#include <memory>

namespace zelk {

class MusicAuthorization;
class MusicUserTokenProvider;
class SignInModel;
class URLSession;

/// Signs the user in to Apple's cloud music service: gets the two tokens that it needs, and hands the user's to the
/// engine. It keeps neither. Without it the application works with the user's own library, so no failure is worse than
/// a message that says so. It lives on the main thread.
class AppleMusicAuthService {
public:
    /// What the platform and the network do for it.
    struct Operations {
        std::shared_ptr<MusicAuthorization> authorization;
        std::function<std::unique_ptr<MusicUserTokenProvider>()> makeTokenProvider;
        std::shared_ptr<URLSession> session;
    };

    /// Ends the program when `devTokenURL` is none.
    explicit AppleMusicAuthService(Operations operations, const QUrl &devTokenURL = compiledDevTokenURL());
    /// A sign-in under way ends, without a word.
    ~AppleMusicAuthService();
    Q_DISABLE_COPY_MOVE(AppleMusicAuthService)

    /// The process's own, which the application makes.
    static AppleMusicAuthService &shared();

    /// Where the application's own web service hands out developer tokens.
    static QUrl compiledDevTokenURL();

    /// Signs in, which takes as long as the user does; never throws. What came of it shows in the model's stores: in
    /// the settings, or in a banner. The model may go meanwhile. Overlapping sign-ins are the caller's to prevent.
    QCoro::Task<> connect(SignInModel &model);

private:
    struct Core;
    const std::shared_ptr<Core> _core;
};

} // namespace zelk
