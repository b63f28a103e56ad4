#include "palette/ReadableColor.h"

#include <algorithm>
#include <cmath>

namespace pomvar {

namespace {

constexpr double kStep = 0.05;

double luminance(const QColor& colour)
{
    const auto linear = [](float channel) {
        return channel <= 0.04045f ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    const QColor rgb = colour.toRgb();
    return 0.2126 * linear(rgb.redF()) + 0.7152 * linear(rgb.greenF()) +
           0.0722 * linear(rgb.blueF());
}

} // namespace

double ReadableColor::contrast(const QColor& a, const QColor& b)
{
    const double first = luminance(a), second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor ReadableColor::mix(const QColor& from, const QColor& to, double amount)
{
    const auto channel = [amount](float a, float b) { return float(a + (b - a) * amount); };
    const QColor a = from.toRgb(), b = to.toRgb();
    return QColor::fromRgbF(channel(a.redF(), b.redF()),
                            channel(a.greenF(), b.greenF()),
                            channel(a.blueF(), b.blueF()));
}

QColor ReadableColor::on(const QColor& background, const QColor& text)
{
    if (contrast(text, background) >= kMinimumContrast)
        return text;
    // Black or white reaches 4.5:1 on any background; the way there keeps the text's hue.
    const QColor black(Qt::black), white(Qt::white);
    const QColor towards =
        contrast(black, background) > contrast(white, background) ? black : white;
    for (double amount = kStep; amount < 1; amount += kStep) {
        const QColor moved = mix(text, towards, amount);
        if (contrast(moved, background) >= kMinimumContrast)
            return moved;
    }
    return towards;
}

QColor ReadableColor::quieter(const QColor& background, const QColor& text, double quietness)
{
    const QColor readable = on(background, text);
    for (double amount = quietness; amount > 0; amount -= kStep) {
        const QColor quiet = mix(readable, background, amount);
        if (contrast(quiet, background) >= kMinimumContrast)
            return quiet;
    }
    return readable;
}

} // namespace pomvar
