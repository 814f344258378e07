#include "Views/Contrast.h"

#include <algorithm>
#include <cmath>

namespace Talvo {

namespace {

double linear(float channel)
{
    const double value = channel;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &colour)
{
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QColor mixed(const QColor &from, const QColor &to, float part)
{
    const auto channel = [part](float a, float b) { return a + (b - a) * part; };
    return QColor::fromRgbF(channel(from.redF(), to.redF()), channel(from.greenF(), to.greenF()),
                            channel(from.blueF(), to.blueF()));
}

} // namespace

double contrastRatio(const QColor &one, const QColor &other)
{
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor blended(const QColor &top, const QColor &bottom)
{
    return mixed(bottom, top, top.alphaF());
}

QColor readable(const QColor &colour, const QColor &background, double ratio)
{
    constexpr int steps = 50;
    const QColor target = luminance(background) > 0.18 ? Qt::black : Qt::white;
    for (int step = 0; step < steps; ++step) {
        const QColor candidate = mixed(colour, target, static_cast<float>(step) / steps);
        if (contrastRatio(candidate, background) >= ratio) {
            return candidate;
        }
    }
    return target;
}

} // namespace Talvo
