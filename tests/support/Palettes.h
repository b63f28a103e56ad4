#pragma once

#include <QColor>
#include <QImage>
#include <QPalette>
#include <QRect>

#include <algorithm>
#include <cmath>
#include <utility>

// The palettes that tests and screenshots draw under, and the contrast that text drawn on an
// image has. Header only: QtGui, which each user links already.
namespace pomvar::test {

// role colours: window, window text, base, text, button, highlight, highlighted text, placeholder.
inline QPalette palette(std::initializer_list<std::pair<QPalette::ColorRole, QColor>> roles,
                        const QColor& disabledText)
{
    QPalette made;
    for (const auto& [role, colour] : roles)
        made.setColor(role, colour);
    made.setColor(QPalette::Light, made.color(QPalette::Button).lighter(150));
    made.setColor(QPalette::Midlight, made.color(QPalette::Button).lighter(125));
    made.setColor(QPalette::Mid, made.color(QPalette::Button).darker(130));
    made.setColor(QPalette::Dark, made.color(QPalette::Button).darker(160));
    made.setColor(QPalette::Shadow, Qt::black);
    for (const auto role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        made.setColor(QPalette::Disabled, role, disabledText);
    return made;
}

// Fusion's light palette.
inline QPalette lightPalette()
{
    return palette({ { QPalette::Window, QColor(0xef, 0xef, 0xef) },
                     { QPalette::WindowText, Qt::black },
                     { QPalette::Base, Qt::white },
                     { QPalette::AlternateBase, QColor(0xf7, 0xf7, 0xf7) },
                     { QPalette::Text, Qt::black },
                     { QPalette::Button, QColor(0xef, 0xef, 0xef) },
                     { QPalette::ButtonText, Qt::black },
                     { QPalette::Highlight, QColor(0x30, 0x8c, 0xc6) },
                     { QPalette::HighlightedText, Qt::white },
                     { QPalette::PlaceholderText, QColor(0x80, 0x80, 0x80) },
                     { QPalette::ToolTipBase, QColor(0xff, 0xff, 0xdc) },
                     { QPalette::ToolTipText, Qt::black } },
                   QColor(0xbe, 0xbe, 0xbe));
}

// A dark palette as dark desktop themes have it, white on a mid blue for the highlight.
inline QPalette darkPalette()
{
    return palette({ { QPalette::Window, QColor(0x2e, 0x31, 0x35) },
                     { QPalette::WindowText, QColor(0xef, 0xf0, 0xf1) },
                     { QPalette::Base, QColor(0x1f, 0x21, 0x25) },
                     { QPalette::AlternateBase, QColor(0x2a, 0x2d, 0x31) },
                     { QPalette::Text, QColor(0xef, 0xf0, 0xf1) },
                     { QPalette::Button, QColor(0x3a, 0x3e, 0x44) },
                     { QPalette::ButtonText, QColor(0xef, 0xf0, 0xf1) },
                     { QPalette::Highlight, QColor(0x35, 0x84, 0xe4) },
                     { QPalette::HighlightedText, Qt::white },
                     { QPalette::PlaceholderText, QColor(0x8d, 0x91, 0x96) },
                     { QPalette::Link, QColor(0x5b, 0xa4, 0xf5) },
                     { QPalette::ToolTipBase, QColor(0x2e, 0x31, 0x35) },
                     { QPalette::ToolTipText, QColor(0xef, 0xf0, 0xf1) } },
                   QColor(0x6f, 0x73, 0x78));
}

// The WCAG 2 contrast ratio of two colours.
inline double contrastRatio(const QColor& a, const QColor& b)
{
    const auto luminance = [](const QColor& colour) {
        const auto linear = [](double c) {
            return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
               0.0722 * linear(colour.blueF());
    };
    const double first = luminance(a), second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

// The contrast of text drawn in `area` of `image` with `background`: its strongest pixel's, that
// is the text's own colour where a glyph covers a pixel whole.
inline double textContrast(const QImage& image, const QRect& area, const QColor& background)
{
    double strongest = 1;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            strongest = std::max(strongest, contrastRatio(image.pixelColor(x, y), background));
    return strongest;
}

} // namespace pomvar::test
