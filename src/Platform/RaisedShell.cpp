#include "Platform/RaisedShell.h"

namespace zelk {

QString administratorScript(QString command) {
    // Nothing else is escaped: a backslash is the caller's own.
    command.replace(u'"', QStringLiteral("\\\""));
    return QStringLiteral("do shell script \"") + command + QStringLiteral("\" with administrator privileges");
}

} // namespace zelk
