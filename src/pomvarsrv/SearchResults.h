#pragma once

#include <QAbstractListModel>
#include <QString>

#include <vector>

namespace pomvar::srv {

// One row of the search window: an app, or one of an app's desktop actions.
struct SearchRow
{
    QString key;    // desktop file id, or the action's id
    QString name;   // the row's accessible name too
    QString detail; // second line: generic name or comment
    QString icon;   // 24 px file
    QString icon2x; // 48 px file
};

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
