#include "Platform/MusicAuthorization.h"

#include "Platform/RememberedConsent.h"

#include <utility>

namespace zelk {

namespace {

class RememberedAuthorization final : public MusicAuthorization {
public:
    explicit RememberedAuthorization(std::shared_ptr<RememberedConsent> consent) : _consent(std::move(consent)) {}

    QCoro::Task<ConsentStatus> request() override {
        auto asking = _consent->ask();
        const auto answer = co_await asking;
        if (!answer)
            co_return ConsentStatus::undetermined;
        co_return *answer ? ConsentStatus::authorized : ConsentStatus::denied;
    }

private:
    const std::shared_ptr<RememberedConsent> _consent;
};

} // namespace

std::shared_ptr<MusicAuthorization> MusicAuthorization::make(std::shared_ptr<RememberedConsent> consent) {
    return std::make_shared<RememberedAuthorization>(std::move(consent));
}

} // namespace zelk
