#pragma once

#include "Transport/HelperProtocolCatalogue.h"

#include <QAbstractListModel>

#include <set>
#include <vector>

namespace zelk {

// Every source of audio in the order in which they are tried, those that are switched off too.
class SourceOrder : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role { Name = Qt::UserRole, Blurb, Symbol, Enabled };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    SourceId at(int row) const { return m_order.at(static_cast<std::size_t>(row)); }
    // Those first, in their order, then the others as they are declared.
    void fill(const std::vector<SourceId> &first);
    void move(int from, int to);
    void setEnabled(std::set<SourceId> enabled);
    // Those of `wanted`, in this order.
    std::vector<SourceId> only(const std::set<SourceId> &wanted) const;

private:
    std::vector<SourceId> m_order;
    std::set<SourceId> m_enabled;
};

} // namespace zelk
