#pragma once

#include "Platform/ConsentSettings.h"
#include "Platform/MusicLibraryConsent.h"

#include <atomic>

namespace zelk {

/// The consent to the user's own library, which stands where the test says, before and after it is asked for.
class TurnableConsent final : public MusicLibraryConsent {
public:
    ConsentStatus determine(bool askIfNeeded) override {
        if (askIfNeeded) {
            ++asks;
            status = answer.load();
        }
        return status;
    }

    std::atomic<ConsentStatus> status = ConsentStatus::undetermined;
    std::atomic<ConsentStatus> answer = ConsentStatus::undetermined; // when it is asked
    std::atomic_int asks = 0;
};

class CountedSettings final : public ConsentSettings {
public:
    void open() override { ++opened; }
    int opened = 0;
};

} // namespace zelk
