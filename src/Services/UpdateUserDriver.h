#pragma once

#include "Services/UpdateError.h"

#include <QString>

#include <functional>
#include <variant>

namespace zelk {

/// How an update reaches this copy of the application.
enum class UpdateDelivery : quint8 {
    download,       ///< beside the application, when the user says so
    packageManager, ///< with the packages of the system
    elsewhere,      ///< the user fetches it: the application lies where it can't write
};

/// What there is to show of an update. All texts of a feed are plain text.
namespace UpdateScene {
struct Nothing {
    bool operator==(const Nothing &) const = default;
};
struct Checking {
    bool operator==(const Checking &) const = default;
};
struct UpToDate {
    QString version; ///< the present one
    bool operator==(const UpToDate &) const = default;
};
struct Found {
    QString version;
    QString current;
    QString notes; ///< empty when the feed says nothing
    UpdateDelivery delivery = UpdateDelivery::download;
    bool operator==(const Found &) const = default;
};
struct Downloading {
    QString version;
    qint64 received = 0; ///< of `total` bytes; all of them while the signature is being checked
    qint64 total = 0;
    bool operator==(const Downloading &) const = default;
};
/// Downloaded and found to be what was signed.
struct Ready {
    QString version;
    QString file; ///< its path
    bool operator==(const Ready &) const = default;
};
struct Failed {
    UpdateProblem problem{};
    bool operator==(const Failed &) const = default;
};
using Any = std::variant<Nothing, Checking, UpToDate, Found, Downloading, Ready, Failed>;
} // namespace UpdateScene

/// What a user may answer. One that doesn't belong to what is shown, such as a second click, does nothing.
enum class UpdateAnswer : quint8 {
    download,     ///< to `Found`, where it can be downloaded
    skip,         ///< to `Found`: say nothing of this version by itself again
    later,        ///< puts away `UpToDate`, `Found`, `Ready` and `Failed`
    cancel,       ///< ends `Checking` and `Downloading`
    showInFolder, ///< to `Ready`
};

/// Shows an update to the user and takes their answers: the updater's window, which knows nothing of how it works.
class UpdateUserDriver {
public:
    virtual ~UpdateUserDriver() = default;

    /// In place of what was shown before.
    virtual void show(const UpdateScene::Any &scene) = 0;
    /// Brings what is shown before the user's eyes again.
    virtual void raise() = 0;

    /// Set by the updater, and empty without one.
    std::function<void(UpdateAnswer)> answered;
};

} // namespace zelk
