#pragma once

#include "pomvarsrv/search/SearchRow.h"

#include <QAbstractListModel>
#include <QString>

#include <vector>

namespace pomvar::srv {

// The search window's rows.
class SearchResults : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role
    {
        KeyRole = Qt::UserRole + 1,
        DetailRole,
        IconRole,
        Icon2xRole,
    };

    using QAbstractListModel::QAbstractListModel;

    void setRows(std::vector<SearchRow> rows);
    const std::vector<SearchRow>& rows() const { return m_rows; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<SearchRow> m_rows;
};

} // namespace pomvar::srv
