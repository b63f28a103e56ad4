#pragma once

#include <QColor>
#include <QRect>
#include <QSize>

class QPainter;
class QPalette;

namespace pomvar {

// The look of a menu selector button: a 64 × 48 label frame with padding 4, a light grey fill
// when checked (darker while pressed), nothing when not checked until pressed; corners of 8.
class CheckedButtonStyle
{
public:
    explicit CheckedButtonStyle(bool isChecked)
        : m_isChecked(isChecked)
    {}

    static constexpr int labelWidth = 64;
    static constexpr int labelHeight = 48;
    static constexpr int padding = 4;
    static constexpr int cornerRadius = 8;

    static QSize size() { return { labelWidth + 2 * padding, labelHeight + 2 * padding }; }
    static QRect labelRect(const QRect& bounds);
    qreal backgroundOpacity(bool pressed) const;
    void paintBackground(QPainter& painter,
                         const QRect& bounds,
                         bool pressed,
                         const QPalette& palette) const;

private:
    bool m_isChecked;
};

} // namespace pomvar
