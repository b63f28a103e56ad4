#pragma once

#include "model/TreeItem.h"

#include <QAbstractItemModel>

#include <vector>

namespace pomvar {

// A published menu list: rows are appended one at a time, each announced on its own
// (rowsInserted), and the list is emptied at once (modelReset), so views update
// incrementally. Category rows expose their apps as children, two levels at most.
class MenuList : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role
    {
        IdRole = Qt::UserRole + 1,
        IsPinnedAppMenuItemRole,
        IsPinnedRole,
        BundleIdRole,
        IconPathRole,
        IconPath2xRole,
        IsCategoryRole,
    };

    explicit MenuList(QObject* parent = nullptr);

    const std::vector<TreeItem>& items() const { return m_items; }
    bool isEmpty() const { return m_items.empty(); }
    std::size_t size() const { return m_items.size(); }

    void append(TreeItem item);
    // Room for rows about to be appended, so that a long list is not moved while it grows.
    void reserve(std::size_t rows) { m_items.reserve(m_items.size() + rows); }
    void clear();

    // The row behind an index of this model, top level or child.
    const TreeItem& item(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<TreeItem> m_items;
};

} // namespace pomvar
