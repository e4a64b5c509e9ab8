#include "Views/PermissionsDialog.h"

#include "Views/DialogHost.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

PermissionsDialog::PermissionsDialog(DialogHost &host, PermissionsLogic::Permissions permissions,
                                     std::function<void()> answered)
    : m_host(host), m_logic(std::move(permissions)) {
    QObject::connect(&m_logic, &PermissionsLogic::answered, &m_logic, std::move(answered));
    QObject::connect(&m_logic, &PermissionsLogic::closed, &m_logic, [this] { m_window->hide(); });
}

void PermissionsDialog::open() {
    m_logic.refresh();
    if (!m_window)
        m_window = m_host.make(u"PermissionsDialog"_s, {{u"logic"_s, QVariant::fromValue(&m_logic)}});
    if (m_window)
        m_host.present(*m_window);
}

} // namespace zelk
