#pragma once

#include <QString>

#include <functional>

class QDBusConnection;

namespace zelk {

/// Shows the file or folder `path` (absolute) among its neighbours in the desktop's file browser. Where no file browser
/// answers, `openFolder` is called with the folder that holds it. Returns at once; a path that isn't there is shown by
/// whatever the file browser does with it.
void showInFileViewer(const QString &path, std::function<void(const QString &folder)> openFolder);
/// The same on a bus that is not the session's.
void showInFileViewer(const QDBusConnection &bus, const QString &path,
                      std::function<void(const QString &folder)> openFolder);

} // namespace zelk
