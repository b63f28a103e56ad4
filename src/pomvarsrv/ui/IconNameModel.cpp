#include "pomvarsrv/ui/IconNameModel.h"

#include <QFileInfo>

namespace pomvar::srv {

namespace {

constexpr int kSide = 24;

} // namespace

IconNameModel::IconNameModel(QObject* parent)
    : QAbstractListModel(parent)
    , m_theme(IconTheme::userThemeName(),
              IconTheme::defaultIconDirs(),
              IconTheme::defaultPixmapDirs())
    , m_names(m_theme.iconNames())
    , m_icons(std::size_t(m_names.size()))
{}

QIcon IconNameModel::iconOf(const QString& icon) const
{
    if (icon.isEmpty())
        return {};
    const QString file = QFileInfo(icon).isAbsolute() ? icon : m_theme.find(icon, kSide * 2);
    return file.isEmpty() ? QIcon() : QIcon(file);
}

int IconNameModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_names.size());
}

QVariant IconNameModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const QString& name = m_names[index.row()];
    if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole)
        return name;
    if (role == Qt::DecorationRole) {
        QIcon& icon = m_icons[std::size_t(index.row())];
        if (icon.isNull())
            icon = iconOf(name);
        return icon;
    }
    return {};
}

} // namespace pomvar::srv
