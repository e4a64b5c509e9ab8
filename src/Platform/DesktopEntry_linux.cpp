#include "Platform/DesktopEntry.h"

namespace zelk {

QString desktopEntryName() {
    return QStringLiteral(ZELK_APPLICATION_ID);
}

QString desktopObjectPath() {
    return u'/' + desktopEntryName().replace(u'.', u'/');
}

} // namespace zelk
