#pragma once

#include <QString>

namespace zelk::engine {

/// A text from a file or a playlist as one line that does nothing to a terminal but show itself: control characters
/// become visible, breaks become spaces, and the signs that turn the direction of what follows are left out.
QString plainText(const QString &text);

/// How many columns a terminal takes for a plain text: wide characters take two, combining ones none.
int columnsOf(const QString &text);

/// As much of a plain text as fits into so many columns, with "…" where something is left out. A character is never
/// parted from its accents.
QString cutTo(const QString &text, int columns);

/// A plain text with spaces behind it, or before it, up to so many columns.
QString padded(const QString &text, int columns);
QString paddedLeft(const QString &text, int columns);

} // namespace zelk::engine
