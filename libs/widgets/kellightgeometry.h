/// \file
/// Where the parts of a light are: one place for what is painted and what the mouse hits.
#pragma once

#include <QRectF>

namespace KelLightGeometry
{

/// What of the ring's look its geometry depends on.
struct Ring {
    bool binary = false;
    double barSize = 0.0;    ///< Percent of the radius.
    double angleShift = 0.0; ///< Degrees left free on each side of the bottom.
};

enum class Part { Outside, Ring, Lamp };

/// The part under \a position of a light of \a size; the rims of the ring belong to the ring.
Part partAt(const QPoint &position, const QSize &size, const Ring &ring);

/// How far along the ring \a position is, 0..1 from the bottom through the left, the top and the right.
double shareAt(const QPoint &position, const QSize &size, const Ring &ring);

/// What is painted, around the widget's centre; the ring is drawn with the painter turned by 90 degrees.
struct Layout {
    qreal radius = 0.0; ///< Not above 0 when there is no room to paint.
    qreal ringWidth = 0.0;
    qreal penWidth = 1.0;
    qreal glow = 1.0; ///< Degrees over which the lit part of the ring fades into the unlit one.
    QRect picture;
};

Layout layout(const QSize &size, const Ring &ring);

} // namespace KelLightGeometry
