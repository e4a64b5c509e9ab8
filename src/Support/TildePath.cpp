#include "Support/TildePath.h"

#include <QDir>

namespace zelk {

QString expandedTilde(const QString &path) {
    const bool isHome = path == u"~" || path.startsWith(QStringLiteral("~/"));
    return isHome ? QDir::homePath() + path.mid(1) : path;
}

} // namespace zelk
