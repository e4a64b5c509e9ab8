#pragma once

#include <QCoroTask>
#include <QFlags>
#include <QString>
#include <QUrl>

#include <chrono>
#include <exception>
#include <memory>
#include <stop_token>

namespace zelk {

class Clock;
class UrlOpener;

enum class MusicTokenRequestOption : quint8 {
    ignoreCache = 1, ///< a new token, even if one of before would still do
};
Q_DECLARE_FLAGS(MusicTokenRequestOptions, MusicTokenRequestOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(MusicTokenRequestOptions)

/// Why there is no user token, in words for the user.
class MusicTokenError : public std::exception {
public:
    explicit MusicTokenError(const QString &description) : _what(description.toUtf8()) {}
    const char *what() const noexcept override { return _what.constData(); }

private:
    QByteArray _what;
};

/// Turns a developer token into the token of a user of Apple Music.
class MusicUserTokenProvider {
public:
    virtual ~MusicUserTokenProvider() = default;

    /// Takes as long as the user does, but no more than the provider's patience. Throws `MusicTokenError`, and
    /// `Cancelled` when it is stopped. On the main thread; the provider may go meanwhile.
    virtual QCoro::Task<QString> userToken(QString developerToken, MusicTokenRequestOptions options,
                                           std::stop_token stop = {}) = 0;

    /// What the provider of this platform, a page in the user's browser, needs.
    struct Browser {
        std::shared_ptr<UrlOpener> opener;
        std::shared_ptr<Clock> clock;
        QUrl musicKit{QStringLiteral("https://js-cdn.music.apple.com/musickit/v3/musickit.js")};
        std::chrono::minutes patience{5};
    };
    static std::unique_ptr<MusicUserTokenProvider> make(Browser browser);
};

} // namespace zelk
