#pragma once

#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

class QDBusConnection;

namespace zelk {

/// The desktop's file browser.
class FileBrowser {
public:
    /// Opens the folder with that address in whatever the user has for folders.
    using OpenFolder = std::function<void(const QUrl &folder)>;

    /// That of this session. Where nothing answers for the file browser, `openFolder` is called instead: with a folder
    /// that was to be shown, and with the one that a file lies in.
    static std::shared_ptr<FileBrowser> ofSession(OpenFolder openFolder);
    /// The one that answers on that bus, which may be none.
    static std::shared_ptr<FileBrowser> on(const QDBusConnection &bus, OpenFolder openFolder);

    FileBrowser() = default;
    virtual ~FileBrowser() = default;
    Q_DISABLE_COPY_MOVE(FileBrowser)

    /// Shows the file or folder at that absolute path, selected among its neighbours. Returns at once and fails
    /// silently: nothing is shown for a path at which there is nothing.
    virtual void reveal(const QString &path) = 0;
};

} // namespace zelk
