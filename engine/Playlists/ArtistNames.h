#pragma once

#include <QString>

namespace zelk::engine {

/// The artists of an export's cell as they are shown and matched: joined by ", ". The exporters join by ", ", ";" or
/// " & "; the last stays as it is, since it is also part of names, and a comma inside a name comes as "\,".
QString shownArtists(const QString &cell);

} // namespace zelk::engine
