#include "Views/Settings/SettingsLogic.h"

namespace zelk {

QVariantList SettingsLogic::tabs() const {
    QVariantList all;
    for (const SettingsTab &each : m_tabs)
        all += QVariant::fromValue(each);
    return all;
}

void SettingsLogic::setCurrent(int index) {
    if (index == m_current || index < 0 || index >= m_tabs.size())
        return;
    m_current = index;
    Q_EMIT currentChanged();
}

void SettingsLogic::step(int places) {
    const int count = static_cast<int>(m_tabs.size());
    setCurrent(((m_current + places) % count + count) % count);
}

} // namespace zelk
