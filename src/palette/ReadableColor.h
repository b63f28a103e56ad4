#pragma once

#include <QColor>

namespace pomvar {

// Text colours of the palette made readable where they are drawn. Themes pair their highlight
// with a text colour that does not always reach the contrast text needs (4.5:1, WCAG's minimum):
// such a colour is moved toward black or white, whichever reads better, just far enough.
class ReadableColor
{
public:
    static constexpr double kMinimumContrast = 4.5;

    // The WCAG 2 contrast ratio of two opaque colours, from 1 to 21.
    static double contrast(const QColor& a, const QColor& b);
    // `text` on `background`, made readable.
    static QColor on(const QColor& background, const QColor& text);
    // A quieter line under `text`: toward the background by `quietness` (0 is the text itself,
    // 1 the background), or less where that would no longer read.
    static QColor quieter(const QColor& background, const QColor& text, double quietness);

private:
    static QColor mix(const QColor& from, const QColor& to, double amount);
};

} // namespace pomvar
