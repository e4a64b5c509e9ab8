#include "Transport/HelperError.h"

#include "Transport/JSONError.h"
#include "Transport/JSONFields.h"

#include <QCoreApplication>

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(HelperError)
};

/// In which language a text is said.
using Say = QString (*)(const char *text);

QString inEnglish(const char *text) {
    return QString::fromUtf8(text);
}

QString inTheWindowsLanguage(const char *text) {
    return Texts::tr(text);
}

QString textOf(const HelperError &error, Say say) {
    using Error = HelperError;
    return match(
        error,
        [say](const Error::DecodeFailure &failure) {
            return say(QT_TRANSLATE_NOOP("HelperError", "Could not understand a message from the helper: ")) +
                   failure.text;
        },
        [](const Error::EngineError &failure) { return failure.message; },
        [say](const Error::HelperMissing &) {
            return say(QT_TRANSLATE_NOOP("HelperError", "The zelk helper could not be found in the app bundle."));
        },
        [say](const Error::HelperCrashed &) {
            return say(QT_TRANSLATE_NOOP("HelperError", "The zelk helper stopped unexpectedly."));
        },
        [say](const Error::HelperUnavailable &) {
            return say(QT_TRANSLATE_NOOP("HelperError", "The zelk helper is not available."));
        },
        [say](const Error::RequestTimedOut &) {
            return say(QT_TRANSLATE_NOOP("HelperError", "The request to the helper timed out."));
        },
        [say](const Error::Cancelled &) {
            return say(QT_TRANSLATE_NOOP("HelperError", "The request was cancelled."));
        });
}

/// Of whatever was thrown.
template<typename TextOf>
QString textOfThrown(const std::exception_ptr &error, Say say, const TextOf &textOf) {
    try {
        std::rethrow_exception(error);
    } catch (const std::exception &known) {
        return textOf(known);
    } catch (...) {
        return say(QT_TRANSLATE_NOOP("HelperError", "Unknown error"));
    }
}

} // namespace

HelperError::HelperError(Value failure) : value(std::move(failure)), _what(textOf(*this, inEnglish).toUtf8()) {}

QString HelperError::errorDescription() const {
    return textOf(*this, inTheWindowsLanguage);
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
    return textOfThrown(error, inTheWindowsLanguage, [](const std::exception &known) { return describe(known); });
}

QString logText(const std::exception_ptr &error) {
    return textOfThrown(error, inEnglish, [](const std::exception &known) { return QString::fromUtf8(known.what()); });
}

} // namespace zelk
