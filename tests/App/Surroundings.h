#pragma once

#include "App/AppModel.h"
#include "Support/ManualClock.h"

#include <QTemporaryDir>

#include <memory>

namespace zelk {

/// The user defaults of a user who has just arrived, in a file that goes with them.
inline std::shared_ptr<UserDefaults> freshDefaults() {
    struct Held {
        QTemporaryDir folder;
        UserDefaults defaults{folder.filePath(QStringLiteral("zelk.conf"))};
    };
    const auto held = std::make_shared<Held>();
    return {held, &held->defaults};
}

/// The surroundings of a model under test, which has nothing of this machine's own.
inline AppModel::Surroundings surroundings(std::shared_ptr<Clock> clock = std::make_shared<ManualClock>()) {
    return {.clock = std::move(clock), .defaults = freshDefaults()};
}

} // namespace zelk
