#pragma once

#include <QString>

namespace zelk {

/// `path` with a leading tilde, alone or before a slash, put out as the user's home. Any other path stays as it is,
/// that of another user's home too.
QString expandedTilde(const QString &path);

} // namespace zelk
