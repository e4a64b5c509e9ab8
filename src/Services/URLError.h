#pragma once

#include <QByteArray>
#include <QNetworkReply>
#include <QString>

#include <exception>

namespace zelk {

/// Why a URL could not be loaded. An answer of the server, whatever its status, is none.
class URLError : public std::exception {
public:
    enum class Code : quint8 {
        cannotFindHost,
        cannotConnectToHost,
        notConnectedToInternet,
        dnsLookupFailed,
        timedOut,
        networkConnectionLost,
        other,
    };

    URLError(Code code, const QString &description) : _code(code), _what(description.toUtf8()) {}

    Code code() const { return _code; }
    const char *what() const noexcept override { return _what.constData(); }

    /// What a failure of Qt is called here.
    static Code codeOf(QNetworkReply::NetworkError error);

private:
    Code _code;
    QByteArray _what;
};

} // namespace zelk
