#pragma once

#include <QString>

namespace zelk::engine {

/// The absolute local path that a playlist's entry means: relative to `folder`, with "file:" and percent escapes
/// undone and backslashes turned. Empty for an address elsewhere: on the network, of another machine, or on a drive
/// with a letter.
QString resolvedLocation(const QString &entry, const QString &folder);

/// The text with its percent escapes undone. Signs that only look like one stay.
QString percentDecoded(const QString &text);

} // namespace zelk::engine
