#pragma once

#include "Transport/Tagged.h"

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>

#include <exception>
#include <optional>
#include <variant>

namespace zelk {

// The engine's error codes that this application knows. An engine may send others: see HelperError::engineCode.
enum class EngineErrorCode : quint8 {
    badRequest,
    unknownMethod,
    invalidParams,
    notConfigured,
    syncInProgress,
    spotifyAuthExpired,
    appleAutomationDenied,
    notImplemented,
    internal,
};

constexpr QLatin1StringView wireName(EngineErrorCode code) {
    switch (code) {
    case EngineErrorCode::badRequest:
        return QLatin1StringView("bad_request");
    case EngineErrorCode::unknownMethod:
        return QLatin1StringView("unknown_method");
    case EngineErrorCode::invalidParams:
        return QLatin1StringView("invalid_params");
    case EngineErrorCode::notConfigured:
        return QLatin1StringView("not_configured");
    case EngineErrorCode::syncInProgress:
        return QLatin1StringView("sync_in_progress");
    case EngineErrorCode::spotifyAuthExpired:
        return QLatin1StringView("spotify_auth_expired");
    case EngineErrorCode::appleAutomationDenied:
        return QLatin1StringView("apple_automation_denied");
    case EngineErrorCode::notImplemented:
        return QLatin1StringView("not_implemented");
    case EngineErrorCode::internal:
        return QLatin1StringView("internal");
    }
    return {};
}

// The one failure that leaves the transport. Thrown, and also a value that can be kept and compared. It crosses threads
// in a QFuture as a std::exception_ptr.
class HelperError : public std::exception {
public:
    struct DecodeFailure {
        QString text;
        bool operator==(const DecodeFailure &) const = default;
    };
    struct EngineError {
        QString code;
        QString message;
        bool operator==(const EngineError &) const = default;
    };
    struct HelperMissing {
        bool operator==(const HelperMissing &) const = default;
    };
    struct HelperCrashed {
        bool operator==(const HelperCrashed &) const = default;
    };
    struct HelperUnavailable {
        bool operator==(const HelperUnavailable &) const = default;
    };
    struct RequestTimedOut {
        bool operator==(const RequestTimedOut &) const = default;
    };
    struct Cancelled {
        bool operator==(const Cancelled &) const = default;
    };
    using Value = std::variant<DecodeFailure, EngineError, HelperMissing, HelperCrashed, HelperUnavailable,
                               RequestTimedOut, Cancelled>;

    static HelperError decodeFailure(QString text) { return HelperError(DecodeFailure{std::move(text)}); }
    static HelperError engineError(QString code, QString message) {
        return HelperError(EngineError{std::move(code), std::move(message)});
    }
    static HelperError helperMissing() { return HelperError(HelperMissing{}); }
    static HelperError helperCrashed() { return HelperError(HelperCrashed{}); }
    static HelperError helperUnavailable() { return HelperError(HelperUnavailable{}); }
    static HelperError requestTimedOut() { return HelperError(RequestTimedOut{}); }
    static HelperError cancelled() { return HelperError(Cancelled{}); }

    // The text to show to the user, in the language of the windows.
    QString errorDescription() const;
    // For an engineError whose code is a known one; no value for any other failure.
    std::optional<EngineErrorCode> engineCode() const;
    const char *what() const noexcept override { return _what.constData(); } // the description in English, in UTF-8

    friend bool operator==(const HelperError &a, const HelperError &b) { return a.value == b.value; }

    Value value; // for match() and caseOf(), see Tagged.h

private:
    explicit HelperError(Value failure);
    QByteArray _what;
};

// The text that a store or a banner shows for a failure: a HelperError's description, any other error's plain text.
QString describe(const std::exception &error);
QString describe(const std::exception_ptr &error);
// The same for the log, where a HelperError is English in every language.
QString logText(const std::exception_ptr &error);

} // namespace zelk
