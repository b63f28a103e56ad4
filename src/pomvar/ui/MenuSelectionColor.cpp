#include "ui/MenuSelectionColor.h"

#include "palette/ReadableColor.h"

#include <QPalette>

namespace pomvar {

QColor MenuSelectionColor::color(const QPalette& palette) const
{
    return m_isHovered ? palette.color(QPalette::Active, QPalette::Highlight)
                       : QColor(Qt::transparent);
}

QColor MenuSelectionColor::foreground(const QPalette& palette) const
{
    if (!m_isHovered)
        return palette.color(QPalette::Active, QPalette::WindowText);
    return ReadableColor::on(color(palette),
                             palette.color(QPalette::Active, QPalette::HighlightedText));
}

} // namespace pomvar
