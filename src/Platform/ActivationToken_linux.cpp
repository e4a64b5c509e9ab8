#include "Platform/ActivationToken.h"

#include "Platform/Spawn_linux.h"

#include <mutex>

namespace zelk {

namespace {
constexpr auto variable = "XDG_ACTIVATION_TOKEN";
} // namespace

ActivationToken::ActivationToken(const QString &token) : _isSet(!token.isEmpty()) {
    if (!_isSet)
        return;
    const std::scoped_lock lock(spawn::environmentMutex());
    qputenv(variable, token.toUtf8());
}

ActivationToken::~ActivationToken() {
    if (!_isSet)
        return;
    const std::scoped_lock lock(spawn::environmentMutex());
    qunsetenv(variable);
}

} // namespace zelk
