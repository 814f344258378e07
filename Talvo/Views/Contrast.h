#pragma once

#include <QColor>

namespace Talvo {

/// How far two opaque colours stand apart: 1 (equal) to 21 (black on white), by the contrast ratio
/// of WCAG 2.1. Pure, any thread.
[[nodiscard]] double contrastRatio(const QColor &one, const QColor &other);

/// `top` laid over the opaque `bottom`, by its alpha. Pure, any thread.
[[nodiscard]] QColor blended(const QColor &top, const QColor &bottom);

/// The colour nearest to `colour`, moved towards black or white, that reaches `ratio` against
/// `background`; the colour itself when it already does. Pure, any thread.
[[nodiscard]] QColor readable(const QColor &colour, const QColor &background, double ratio);

} // namespace Talvo
