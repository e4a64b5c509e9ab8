#include "Platform/DesktopEntry.h"

namespace zelk {

QString desktopEntryName() {
    return QStringLiteral(ZELK_APPLICATION_ID);
}

} // namespace zelk
