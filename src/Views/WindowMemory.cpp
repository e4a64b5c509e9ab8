#include "Views/WindowMemory.h"

#include "Styling/Measures.h"

#include <algorithm>
#include <utility>

namespace zelk {

namespace {

constexpr QLatin1StringView sidebarKey{"sidebarWidth"};
constexpr QLatin1StringView inspectorKey{"inspectorWidth"};
constexpr QLatin1StringView windowKey{"windowSize"};

int sidebarWithin(int width) {
    const SizeScale size;
    return std::clamp(width, size.sidebarMinimum, size.sidebarMaximum);
}

int inspectorWithin(int width) {
    const SizeScale size;
    return std::clamp(width, size.inspectorMinimum, size.inspectorMaximum);
}

int remembered(const UserDefaults &defaults, QLatin1StringView key, int usual) {
    bool isNumber = false;
    const int width = defaults.value(key).toInt(&isNumber);
    return isNumber ? width : usual;
}

} // namespace

WindowMemory::WindowMemory(std::shared_ptr<UserDefaults> defaults, QObject *parent)
    : QObject(parent), m_defaults(std::move(defaults)),
      m_sidebarWidth(sidebarWithin(remembered(*m_defaults, sidebarKey, SizeScale().sidebarIdeal))),
      m_inspectorWidth(inspectorWithin(remembered(*m_defaults, inspectorKey, SizeScale().inspectorIdeal))) {}

void WindowMemory::setSidebarWidth(int width) {
    width = sidebarWithin(width);
    if (std::exchange(m_sidebarWidth, width) == width)
        return;
    m_defaults->set(sidebarKey, width);
    Q_EMIT sidebarWidthChanged();
}

void WindowMemory::setInspectorWidth(int width) {
    width = inspectorWithin(width);
    if (std::exchange(m_inspectorWidth, width) == width)
        return;
    m_defaults->set(inspectorKey, width);
    Q_EMIT inspectorWidthChanged();
}

QSize WindowMemory::windowSize(QSize usual, QSize room) const {
    const QSize size = m_defaults->value(windowKey).toSize();
    return size.isEmpty() ? usual : size.boundedTo(room);
}

void WindowMemory::setWindowSize(QSize size) {
    m_defaults->set(windowKey, size);
}

} // namespace zelk
