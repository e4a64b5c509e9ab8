#pragma once

#include <QFuture>
#include <QString>

#include <optional>

namespace zelk {

/// Lets the user choose one folder.
class FolderPanel {
public:
    virtual ~FolderPanel() = default;

    /// Shows the panel, on the main thread, in the folder `start`, or at home where there is none. The future is always
    /// kept and never fails: the folder's absolute path, or nothing when none was chosen.
    virtual QFuture<std::optional<QString>> choose(const QString &title, const QString &start) = 0;
};

} // namespace zelk
