#include "model/MenuList.h"

namespace pomvar {

namespace {

// Top-level rows have internal id 0; a child's internal id is its parent's row + 1.
constexpr quintptr kTopLevel = 0;

QVariant optionalText(const std::optional<std::string>& text)
{
    return text ? QVariant(QString::fromStdString(*text)) : QVariant();
}

} // namespace

MenuList::MenuList(QObject* parent)
    : QAbstractItemModel(parent)
{}

void MenuList::append(TreeItem item)
{
    const int row = static_cast<int>(m_items.size());
    beginInsertRows({}, row, row);
    m_items.push_back(std::move(item));
    endInsertRows();
}

void MenuList::clear()
{
    if (m_items.empty())
        return;
    beginResetModel();
    m_items.clear();
    endResetModel();
}

const TreeItem& MenuList::item(const QModelIndex& index) const
{
    if (index.internalId() == kTopLevel)
        return m_items.at(static_cast<std::size_t>(index.row()));
    const TreeItem& category = m_items.at(index.internalId() - 1);
    return category.children->at(static_cast<std::size_t>(index.row()));
}

QModelIndex MenuList::index(int row, int column, const QModelIndex& parent) const
{
    if (column != 0 || row < 0 || row >= rowCount(parent))
        return {};
    if (!parent.isValid())
        return createIndex(row, column, kTopLevel);
    return createIndex(row, column, static_cast<quintptr>(parent.row()) + 1);
}

QModelIndex MenuList::parent(const QModelIndex& child) const
{
    if (!child.isValid() || child.internalId() == kTopLevel)
        return {};
    return createIndex(static_cast<int>(child.internalId() - 1), 0, kTopLevel);
}

int MenuList::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return static_cast<int>(m_items.size());
    if (parent.internalId() != kTopLevel || parent.column() != 0)
        return 0;
    const TreeItem& row = m_items.at(static_cast<std::size_t>(parent.row()));
    return row.children ? static_cast<int>(row.children->size()) : 0;
}

int MenuList::columnCount(const QModelIndex&) const
{
    return 1;
}

QVariant MenuList::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const TreeItem& row = item(index);
    switch (role) {
        case Qt::DisplayRole:
            return QString::fromStdString(row.name);
        case Qt::ToolTipRole:
            // A tool tip that looks like markup is laid out as such: the name goes escaped.
            return QString(QStringLiteral("<p>") +
                           QString::fromStdString(row.name).toHtmlEscaped() +
                           QStringLiteral("</p>"));
        case IdRole:
            return QString::fromStdString(row.id);
        case IsPinnedAppMenuItemRole:
            return row.isPinnedAppMenuItem;
        case IsPinnedRole:
            return row.isPinned;
        case BundleIdRole:
            return optionalText(row.bundleID);
        case IconPathRole:
            return optionalText(row.iconPath);
        case IconPath2xRole:
            return optionalText(row.iconPath2x);
        case IsCategoryRole:
            return row.isCategory();
        default:
            return {};
    }
}

QHash<int, QByteArray> MenuList::roleNames() const
{
    return { { Qt::DisplayRole, "name" },
             { IdRole, "id" },
             { IsPinnedAppMenuItemRole, "isPinnedAppMenuItem" },
             { IsPinnedRole, "isPinned" },
             { BundleIdRole, "bundleID" },
             { IconPathRole, "iconPath" },
             { IconPath2xRole, "iconPath2x" },
             { IsCategoryRole, "isCategory" } };
}

} // namespace pomvar
