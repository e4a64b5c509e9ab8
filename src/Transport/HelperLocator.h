#pragma once

#include "Platform/Bundle.h"

#include <QProcessEnvironment>
#include <QString>

namespace zelk::HelperLocator {

/// The path of the engine's executable. The first hit wins: the environment's `ZELK_HELPER_PATH`, the bundle's
/// "Contents/Helpers/zelk", then its auxiliary executable "zelk", which is never the application itself although that
/// has the same name. A candidate that can't be executed is passed over in silence. Throws
/// `HelperError::helperMissing`.
QString locate(const Bundle &bundle, const QProcessEnvironment &environment);

} // namespace zelk::HelperLocator
