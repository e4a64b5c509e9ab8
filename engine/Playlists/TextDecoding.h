#pragma once

#include <QByteArray>
#include <QString>

namespace zelk::engine {

/// Text of a file of unknown encoding: by its byte-order mark (UTF-8, UTF-16), else UTF-8 if it is valid as such, else
/// Windows-1252, which old players write. Never fails; the mark is gone.
QString decodeText(const QByteArray &bytes);

} // namespace zelk::engine
