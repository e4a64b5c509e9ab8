#pragma once

#include <QFile>
#include <QString>

namespace zelk {

/// Writes a shell script to `path` that stands in for a program. Empty if that fails.
inline QString writeProgram(const QString &path, const QByteArray &script) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write("#!/bin/sh\n" + script + "\n");
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

inline QByteArray contentsOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace zelk
