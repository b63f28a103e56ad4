#pragma once

#include <QColor>

class QPalette;

namespace pomvar {

// The fill behind a menu row: the accent colour while hovered, transparent otherwise.
class MenuSelectionColor
{
public:
    explicit MenuSelectionColor(bool isHovered)
        : m_isHovered(isHovered)
    {}

    QColor color(const QPalette& palette) const;
    // The row's text and glyph colour that goes with the fill: on the accent colour, the
    // palette's highlighted text, made readable there.
    QColor foreground(const QPalette& palette) const;

private:
    bool m_isHovered;
};

} // namespace pomvar
