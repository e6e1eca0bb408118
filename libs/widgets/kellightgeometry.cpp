#include "kellightgeometry.h"

#include <QtMath>

#include <cmath>

namespace KelLightGeometry
{

namespace
{

// Lines are one pixel up to this radius and grow with the light from there on.
constexpr double ThinRadius = 80.0;
// Room between the ring and the picture's corners.
constexpr double PictureMargin = 1.2;

double radiusOf(const QSize &size)
{
    return qMin(size.width(), size.height()) * 0.5;
}

double ringWidthOf(double radius, const Ring &ring)
{
    return ring.binary ? radius / ThinRadius : radius * ring.barSize / 100.0;
}

QPointF fromCentre(const QPoint &position, const QSize &size)
{
    return {position.x() - size.width() * 0.5, position.y() - size.height() * 0.5};
}

} // namespace

Part partAt(const QPoint &position, const QSize &size, const Ring &ring)
{
    const QPointF d = fromCentre(position, size);
    const double distance = std::sqrt(d.x() * d.x() + d.y() * d.y());
    const double radius = radiusOf(size);
    if (distance > radius)
        return Part::Outside;
    return distance < radius - ringWidthOf(radius, ring) ? Part::Lamp : Part::Ring;
}

double shareAt(const QPoint &position, const QSize &size, const Ring &ring)
{
    const QPointF d = fromCentre(position, size);
    const double a = qRadiansToDegrees(std::atan2(d.x(), d.y()));
    const double angle = a < 0.0 ? -a : 360.0 - a;
    const double share = (angle - ring.angleShift) / (360.0 - 2.0 * ring.angleShift);
    return std::isnan(share) ? 0.0 : qBound(0.0, share, 1.0);
}

Layout layout(const QSize &size, const Ring &ring)
{
    Layout result;
    result.radius = radiusOf(size);
    const double scale = result.radius / ThinRadius;
    if (scale > 1.0) {
        result.penWidth = scale;
        result.glow = qMax(1.0, scale / 3.0);
    }
    result.radius -= result.penWidth;
    result.ringWidth = ringWidthOf(result.radius, ring);

    const double r = (result.radius - result.ringWidth) / PictureMargin;
    result.picture = {int(-r), int(-r), int(2.0 * r), int(2.0 * r)};
    return result;
}

} // namespace KelLightGeometry
