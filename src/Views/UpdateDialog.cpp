#include "Views/UpdateDialog.h"

#include "Views/DialogHost.h"

#include <QQuickWindow>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

void UpdateLogic::show(const UpdateFace &face) {
    const auto before = std::exchange(m_face, face);
    if (before == face)
        return;
    Q_EMIT changed();
    if (before.primary != face.primary || before.secondary != face.secondary)
        Q_EMIT turned();
}

UpdateDialog::UpdateDialog(DialogHost &host) : m_host(host) {
    QObject::connect(&m_logic, &UpdateLogic::answered, &m_logic, [this](UpdateAnswer given) {
        if (answered)
            answered(given);
    });
}

UpdateDialog::~UpdateDialog() = default;

void UpdateDialog::show(const UpdateScene::Any &scene) {
    const auto face = updateFace(scene);
    if (!face) {
        if (m_window)
            m_window->hide();
        return;
    }
    m_logic.show(*face);
    if (!m_window)
        m_window = m_host.make(u"UpdateDialog"_s, {{u"logic"_s, QVariant::fromValue(&m_logic)}});
    // A window that is there already must not come forward with every step of a download.
    if (m_window && !m_window->isVisible())
        m_host.present(*m_window);
}

void UpdateDialog::raise() {
    if (m_window)
        m_host.present(*m_window);
}

} // namespace zelk
