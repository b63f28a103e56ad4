#include "pomvarsrv/ui/SearchResults.h"

namespace pomvar::srv {

void SearchResults::setRows(std::vector<SearchRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int SearchResults::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant SearchResults::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const SearchRow& row = m_rows[std::size_t(index.row())];
    switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
            return row.name;
        case Qt::AccessibleDescriptionRole:
        case DetailRole:
            return row.detail;
        case KeyRole:
            return row.key;
        case IconRole:
            return row.icon;
        case Icon2xRole:
            return row.icon2x;
        case KindRole:
            return int(row.kind);
        case SourceRole:
            return row.source;
        default:
            return {};
    }
}

Qt::ItemFlags SearchResults::flags(const QModelIndex& index) const
{
    if (index.isValid() && index.row() < rowCount() &&
        m_rows[std::size_t(index.row())].kind == SearchRow::Kind::providerHeader)
        return Qt::NoItemFlags;
    return QAbstractListModel::flags(index);
}

int SearchResults::selectableRow(int row, int step) const
{
    for (; row >= 0 && row < rowCount(); row += step)
        if (m_rows[std::size_t(row)].kind != SearchRow::Kind::providerHeader)
            return row;
    return -1;
}

} // namespace pomvar::srv
