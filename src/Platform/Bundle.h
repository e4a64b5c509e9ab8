#pragma once

#include <QJsonValue>
#include <QString>

#include <optional>

namespace zelk {

/// The application's bundle: a folder with `Contents/<platform>/zelk` (the application), `Contents/Helpers` and
/// `Contents/Resources`. All paths are absolute.
class Bundle {
public:
    /// The bundle of the running program: the folder three levels above its executable.
    static Bundle main();

    /// `executable` may be empty: a bundle without a main executable.
    Bundle(QString path, QString executable) : _path(std::move(path)), _executable(std::move(executable)) {}

    const QString &path() const { return _path; }
    const QString &executablePath() const { return _executable; }
    /// The file of that name beside the main executable, if there is one; it may be the main executable itself.
    std::optional<QString> auxiliaryExecutable(const QString &name) const;
    /// What `Contents/Info.json`, which the build writes, says of the bundle under `key`; undefined when it says
    /// nothing, or when the file is absent or unreadable.
    QJsonValue info(const QString &key) const;

private:
    QString _path;
    QString _executable;
};

/// Whether `path` is a file that this process may execute.
bool isExecutableFile(const QString &path);

} // namespace zelk
