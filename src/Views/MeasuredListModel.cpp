#include "Views/MeasuredListModel.h"

namespace zelk {

void ListEntry::setIndex(int index) {
    if (m_index == index)
        return;
    m_index = index;
    Q_EMIT indexChanged();
}

void ListEntry::setCurrent(bool current) {
    if (m_current == current)
        return;
    m_current = current;
    Q_EMIT currentChanged();
}

void MeasuredListModel::setTextScale(double scale) {
    if (m_textScale == scale)
        return;
    m_textScale = scale;
    remeasure();
    Q_EMIT contentHeightChanged();
}

} // namespace zelk
