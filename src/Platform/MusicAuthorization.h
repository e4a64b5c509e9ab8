#pragma once

#include "Platform/ConsentStatus.h"

#include <QCoroTask>

#include <memory>

namespace zelk {

class RememberedConsent;

/// The user's consent to a sign-in to Apple Music.
class MusicAuthorization {
public:
    virtual ~MusicAuthorization() = default;

    /// Asks at the first call and answers from memory afterwards, without any network. On the main thread.
    virtual QCoro::Task<ConsentStatus> request() = 0;

    /// This platform's, which asks through that consent.
    static std::shared_ptr<MusicAuthorization> make(std::shared_ptr<RememberedConsent> consent);
};

} // namespace zelk
