#pragma once

#include "ui/Pomvar.h"
#include "wire/Records.h"

#include <QRect>
#include <QString>

#include <optional>

class QFont;
class QPainter;
class QPalette;

namespace pomvar {

// One app row: the icon, kept in its proportions at a height of `sz`, then the name on one
// line. The icon file is read at every paint; nothing is cached.
class AppItem
{
public:
    struct Geometry
    {
        QRect icon;
        QRect name;
    };

    AppItem(QString name, bool isPinnedApp, QString iconPath, Pomvar menu);

    // Where the icon and the name go inside the row rectangle. Reads the icon file's header.
    Geometry geometry(const QRect& row, const std::optional<UserPrefs>& prefs) const;
    void paint(QPainter& painter,
               const QRect& row,
               bool hovered,
               const QPalette& palette,
               const std::optional<UserPrefs>& prefs) const;

private:
    // The geometry for an icon file of `fileSize` pixels.
    Geometry geometryFor(const QRect& row,
                         QSize fileSize,
                         const std::optional<UserPrefs>& prefs) const;

    QString m_name;
    bool m_isPinnedApp;
    QString m_iconPath;
    Pomvar m_menu;
};

} // namespace pomvar
