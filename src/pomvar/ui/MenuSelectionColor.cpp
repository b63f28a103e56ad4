#include "ui/MenuSelectionColor.h"

#include <QPalette>

namespace pomvar {

QColor MenuSelectionColor::color(const QPalette& palette) const
{
    return m_isHovered ? palette.color(QPalette::Active, QPalette::Highlight)
                       : QColor(Qt::transparent);
}

QColor MenuSelectionColor::foreground(const QPalette& palette) const
{
    return m_isHovered ? QColor(Qt::white) : palette.color(QPalette::Active, QPalette::WindowText);
}

} // namespace pomvar
