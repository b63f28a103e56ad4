#pragma once

#include "pomvarsrv/catalogue/IconTheme.h"

#include <QAbstractListModel>
#include <QIcon>

#include <vector>

namespace pomvar::srv {

// The icon theme's names as a list, each drawn from its file at 24 px when its row is first
// shown: a theme holds thousands.
class IconNameModel : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit IconNameModel(QObject* parent = nullptr);

    const IconTheme& theme() const { return m_theme; }
    // The icon an entry's Icon key names: a theme name or a file; a null icon when none.
    QIcon iconOf(const QString& icon) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    IconTheme m_theme;
    QStringList m_names;
    mutable std::vector<QIcon> m_icons;
};

} // namespace pomvar::srv
