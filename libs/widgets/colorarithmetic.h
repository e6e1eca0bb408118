/// \file
/// Sums and multiples of colours, as the painting code mixes them: on the 8-bit red, green, blue and
/// alpha components. The result is always an RGB colour.
#pragma once

#include <QColor>
#include <kelwidgetsexport.h>

/// Sum of each component, alpha included, clamped to 255.
KEL_WIDGETS_EXPORT QColor operator+(const QColor &a, const QColor &b);

/// Each component, alpha included, times \a k and truncated toward zero. An invalid colour when any
/// result leaves 0..255 or is not finite: a factor that does not fit is a mistake, not a shade.
KEL_WIDGETS_EXPORT QColor operator*(const QColor &c, double k);

/// As the product, with each component divided by \a k.
KEL_WIDGETS_EXPORT QColor operator/(const QColor &c, double k);
