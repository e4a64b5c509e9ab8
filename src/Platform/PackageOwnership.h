#pragma once

#include "Support/Clock.h"

#include <QCoroTask>
#include <QString>

#include <memory>
#include <stop_token>

namespace zelk {

/// Whether the system's package manager put the file `path` (absolute) there, and so is who replaces it. Asks
/// `program`, which answers as `dpkg-query -S` does: by its exit status, 0 for a file of a package and 1 for one of
/// none. A machine without that program has no such files. An answer that doesn't come within ten seconds, or is none,
/// counts as yes, and so does a program that is there and can't be started: what may be another's is left alone. Ends
/// with `Cancelled` when it is asked to stop. Called on the main thread, which it doesn't block.
QCoro::Task<bool> isOwnedByPackageManager(QString path, std::shared_ptr<Clock> clock, std::stop_token stop = {},
                                          QString program = QStringLiteral("dpkg-query"));

} // namespace zelk
