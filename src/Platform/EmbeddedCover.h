#pragma once

#include <QByteArray>
#include <QString>

namespace zelk {

/// The front cover in an audio file's tags, or the first picture if none is called that, in its own encoding. Empty
/// when there is none, when it is larger than any cover, and for what is no audio file.
QByteArray embeddedCover(const QString &file);

} // namespace zelk
