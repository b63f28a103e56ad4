#pragma once

#include "wire/Records.h"

#include <QRect>
#include <QString>

#include <optional>

class QPainter;
class QPalette;

namespace pomvar {

// The label of one app category in My Apps: a folder icon and the category's name.
class AppCatItem
{
public:
    struct Geometry
    {
        QRect icon;
        QRect name;
    };

    // `expanded` turns the disclosure chevron in front of the label.
    AppCatItem(QString name, bool expanded);

    Geometry geometry(const QRect& row, const std::optional<UserPrefs>& prefs) const;
    void paint(QPainter& painter,
               const QRect& row,
               bool hovered,
               const QPalette& palette,
               const std::optional<UserPrefs>& prefs) const;

private:
    QString m_name;
    bool m_expanded;
};

} // namespace pomvar
