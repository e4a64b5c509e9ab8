#pragma once

#include "Platform/UserDefaults.h"
#include "Views/ColumnWidths.h"

#include <QObject>
#include <QSize>
#include <qqmlregistration.h>

#include <memory>

namespace zelk {

// How the user has arranged the main window, kept from one launch to the next.
class WindowMemory : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    // In logical pixels, always between the least and the most that the column may have.
    Q_PROPERTY(int sidebarWidth READ sidebarWidth WRITE setSidebarWidth NOTIFY sidebarWidthChanged)
    Q_PROPERTY(int inspectorWidth READ inspectorWidth WRITE setInspectorWidth NOTIFY inspectorWidthChanged)
    // Kept as it was told, whatever it says: the rows of a table stand in their playlist's order.
    Q_PROPERTY(QString sortColumn READ sortColumn WRITE setSortColumn NOTIFY sortColumnChanged)

public:
    explicit WindowMemory(std::shared_ptr<UserDefaults> defaults, QObject *parent = nullptr);

    int sidebarWidth() const { return m_sidebarWidth; }
    void setSidebarWidth(int width);
    int inspectorWidth() const { return m_inspectorWidth; }
    void setInspectorWidth(int width);

    QString sortColumn() const { return m_sortColumn; }
    void setSortColumn(const QString &column);

    const ColumnWidths &columnWidths() const { return m_columnWidths; }
    void setColumnWidths(const ColumnWidths &widths);

    // What the window was left with, no bigger than `room`; `usual` when there is nothing to remember.
    QSize windowSize(QSize usual, QSize room) const;
    void setWindowSize(QSize size);

Q_SIGNALS:
    void sidebarWidthChanged();
    void inspectorWidthChanged();
    void sortColumnChanged();
    void columnWidthsChanged();

private:
    const std::shared_ptr<UserDefaults> m_defaults;
    int m_sidebarWidth;
    int m_inspectorWidth;
    QString m_sortColumn;
    ColumnWidths m_columnWidths;
};

} // namespace zelk
