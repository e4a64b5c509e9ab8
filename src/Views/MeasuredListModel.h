#pragma once

#include <QAbstractListModel>
#include <qqmlregistration.h>

#include <memory>
#include <optional>

namespace zelk {

// What one delegate shows of its element. The window of delegates makes one per delegate and has the model fill it
// anew whenever the delegate takes another element, or its element changes.
class ListEntry : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the list")
    Q_PROPERTY(int index READ index NOTIFY indexChanged)
    Q_PROPERTY(bool current READ current NOTIFY currentChanged)

public:
    int index() const { return m_index; }
    void setIndex(int index);
    bool current() const { return m_current; }
    void setCurrent(bool current);

Q_SIGNALS:
    void indexChanged();
    void currentChanged();

private:
    int m_index = -1;
    bool m_current = false;
};

// A list whose elements have several known heights and therefore exact places. They grow with the scale of text.
class MeasuredListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(double contentHeight READ contentHeight NOTIFY contentHeightChanged)

public:
    using QAbstractListModel::QAbstractListModel;

    double textScale() const { return m_textScale; }
    void setTextScale(double scale);

    virtual double contentHeight() const = 0; // logical pixels
    Q_INVOKABLE virtual double yOf(int index) const = 0;
    Q_INVOKABLE virtual double heightOf(int index) const = 0;
    // The element at that y; the first or the last beyond the ends, -1 when there are none.
    Q_INVOKABLE virtual int indexAt(double y) const = 0;

    // Which of the view's delegates shows the element; -1 for one that is only room.
    virtual int kindOf(int index) const = 0;
    virtual bool canBeCurrent(int index) const = 0;
    // What a full view of this list is mostly made of; nothing when that can't be told.
    struct Usual {
        int kind = 0;
        double height = 0;
    };
    virtual std::optional<Usual> usual() const { return {}; }
    virtual std::unique_ptr<ListEntry> createEntry(int kind) const = 0;
    // Fills the entry with what its index holds; with `roles`, only what belongs to them need be read again.
    virtual void load(ListEntry &entry, const QList<int> &roles) const = 0;

Q_SIGNALS:
    void contentHeightChanged();

protected:
    // Finds every place anew: the scale of text is another one.
    virtual void remeasure() = 0;

private:
    double m_textScale = 1;
};

} // namespace zelk
