#include "Views/WindowMemory.h"

#include "Styling/Measures.h"

#include <algorithm>
#include <utility>

namespace zelk {

namespace {

constexpr QLatin1StringView sidebarKey{"sidebarWidth"};
constexpr QLatin1StringView inspectorKey{"inspectorWidth"};
constexpr QLatin1StringView windowKey{"windowSize"};
constexpr QLatin1StringView sortColumnKey{"trackSortColumn"};
constexpr QLatin1StringView usualSortColumn{"index"};

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

int rememberedSidebar(const UserDefaults &defaults) {
    const SizeScale size;
    return sidebarWithin(remembered(defaults, sidebarKey, size.sidebarIdeal));
}

int rememberedInspector(const UserDefaults &defaults) {
    const SizeScale size;
    return inspectorWithin(remembered(defaults, inspectorKey, size.inspectorIdeal));
}

ColumnWidths rememberedColumns(const UserDefaults &defaults) {
    ColumnWidths widths;
    for (const SizedColumn &column : sizedColumns) {
        const int width = remembered(defaults, column.key, 0);
        if (width >= column.least && width <= columnWidthMost)
            widths.*column.width = width;
    }
    if (!widths.title || !widths.artist || !widths.album)
        widths.title = widths.artist = widths.album = std::nullopt;
    return widths;
}

QString rememberedSortColumn(const UserDefaults &defaults) {
    const QVariant column = defaults.value(sortColumnKey);
    return column.isValid() ? column.toString() : QString(usualSortColumn);
}

} // namespace

WindowMemory::WindowMemory(std::shared_ptr<UserDefaults> defaults, QObject *parent)
    : QObject(parent), m_defaults(std::move(defaults)), m_sidebarWidth(rememberedSidebar(*m_defaults)),
      m_inspectorWidth(rememberedInspector(*m_defaults)), m_sortColumn(rememberedSortColumn(*m_defaults)) {
    m_columnWidths = rememberedColumns(*m_defaults);
}

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

void WindowMemory::setSortColumn(const QString &column) {
    if (std::exchange(m_sortColumn, column) == column)
        return;
    m_defaults->set(sortColumnKey, column);
    Q_EMIT sortColumnChanged();
}

void WindowMemory::setColumnWidths(const ColumnWidths &widths) {
    if (m_columnWidths == widths)
        return;
    m_columnWidths = widths;
    for (const SizedColumn &column : sizedColumns) {
        if (const std::optional<int> width = widths.*column.width)
            m_defaults->set(column.key, *width);
        else
            m_defaults->remove(column.key);
    }
    Q_EMIT columnWidthsChanged();
}

QSize WindowMemory::windowSize(QSize usual, QSize room) const {
    const QSize size = m_defaults->value(windowKey).toSize();
    return size.isEmpty() ? usual : size.boundedTo(room);
}

void WindowMemory::setWindowSize(QSize size) {
    m_defaults->set(windowKey, size);
}

} // namespace zelk
