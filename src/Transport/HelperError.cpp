#include "Transport/HelperError.h"

#include "Transport/JSONError.h"
#include "Transport/JSONFields.h"

namespace zelk {

HelperError::HelperError(Value failure) : value(std::move(failure)), _what(errorDescription().toUtf8()) {}

QString HelperError::errorDescription() const {
    return match(
        *this,
        [](const DecodeFailure &failure) {
            return QStringLiteral("Could not understand a message from the helper: ") + failure.text;
        },
        [](const EngineError &failure) { return failure.message; },
        [](const HelperMissing &) { return QStringLiteral("The zelk helper could not be found in the app bundle."); },
        [](const HelperCrashed &) { return QStringLiteral("The zelk helper stopped unexpectedly."); },
        [](const HelperUnavailable &) { return QStringLiteral("The zelk helper is not available."); },
        [](const RequestTimedOut &) { return QStringLiteral("The request to the helper timed out."); },
        [](const Cancelled &) { return QStringLiteral("The request was cancelled."); });
}

std::optional<EngineErrorCode> HelperError::engineCode() const {
    const auto *failure = caseOf<EngineError>(*this);
    return failure ? fromWireName<EngineErrorCode>(failure->code) : std::nullopt;
}

QString describe(const std::exception &error) {
    if (const auto *failure = dynamic_cast<const HelperError *>(&error))
        return failure->errorDescription();
    if (const auto *failure = dynamic_cast<const JSONError *>(&error))
        return failure->description();
    return QString::fromUtf8(error.what());
}

QString describe(const std::exception_ptr &error) {
    try {
        std::rethrow_exception(error);
    } catch (const std::exception &known) {
        return describe(known);
    } catch (...) {
        return QStringLiteral("Unknown error");
    }
}

} // namespace zelk
