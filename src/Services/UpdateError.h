#pragma once

#include <QString>

#include <exception>

namespace zelk {

/// What keeps an update from being found or taken. What the user reads of each is the window's to say.
enum class UpdateProblem : quint8 {
    noFeed,          ///< this build names no feed: it has no updates
    insecureAddress, ///< an address, or where it leads on to, is not HTTPS
    unreachable,     ///< no network, no such host, a connection refused or lost
    untrustedServer, ///< the server's certificate can't be trusted
    refused,         ///< the server answered with a failure, such as 404
    silence,         ///< nothing came for too long
    unreadableFeed,  ///< no feed, or one that tries something
    tooLarge,        ///< more than a feed, or an update, may be
    unsignedUpdate,  ///< the update carries no signature, or this build no key to check it with
    wrongLength,     ///< the download is shorter or longer than announced
    wrongSignature,  ///< the download is not what was signed
    unwritable,      ///< the download can't be written where the application lies
};

class UpdateError final : public std::exception {
public:
    /// `detail` is for the log.
    explicit UpdateError(UpdateProblem problem, const QString &detail = {});

    UpdateProblem problem() const { return _problem; }
    const char *what() const noexcept override { return _what.constData(); }

private:
    UpdateProblem _problem;
    QByteArray _what;
};

} // namespace zelk
