#pragma once

#include <QStringList>

namespace zelk::engine {

/// What brings a database of that version to the present form: 0 for a new one. Empty for the present one, and for one
/// that a newer engine has made, which is used as it is.
QStringList schemaSteps(int version);

} // namespace zelk::engine
