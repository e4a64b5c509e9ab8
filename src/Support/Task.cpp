#include "Support/Task.h"

#include "Support/Logger.h"

namespace zelk::detail {

void logEscaped(const std::exception *failure) {
    static const Logger logger("app");
    logger.error(QStringLiteral("a task ended with a failure that nobody took: %1")
                     .arg(failure ? QString::fromUtf8(failure->what()) : QStringLiteral("unknown")));
}

} // namespace zelk::detail
