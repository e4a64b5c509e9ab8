#pragma once

#include "Styling/Tokens.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <optional>

namespace zelk {

// What the tunnel's control in the toolbar says, by what is known of the tunnel.
struct VPNStatus {
    enum class TestFeedback { success, failure };

    bool enabled = false;
    bool testing = false;
    std::optional<TestFeedback> feedback{}; // while there is one, it goes before whatever the tunnel does
    ProxyStatusValue proxyStatus = ProxyStatusValue::off;
    std::optional<QString> proxyDetail{};
    std::optional<qint64> nodeCount{}; // what counts as long as the engine's detail names no number

    ProxyStatusValue liveStatus() const;
    std::optional<qint64> serverCount() const;
    QString statusText() const;
    std::optional<QString> labelText() const;
    QString icon() const;
    Ink tint() const;
};

// The number that `detail` begins with, as in "3 nodes".
std::optional<qint64> leadingCount(const QString &detail);

} // namespace zelk
