#include "Platform/Bundle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace zelk {

namespace {

/// Far more than any build writes.
constexpr qint64 infoLimit = 64 * 1024;

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

QJsonValue Bundle::info(const QString &key) const {
    QFile file(_path + QStringLiteral("/Contents/Info.json"));
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return QJsonValue::Undefined;
    return QJsonDocument::fromJson(file.read(infoLimit)).object().value(key);
}

bool isExecutableFile(const QString &path) {
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

} // namespace zelk
