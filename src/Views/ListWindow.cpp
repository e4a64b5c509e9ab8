#include "Views/ListWindow.h"

#include <QQmlContext>
#include <QQmlEngine>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {
// Beyond the view, so that a small scroll finds its delegates ready. Logical pixels.
constexpr double overscan = 120;
// Delegates that are made in one frame: a few milliseconds' worth. A view that fills at once takes some frames, from
// the top down, so that nothing else waits for it.
constexpr int madeAtOnce = 3;
} // namespace

ListWindow::ListWindow(QQuickItem *parent) : QQuickItem(parent), m_ahead([this] { goOn(); }) {}

ListWindow::~ListWindow() {
    for (const QMetaObject::Connection &connection : m_connections)
        disconnect(connection);
    // A delegate is bound to its entry, so it goes first.
    destroy(m_shown);
    destroy(m_spare);
}

void ListWindow::destroy(Delegates &delegates) {
    for (Delegate &delegate : delegates)
        delete delegate.item;
    delegates.clear();
}

void ListWindow::setModel(MeasuredListModel *model) {
    if (m_model == model)
        return;
    for (const QMetaObject::Connection &connection : m_connections)
        disconnect(connection);
    m_connections.clear();
    m_model = model;
    // A spare delegate's entry belongs to the model that made it.
    reset();
    destroy(m_spare);
    if (m_model) {
        m_model->setTextScale(m_textScale);
        connectModel();
    }
    m_ahead.request();
    Q_EMIT modelChanged();
}

void ListWindow::connectModel() {
    MeasuredListModel *model = m_model;
    m_connections = {
        connect(model, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex &, int first, int last) { inserted(first, last - first + 1); }),
        connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this,
                [this](const QModelIndex &, int first, int last) { aboutToRemove(first, last - first + 1); }),
        connect(model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) { removed(first, last - first + 1); }),
        connect(model, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex &from, const QModelIndex &to, const QList<int> &roles) {
                    changed(from.row(), to.row(), roles);
                }),
        connect(model, &QAbstractItemModel::modelReset, this, &ListWindow::reset),
        connect(model, &MeasuredListModel::contentHeightChanged, this, &ListWindow::contentChanged),
    };
}

void ListWindow::setViewTop(double top) {
    if (m_viewTop == top)
        return;
    m_viewTop = top;
    polish();
    Q_EMIT viewChanged();
}

void ListWindow::setViewHeight(double height) {
    if (m_viewHeight == height)
        return;
    m_viewHeight = height;
    polish();
    m_ahead.request();
    Q_EMIT viewChanged();
}

void ListWindow::setTextScale(double scale) {
    if (m_textScale == scale)
        return;
    m_textScale = scale;
    if (m_model) {
        // What stands at the view's top stays there.
        const int top = m_viewTop > 0 ? m_model->indexAt(m_viewTop) : -1;
        const double before = top < 0 ? 0 : m_model->yOf(top);
        m_model->setTextScale(scale);
        if (top >= 0)
            Q_EMIT contentShifted(m_model->yOf(top) - before);
    }
    Q_EMIT textScaleChanged();
}

void ListWindow::setCurrentIndex(int index) {
    if (m_currentIndex == index)
        return;
    m_currentIndex = index;
    showCurrent();
    Q_EMIT currentIndexChanged();
}

void ListWindow::setCurrentShown(bool shown) {
    if (m_currentShown == shown)
        return;
    m_currentShown = shown;
    showCurrent();
    Q_EMIT currentShownChanged();
}

void ListWindow::showCurrent() {
    for (Delegate &delegate : m_shown)
        delegate.entry->setCurrent(m_currentShown && delegate.entry->index() == m_currentIndex);
}

int ListWindow::neighbour(int index, int steps) const {
    if (!m_model)
        return -1;
    const int count = m_model->rowCount();
    const int direction = steps < 0 ? -1 : 1;
    int found = index;
    for (int at = index + direction; at >= 0 && at < count && steps != 0; at += direction) {
        if (!m_model->canBeCurrent(at))
            continue;
        found = at;
        steps -= direction;
    }
    return found;
}

