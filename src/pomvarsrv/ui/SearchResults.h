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
        KindRole, // SearchRow::Kind, as an int
        SourceRole,
    };

    using QAbstractListModel::QAbstractListModel;

    void setRows(std::vector<SearchRow> rows);
    const std::vector<SearchRow>& rows() const { return m_rows; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    // A provider's name above its results can be neither selected nor activated.
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // The first row at or after `row` (before it, going up) that can be selected; -1 for none.
    int selectableRow(int row, int step) const;

private:
    std::vector<SearchRow> m_rows;
};

} // namespace pomvar::srv
