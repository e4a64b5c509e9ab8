#include "Platform/Bundle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace zelk {

namespace {

QString executablesFolder(const QString &bundle) {
    return bundle + QStringLiteral("/Contents/Linux");
}

} // namespace

Bundle Bundle::main() {
    const QFileInfo executable(QCoreApplication::applicationFilePath());
    return Bundle(QDir::cleanPath(executable.absolutePath() + QStringLiteral("/../..")), executable.absoluteFilePath());
}

std::optional<QString> Bundle::auxiliaryExecutable(const QString &name) const {
    const QString path = executablesFolder(_path) + u'/' + name;
    if (!QFileInfo(path).isFile())
        return std::nullopt;
    return path;
}

bool isExecutableFile(const QString &path) {
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

} // namespace zelk
