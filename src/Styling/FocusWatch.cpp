#include "Styling/FocusWatch.h"

#include <QFocusEvent>

namespace zelk {

void FocusWatch::setItem(QQuickItem *item) {
    if (m_item == item)
        return;
    if (m_item)
        m_item->removeEventFilter(this);
    m_item = item;
    if (m_item)
        m_item->installEventFilter(this);
    Q_EMIT itemChanged();
}

bool FocusWatch::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusIn) {
        switch (static_cast<QFocusEvent *>(event)->reason()) {
        case Qt::TabFocusReason:
        case Qt::BacktabFocusReason:
        case Qt::ShortcutFocusReason:
            Q_EMIT came(true);
            break;
        case Qt::MouseFocusReason:
            Q_EMIT came(false);
            break;
        default:
            break;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace zelk
