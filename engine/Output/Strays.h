#pragma once

#include <QMultiHash>
#include <QString>
#include <QStringList>

namespace zelk::engine {

/// The files of the output folder that nobody remembers having written. One of them may be just what is to be written:
/// when the engine's memory is lost, its files are still there.
class Strays {
public:
    Strays() = default;
    explicit Strays(const QStringList &paths);

    /// Those that may have been given this name, whatever number is behind it or theirs.
    QStringList named(const QString &stem) const { return _byName.values(nameOf(stem)); }

private:
    static QString nameOf(const QString &stem);

    QMultiHash<QString, QString> _byName;
};

/// The first of these that is a regular file with the extension of a file and the same bytes; empty if none is.
QString twinOf(const QString &path, const QStringList &others);

} // namespace zelk::engine
