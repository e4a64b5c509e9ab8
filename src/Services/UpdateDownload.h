#pragma once

#include "Services/UpdateCheck.h"

#include <functional>

namespace zelk {

/// The largest update that is taken: it is mapped into memory to be checked.
inline constexpr qint64 updateSizeLimit = 1024LL * 1024 * 1024;

/// Fetches the update of `offer` into the application's folder and returns the path of the file, once it has the
/// announced length and the right signature. Until then it has a hidden name of its own, and on any failure, as on
/// `Cancelled`, nothing is left of it. An existing file is never written over. `progress` hears of the bytes received,
/// now and then.
QCoro::Task<QString> downloadUpdate(UpdaterSurroundingsRef surroundings, UpdateOffer offer,
                                    std::function<void(qint64 received)> progress, std::stop_token stop);

} // namespace zelk