QQuickItem *ListWindow::itemAt(int index) const {
    const auto found = std::find_if(m_shown.begin(), m_shown.end(),
                                    [index](const Delegate &delegate) { return delegate.entry->index() == index; });
    return found == m_shown.end() ? nullptr : found->item.data();
}

void ListWindow::componentComplete() {
    QQuickItem::componentComplete();
    contentChanged();
}

void ListWindow::geometryChange(const QRectF &now, const QRectF &before) {
    QQuickItem::geometryChange(now, before);
    if (now.width() != before.width()) {
        for (Delegate &delegate : m_shown)
            place(delegate);
    }
}

void ListWindow::contentChanged() {
    setImplicitHeight(m_model ? m_model->contentHeight() : 0);
    Q_EMIT countChanged();
    polish();
}

void ListWindow::updatePolish() {
    if (!m_model || !isComponentComplete() || m_model->rowCount() == 0 || m_viewHeight <= 0) {
        retireOutside(1, 0);
        m_filled = true;
        return;
    }
    const int first = m_model->indexAt(m_viewTop - overscan);
    const int last = m_model->indexAt(m_viewTop + m_viewHeight + overscan);
    retireOutside(first, last);
    int left = madeAtOnce;
    m_filled = true;
    for (int index = first; index <= last; ++index) {
        if (!show(index, left))
            m_filled = false;
    }
    stackInOrder();
    m_ahead.request();
}

// Whoever walks the children, a screen reader above all, is to meet them from top to bottom.
void ListWindow::stackInOrder() {
    std::sort(m_shown.begin(), m_shown.end(),
              [](const Delegate &a, const Delegate &b) { return a.entry->index() < b.entry->index(); });
    const QList<QQuickItem *> children = childItems();
    qsizetype before = -1;
    for (std::size_t i = 0; i < m_shown.size(); ++i) {
        const qsizetype at = children.indexOf(m_shown[i].item);
        if (at < before)
            break;
        before = at;
        if (i + 1 == m_shown.size())
            return;
    }
    for (std::size_t i = 1; i < m_shown.size(); ++i)
        m_shown[i].item->stackAfter(m_shown[i - 1].item);
}

void ListWindow::retireOutside(int first, int last) {
    for (auto each = m_shown.begin(); each != m_shown.end();) {
        const int index = each->entry->index();
        if (index >= first && index <= last) {
            place(*each);
            ++each;
        } else {
            const auto offset = each - m_shown.begin();
            retire(each);
            each = m_shown.begin() + offset;
        }
    }
}

void ListWindow::retire(Delegates::iterator which) {
    if (which->item)
        which->item->setVisible(false);
    which->entry->setCurrent(false);
    m_spare.push_back(std::move(*which));
    m_shown.erase(which);
}

bool ListWindow::show(int index, int &makeable) {
    const int kind = m_model->kindOf(index);
    if (kind < 0 || itemAt(index))
        return true;
    const auto spare = std::find_if(m_spare.begin(), m_spare.end(),
                                    [kind](const Delegate &delegate) { return delegate.kind == kind; });
    Delegate delegate;
    const bool fresh = spare == m_spare.end();
    if (fresh && makeable-- <= 0)
        return false;
    if (fresh) {
        delegate.kind = kind;
        delegate.entry = m_model->createEntry(kind);
    } else {
        delegate = std::move(*spare);
        m_spare.erase(spare);
    }
    delegate.entry->setIndex(index);
    delegate.entry->setCurrent(m_currentShown && index == m_currentIndex);
    m_model->load(*delegate.entry, {});
    if (fresh)
        delegate = make(kind, std::move(delegate.entry));
    if (!delegate.item)
        return true;
    place(delegate);
    delegate.item->setVisible(true);
    m_shown.push_back(std::move(delegate));
    return true;
}

