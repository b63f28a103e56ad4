#include "pomvarsrv/ui/OrganizerListModel.h"

#include "pomvarsrv/model/InstalledApps.h"

#include <QApplication>
#include <QMimeData>
#include <QStyle>
#include <QTextDocument>

namespace pomvar::srv {

OrganizerListModel::OrganizerListModel(Kind kind, bool acceptsDrops, QObject* parent)
    : QAbstractListModel(parent)
    , m_kind(kind)
    , m_acceptsDrops(acceptsDrops)
{}

void OrganizerListModel::setRows(std::vector<Row> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    m_icons.assign(m_rows.size(), QIcon());
    endResetModel();
}

void OrganizerListModel::setApps(const std::vector<std::string>& keys, const InstalledApps& apps)
{
    std::vector<Row> rows;
    rows.reserve(keys.size());
    for (const std::string& key : keys) {
        if (const AppEntry* app = apps.find(key))
            rows.push_back({ QString::fromStdString(key),
                             QString::fromStdString(app->name),
                             QString::fromStdString(app->iconPath),
                             QString::fromStdString(app->iconPath2x) });
    }
    setRows(std::move(rows));
}

QString OrganizerListModel::keyAt(int row) const
{
    return row >= 0 && row < rowCount() ? m_rows[std::size_t(row)].key : QString();
}

int OrganizerListModel::rowOf(const QString& key) const
{
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].key == key)
            return int(row);
    }
    return -1;
}

QStringList OrganizerListModel::keys() const
{
    QStringList keys;
    for (const Row& row : m_rows)
        keys << row.key;
    return keys;
}

int OrganizerListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant OrganizerListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const Row& row = m_rows[std::size_t(index.row())];
    switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
            return row.name;
        case Qt::ToolTipRole:
            // A tool tip that looks like markup is laid out as such: the name goes escaped.
            return Qt::convertFromPlainText(row.name);
        case KeyRole:
            return row.key;
        case Qt::DecorationRole: {
            if (m_kind == Kind::categories)
                return QApplication::style()->standardIcon(QStyle::SP_DirIcon);
            if (row.icon.isEmpty())
                return {};
            QIcon& icon = m_icons[std::size_t(index.row())];
            if (icon.isNull()) {
                icon.addFile(row.icon, QSize(24, 24));
                icon.addFile(row.icon2x, QSize(48, 48));
            }
            return icon;
        }
        default:
            return {};
    }
}

Qt::ItemFlags OrganizerListModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QAbstractListModel::flags(index);
    if (index.isValid())
        flags |= Qt::ItemIsDragEnabled;
    // Dropping onto a row: apps onto a category files them; anything else onto a row places it
    // before that row.
    if (m_acceptsDrops)
        flags |= Qt::ItemIsDropEnabled;
    return flags;
}

Qt::DropActions OrganizerListModel::supportedDragActions() const
{
    return Qt::CopyAction | Qt::MoveAction;
}

Qt::DropActions OrganizerListModel::supportedDropActions() const
{
    return m_acceptsDrops ? Qt::CopyAction | Qt::MoveAction : Qt::IgnoreAction;
}

const char* OrganizerListModel::ownMime() const
{
    return m_kind == Kind::apps ? kAppKeysMime : kCategoriesMime;
}

QStringList OrganizerListModel::mimeTypes() const
{
    if (m_kind == Kind::apps)
        return { QString::fromLatin1(kAppKeysMime) };
    return { QString::fromLatin1(kCategoriesMime), QString::fromLatin1(kAppKeysMime) };
}

QMimeData* OrganizerListModel::mimeData(const QModelIndexList& indexes) const
{
    QStringList keys;
    for (const QModelIndex& index : indexes)
        keys << index.data(KeyRole).toString();
    auto* data = new QMimeData;
    data->setData(QString::fromLatin1(ownMime()), keys.join(u'\n').toUtf8());
    return data;
}

QStringList OrganizerListModel::keysIn(const QMimeData* data, const char* mime)
{
    const QByteArray text = data ? data->data(QString::fromLatin1(mime)) : QByteArray();
    return text.isEmpty() ? QStringList() : QString::fromUtf8(text).split(u'\n');
}

bool OrganizerListModel::canDropMimeData(const QMimeData* data,
                                         Qt::DropAction,
                                         int,
                                         int,
                                         const QModelIndex& parent) const
{
    if (!m_acceptsDrops || !data)
        return false;
    if (data->hasFormat(QString::fromLatin1(ownMime())))
        return true;
    // Apps land on a category, not between categories.
    return m_kind == Kind::categories && parent.isValid() &&
           data->hasFormat(QString::fromLatin1(kAppKeysMime));
}

bool OrganizerListModel::dropMimeData(const QMimeData* data,
                                      Qt::DropAction action,
                                      int row,
                                      int column,
                                      const QModelIndex& parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const QStringList own = keysIn(data, ownMime());
    if (own.isEmpty()) {
        Q_EMIT fileRequested(keysIn(data, kAppKeysMime), keyAt(parent.row()));
        return true;
    }
    Q_EMIT placeRequested(own, keyAt(parent.isValid() ? parent.row() : row));
    return true;
}

} // namespace pomvar::srv
