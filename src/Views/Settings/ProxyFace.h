#pragma once

#include "State/SettingsStore.h"
#include "Styling/Tokens.h"

#include <QString>

#include <optional>

namespace zelk {

// What the tunnel's tab shows, and what decides it.
struct ProxyFace {
    enum class Action { save, test, nothingToSave };
    // How a test went. Colour and symbol say nothing that the word doesn't.
    struct Outcome {
        QString text;
        QString symbol;
        Ink ink = Ink::secondary;
        bool operator==(const Outcome &) const = default;
    };

    QString subscription = {}; // as it is entered
    bool configured = false;
    bool testing = false;
    std::optional<SettingsStore::ProxyTest> testResult = {};

    // More than blanks and tabs.
    bool hasInput() const;
    Action action() const;
    QString actionText() const;
    // None while something new is entered.
    std::optional<Outcome> outcome() const;
    // What the test had to say, if anything.
    QString detail() const;
    QString footer() const;
};

} // namespace zelk
