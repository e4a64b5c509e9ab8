#pragma once

#include "Services/UpdateUserDriver.h"

#include <QString>

#include <optional>

namespace zelk {

// A button of the dialog: what it says and what it answers. Without a text there is no such button.
struct UpdateButton {
    QString text{};
    UpdateAnswer answer = UpdateAnswer::later;
    bool operator==(const UpdateButton &) const = default;
};

// How a scene looks and reads. Return presses `primary`, Escape `secondary`, or else closes the window, which answers
// `closed`.
struct UpdateFace {
    QString symbol{};
    QString heading{};
    QString text{};
    UpdateButton primary{};
    UpdateButton secondary{};
    UpdateButton tertiary{};
    UpdateAnswer closed = UpdateAnswer::later;
    QString notes{};
    bool busy = false;                // for how long isn't known
    std::optional<double> progress{}; // 0 to 1
    bool operator==(const UpdateFace &) const = default;
};

// None for nothing.
std::optional<UpdateFace> updateFace(const UpdateScene::Any &scene);

} // namespace zelk
