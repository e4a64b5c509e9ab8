#pragma once

#include "Views/FrameTick.h"
#include "Views/MeasuredListModel.h"

#include <QPointer>
#include <QQmlComponent>
#include <QQmlListProperty>
#include <QQuickItem>
#include <qqmlregistration.h>

#include <vector>

namespace zelk {

// The content of a scrolling list: holds delegates only for what is in view, each at the exact place that the model
// gives it, and takes those that leave the view for what enters it. Its height is that of the whole list, so that a
// scroll bar over it tells the truth at any length. Delegates are made a few in a frame, ahead of need where they can
// be.
class ListWindow : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelk::MeasuredListModel *model READ model WRITE setModel NOTIFY modelChanged)
    // One per kind of element, in the order of the model's kinds; each has a required property `entry`.
    Q_PROPERTY(QQmlListProperty<QQmlComponent> delegates READ delegates)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    // The part of this item that is in view, in its own coordinates.
    Q_PROPERTY(double viewTop READ viewTop WRITE setViewTop NOTIFY viewChanged)
    Q_PROPERTY(double viewHeight READ viewHeight WRITE setViewHeight NOTIFY viewChanged)
    // How much larger than usual text is in the elements; the model measures by it.
    Q_PROPERTY(double textScale READ textScale WRITE setTextScale NOTIFY textScaleChanged)
    // The element that the keyboard stands on, or -1. Follows its element when others come and go.
    Q_PROPERTY(int currentIndex READ currentIndex WRITE setCurrentIndex NOTIFY currentIndexChanged)
    // Whether the delegate of that element is to show it: while the keyboard is in this list.
    Q_PROPERTY(bool currentShown READ currentShown WRITE setCurrentShown NOTIFY currentShownChanged)

public:
    explicit ListWindow(QQuickItem *parent = nullptr);
    ~ListWindow() override;

    MeasuredListModel *model() const { return m_model; }
    void setModel(MeasuredListModel *model);
    QQmlListProperty<QQmlComponent> delegates() { return {this, &m_delegates}; }
    int count() const { return m_model ? m_model->rowCount() : 0; }
    double viewTop() const { return m_viewTop; }
    void setViewTop(double top);
    double viewHeight() const { return m_viewHeight; }
    void setViewHeight(double height);
    double textScale() const { return m_textScale; }
    void setTextScale(double scale);
    int currentIndex() const { return m_currentIndex; }
    void setCurrentIndex(int index);
    bool currentShown() const { return m_currentShown; }
    void setCurrentShown(bool shown);

    // The element that the keyboard reaches from `index` by `steps` up or down, `index` itself at the ends.
    Q_INVOKABLE int neighbour(int index, int steps) const;
    // The delegate that shows the element, or null while it is out of view.
    Q_INVOKABLE QQuickItem *itemAt(int index) const;
    // Whether all that is in view has its delegate: not yet in the first frames of a view that fills at once.
    bool isFilled() const { return m_filled; }
    // How many delegates exist, in view or waiting.
    int delegateCount() const { return static_cast<int>(m_shown.size() + m_spare.size()); }

Q_SIGNALS:
    void modelChanged();
    void countChanged();
    void viewChanged();
    void textScaleChanged();
    void currentIndexChanged();
    void currentShownChanged();
    // Elements above the view came, went or are of another height: scroll by as much to keep what is seen in its place.
    void contentShifted(double delta);

protected:
    void updatePolish() override;
    void componentComplete() override;
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    struct Delegate {
        int kind = -1;
        std::unique_ptr<ListEntry> entry;
        QPointer<QQuickItem> item;
    };
    using Delegates = std::vector<Delegate>;

    void connectModel();
    static void destroy(Delegates &delegates);
    void showCurrent();
    void inserted(int first, int count);
    void aboutToRemove(int first, int count);
    void removed(int first, int count);
    void changed(int first, int last, const QList<int> &roles);
    void reset();
    void retire(Delegates::iterator which);
    void retireOutside(int first, int last);
    bool show(int index, int &makeable);
    void stackInOrder();
    void goOn();
    Delegate make(int kind, std::unique_ptr<ListEntry> entry);
    void place(Delegate &delegate);
    void contentChanged();

    QPointer<MeasuredListModel> m_model;
    QList<QQmlComponent *> m_delegates;
    Delegates m_shown;
    Delegates m_spare;
    double m_viewTop = 0;
    double m_viewHeight = 0;
    double m_textScale = 1;
    int m_currentIndex = -1;
    bool m_currentShown = false;
    bool m_filled = true;
    double m_heightBefore = 0;
    double m_removedY = 0;
    std::vector<QMetaObject::Connection> m_connections;
    FrameTick m_ahead;
};

} // namespace zelk
