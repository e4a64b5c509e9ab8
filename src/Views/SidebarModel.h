#pragma once

#include "Views/SidebarEntry.h"

#include <QSet>

#include <vector>

namespace zelk {

// The sidebar's tree as one flat list of sections, folders and playlists. Takes whole new lists and says what differs.
class SidebarModel : public zelk::MeasuredListModel {
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Role { KindRole = Qt::UserRole, IdRole, DepthRole, SelectedRole };
    // Which delegate shows a row; SidebarRow::Kind in its order.
    enum Kind { Section, Folder, Playlist };

    using MeasuredListModel::MeasuredListModel;

    void setRows(std::vector<SidebarRow> rows);
    void setSelection(const QSet<QString> &selection);
    const std::vector<SidebarRow> &rows() const { return m_rows; }
    // Null outside of the list.
    const SidebarRow *rowAt(int index) const;
    // The row of a folder or playlist, -1 while it doesn't show.
    int indexOf(const QString &id) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    double contentHeight() const override { return m_tops.empty() ? 0 : m_tops.back(); }
    double yOf(int index) const override { return m_tops[static_cast<std::size_t>(index)]; }
    double heightOf(int index) const override;
    int indexAt(double y) const override;
    int kindOf(int index) const override { return static_cast<int>(m_rows[static_cast<std::size_t>(index)].kind); }
    bool canBeCurrent(int index) const override { return kindOf(index) != Section; }
    std::unique_ptr<ListEntry> createEntry(int kind) const override;
    void load(ListEntry &entry, const QList<int> &roles) const override;

protected:
    void remeasure() override { measure(); }

private:
    void measure();

    std::vector<SidebarRow> m_rows;
    std::vector<double> m_tops; // of each row, and behind the last one
    QSet<QString> m_selection;
};

} // namespace zelk
