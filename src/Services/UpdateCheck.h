#pragma once

#include "Services/Appcast.h"
#include "Services/UpdaterSurroundings.h"

#include <optional>
#include <stop_token>

namespace zelk {

/// An update that may be offered: signed by somebody, newer than what runs, and with a way to reach the user.
struct UpdateOffer {
    AppcastItem item; ///< its notes are plain text, wherever the feed had them
    QByteArray key;   ///< what its signature must be checked with
    UpdateDelivery delivery = UpdateDelivery::download;
};

/// Asks the bundle's feed for an update; none when the newest is what runs, or older. Throws `UpdateError` and, when it
/// is asked to stop, `Cancelled`.
QCoro::Task<std::optional<UpdateOffer>> lookForUpdate(UpdaterSurroundingsRef surroundings, std::stop_token stop);

} // namespace zelk
