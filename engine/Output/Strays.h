#pragma once

#include "Output/OutputFolder.h"

#include <QMultiHash>
#include <QSet>

namespace zelk::engine {

/// The files of the output folder that nobody remembers having written. One of them may be just what is to be written:
/// when the engine's memory is lost, its files are still there.
class Strays {
public:
    Strays() = default;
    Strays(const OutputFolder &folder, const QSet<QString> &known);

    /// Those that may have been given this name, whatever number is behind it or theirs. Absolute.
    QStringList named(const QString &stem) const { return _byName.values(nameOf(stem)); }

private:
    static QString nameOf(const QString &stem);

    QMultiHash<QString, QString> _byName;
};

/// The first of these files that has the extension of a file and the same bytes; empty if none has.
QString twinOf(const QString &path, const QStringList &others);

} // namespace zelk::engine
