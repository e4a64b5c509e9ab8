#include "Services/AppleMusicLocalAccess.h"

#include "Platform/ConsentSettings.h"
#include "Platform/MusicLibraryConsent.h"
#include "Support/Cancelled.h"
#include "Support/OneShot.h"
#include "Support/SerialExecutor.h"
#include "Support/SharedInstance.h"
#include "Transport/HelperError.h"

#include <QCoroFuture>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

using Status = AppleMusicLocalAccess::Status;

/// From any thread. What fails is neither a yes nor a no.
Status determine(MusicLibraryConsent &consent, bool askIfNeeded, const Logger &logger) {
    try {
        return consent.determine(askIfNeeded);
    } catch (...) {
        logger.error(u"the consent could not be determined: "_s + describe(std::current_exception()));
        return Status::undetermined;
    }
}

/// A thread of its own, since it may block for as long as the dialog stands.
QFuture<Status> ask(const std::shared_ptr<MusicLibraryConsent> &consent, const Logger &logger) {
    const auto answer = std::make_shared<OneShot<Status>>(std::make_exception_ptr(Cancelled()));
    const auto executor = SerialExecutor::make(u"orrim.zelk.local-access"_s);
    executor->post([consent, logger, answer] { answer->fulfil(determine(*consent, true, logger)); });
    return answer->future();
}

} // namespace

AppleMusicLocalAccess::AppleMusicLocalAccess(std::shared_ptr<MusicLibraryConsent> consent,
                                             std::shared_ptr<ConsentSettings> settings)
    : _consent(std::move(consent)), _settings(std::move(settings)) {}

AppleMusicLocalAccess &AppleMusicLocalAccess::shared() {
    return SharedInstance<AppleMusicLocalAccess>::get();
}

AppleMusicLocalAccess::Status AppleMusicLocalAccess::determine(bool askIfNeeded) const {
    return zelk::determine(*_consent, askIfNeeded, _logger);
}

QCoro::Task<AppleMusicLocalAccess::Status> AppleMusicLocalAccess::request() {
    const std::weak_ptr<ConsentSettings> settings = _settings;
    const bool wasAnswered = _consent->wasAnswered();
    const auto asked = ask(_consent, _logger);
    auto status = Status::undetermined;
    try {
        status = co_await asked;
    } catch (const Cancelled &) {
        co_return status;
    }
    // Nobody was asked, and a refusal has its own way to the settings: whoever pressed would see nothing happen.
    if (const auto place = settings.lock(); place && wasAnswered && status == Status::undetermined)
        place->open();
    co_return status;
}

void AppleMusicLocalAccess::openAutomationSettings() {
    _settings->open();
}

} // namespace zelk
