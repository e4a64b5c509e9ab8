#include "Transport/HelperLocator.h"

#include "Transport/HelperError.h"

#include <QDir>
#include <QFileInfo>

namespace zelk::HelperLocator {

namespace {

QString standardized(const QString &path) {
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(path) : canonical;
}

} // namespace

QString locate(const Bundle &bundle, const QProcessEnvironment &environment) {
    const QString &application = bundle.executablePath();
    const auto isEngine = [&](const QString &path) {
        const bool isApplication = !application.isEmpty() && standardized(path) == standardized(application);
        return !isApplication && isExecutableFile(path);
    };

    const QString given = environment.value(QStringLiteral("ZELK_HELPER_PATH"));
    if (!given.isEmpty()) {
        const QString path = QFileInfo(given).absoluteFilePath();
        if (isEngine(path))
            return path;
    }
    const QString bundled = bundle.path() + QStringLiteral("/Contents/Helpers/zelk");
    if (isEngine(bundled))
        return bundled;
    const auto auxiliary = bundle.auxiliaryExecutable(QStringLiteral("zelk"));
    if (auxiliary && isEngine(*auxiliary))
        return *auxiliary;
    throw HelperError::helperMissing();
}

} // namespace zelk::HelperLocator
