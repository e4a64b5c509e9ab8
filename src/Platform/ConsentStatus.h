#pragma once

#include <QObject>

namespace zelk {

/// Where a consent stands, in a meta-object of its own so that QML and logs know the names.
namespace ConsentEnums {
Q_NAMESPACE

/// What isn't clearly a yes or a no is undetermined.
enum class ConsentStatus : quint8 { authorized, denied, undetermined };
Q_ENUM_NS(ConsentStatus)

} // namespace ConsentEnums

using ConsentEnums::ConsentStatus;

} // namespace zelk
