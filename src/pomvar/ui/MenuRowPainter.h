#pragma once

#include "ui/Pomvar.h"
#include "wire/Records.h"

#include <QRect>
#include <QString>

#include <optional>

class QColor;
class QPainter;
class QPalette;

namespace pomvar {

// One menu row: the hover highlight, an icon, then the name on one line. An app row draws its
// icon file at a height of `sz`, kept in its proportions; the file is read at every paint, nothing
// is cached. A category row draws the folder icon behind a disclosure chevron.
class MenuRowPainter
{
public:
    struct Geometry
    {
        QRect icon;
        QRect name;
    };

    static MenuRowPainter app(QString name,
                              bool isPinnedApp,
                              QString iconPath,
                              Pomvar menu,
                              const std::optional<UserPrefs>& prefs);
    // `expanded` turns the chevron down.
    static MenuRowPainter category(QString name,
                                   bool expanded,
                                   const std::optional<UserPrefs>& prefs);

    // Where the icon and the name go inside the row. An app row reads its icon file's header.
    Geometry geometry(const QRect& row) const;
    void paint(QPainter& painter, const QRect& row, bool hovered, const QPalette& palette) const;

private:
    MenuRowPainter(QString name, QString iconPath, int leading, int side, int spacing);
    Geometry geometryFor(const QRect& row, QSize iconSize) const;
    void paintChevron(QPainter& painter, const QRect& row, const QColor& colour) const;

    QString m_name;
    QString m_iconPath; // empty for a category row
    QString m_asset;    // the folder icon of a category row
    bool m_expanded = false;
    int m_leading;
    int m_side;
    int m_spacing;
};

} // namespace pomvar
