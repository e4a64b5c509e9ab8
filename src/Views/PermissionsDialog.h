#pragma once

#include "Platform/ConsentSettings.h"
#include "Views/PermissionsLogic.h"

#include <QQuickWindow>

#include <functional>
#include <memory>

namespace zelk {

class DialogHost;

// The window in which the user changes what was once allowed or refused.
class PermissionsDialog final : public ConsentSettings {
public:
    // `host` must outlive it. `answered` is called after each change.
    PermissionsDialog(DialogHost &host, PermissionsLogic::Permissions permissions, std::function<void()> answered);
    Q_DISABLE_COPY_MOVE(PermissionsDialog)

    void open() override;

private:
    DialogHost &m_host;
    PermissionsLogic m_logic;
    std::unique_ptr<QQuickWindow> m_window; // from the first opening; last: it goes before what it shows
};

} // namespace zelk
