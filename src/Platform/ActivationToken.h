#pragma once

#include <QString>

namespace zelk {

/// The desktop's leave for a window to come to the front, for as long as this lives, in the place where Qt looks for
/// it: the environment. It is put there and taken away while no child of ours is being started, and none inherits it
/// later.
class ActivationToken {
public:
    /// An empty token is none.
    explicit ActivationToken(const QString &token);
    ~ActivationToken();
    Q_DISABLE_COPY_MOVE(ActivationToken)

private:
    const bool _isSet;
};

} // namespace zelk