ListWindow::Delegate ListWindow::make(int kind, std::unique_ptr<ListEntry> entry) {
    Delegate delegate{kind, std::move(entry), nullptr};
    QQmlComponent *component = m_delegates.value(kind);
    if (!component)
        return delegate;
    QQmlEngine::setObjectOwnership(delegate.entry.get(), QQmlEngine::CppOwnership);
    QQmlContext *context = component->creationContext();
    QObject *object = component->createWithInitialProperties({{u"entry"_s, QVariant::fromValue(delegate.entry.get())}},
                                                             context ? context : qmlContext(this));
    delegate.item = qobject_cast<QQuickItem *>(object);
    if (!delegate.item) {
        qWarning("zelk: a delegate could not be made: %s", qPrintable(component->errorString()));
        delete object;
        return delegate;
    }
    delegate.item->setParent(this);
    delegate.item->setParentItem(this);
    return delegate;
}

// Once the view has all that it shows, what it will need when it is full.
void ListWindow::goOn() {
    if (!m_filled)
        return polish();
    const auto usual = m_model && isComponentComplete() ? m_model->usual() : std::nullopt;
    if (!usual)
        return;
    const auto isUsual = [&usual](const Delegate &delegate) { return delegate.kind == usual->kind; };
    const auto needed = static_cast<std::ptrdiff_t>(std::ceil((m_viewHeight + 2 * overscan) / usual->height)) + 1;
    const auto missing = needed - std::count_if(m_shown.begin(), m_shown.end(), isUsual) -
                         std::count_if(m_spare.begin(), m_spare.end(), isUsual);
    for (int i = 0; i < std::min<std::ptrdiff_t>(missing, madeAtOnce); ++i) {
        Delegate delegate = make(usual->kind, m_model->createEntry(usual->kind));
        if (!delegate.item)
            return;
        delegate.item->setVisible(false);
        delegate.item->setSize(QSizeF(width(), usual->height));
        m_spare.push_back(std::move(delegate));
    }
    if (missing > madeAtOnce)
        m_ahead.request();
}

void ListWindow::place(Delegate &delegate) {
    if (!delegate.item || !m_model)
        return;
    const int index = delegate.entry->index();
    delegate.item->setPosition(QPointF(0, m_model->yOf(index)));
    delegate.item->setSize(QSizeF(width(), m_model->heightOf(index)));
}

void ListWindow::inserted(int first, int count) {
    for (Delegate &delegate : m_shown) {
        if (delegate.entry->index() >= first)
            delegate.entry->setIndex(delegate.entry->index() + count);
    }
    if (m_currentIndex >= first) {
        m_currentIndex += count;
        Q_EMIT currentIndexChanged();
    }
    const double y = m_model->yOf(first);
    contentChanged();
    if (y < m_viewTop && first + count < m_model->rowCount())
        Q_EMIT contentShifted(m_model->yOf(first + count) - y);
}

void ListWindow::aboutToRemove(int first, int count) {
    m_removedY = m_model->yOf(first);
    const int after = first + count;
    m_heightBefore = (after < m_model->rowCount() ? m_model->yOf(after) : m_model->contentHeight()) - m_removedY;
}

void ListWindow::removed(int first, int count) {
    for (auto each = m_shown.begin(); each != m_shown.end();) {
        const int index = each->entry->index();
        if (index >= first && index < first + count) {
            const auto offset = each - m_shown.begin();
            retire(each);
            each = m_shown.begin() + offset;
            continue;
        }
        if (index >= first + count)
            each->entry->setIndex(index - count);
        ++each;
    }
    if (m_currentIndex >= first) {
        // The keyboard stays near: what now stands just before the gap takes over from an element that went.
        m_currentIndex = m_currentIndex >= first + count ? m_currentIndex - count : first - 1;
        showCurrent();
        Q_EMIT currentIndexChanged();
    }
    contentChanged();
    if (m_removedY + m_heightBefore <= m_viewTop)
        Q_EMIT contentShifted(-m_heightBefore);
}

void ListWindow::changed(int first, int last, const QList<int> &roles) {
    for (Delegate &delegate : m_shown) {
        if (delegate.entry->index() >= first && delegate.entry->index() <= last)
            m_model->load(*delegate.entry, roles);
    }
}

void ListWindow::reset() {
    while (!m_shown.empty())
        retire(m_shown.end() - 1);
    setCurrentIndex(-1);
    contentChanged();
}

} // namespace zelk
