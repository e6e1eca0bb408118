#include "kelswitchface.h"

#include <array>

namespace
{

constexpr qreal LengthToWidth = 3.0;
constexpr qreal TrackToHandle = 1.1;

using Outline = std::array<QPointF, 4>; // In units of half the handle's width.

constexpr Outline SideOff = {QPointF(-1, -1), QPointF(-1, 1), QPointF(2.5, 1), QPointF(1, -1)};
constexpr Outline SideOn = {QPointF(-2.5, -1), QPointF(-1, 1), QPointF(1, 1), QPointF(1, -1)};
constexpr Outline HalfOff = {QPointF(-1, -1), QPointF(-1, 1), QPointF(0.8, 1), QPointF(0.125, -1)};
constexpr Outline HalfOn = {QPointF(-1, -1), QPointF(-1, 1), QPointF(0, 1), QPointF(0, -1)};

// A vertical switch is a horizontal one turned to the left: its right end is up.
QPointF turned(const QPointF &point, Qt::Orientation orientation)
{
    return orientation == Qt::Horizontal ? point : QPointF(point.y(), -point.x());
}

QPolygonF blended(const Outline &off, const Outline &on, qreal position, qreal unit, qreal offset,
                  Qt::Orientation orientation)
{
    QPolygonF outline;
    for (std::size_t i = 0; i < off.size(); ++i) {
        const QPointF point = (off[i] * position + on[i] * (1.0 - position)) * unit;
        outline << turned(point + QPointF(offset, 0.0), orientation);
    }
    return outline;
}

} // namespace

qreal switchHalfLength(const QSize &size, Qt::Orientation orientation)
{
    const bool horizontal = orientation == Qt::Horizontal;
    const qreal along = horizontal ? size.width() : size.height();
    const qreal across = horizontal ? size.height() : size.width();
    return qMin(along, LengthToWidth * across) / 2.0;
}

QRectF switchTrack(qreal halfLength, Qt::Orientation orientation)
{
    const qreal halfWidth = halfLength / LengthToWidth;
    const QRectF track(-halfLength, -halfWidth, 2.0 * halfLength, 2.0 * halfWidth);
    return orientation == Qt::Horizontal ? track : QRectF(track.y(), track.x(), track.height(), track.width());
}

QPolygonF sideHandle(qreal halfLength, Qt::Orientation orientation, qreal position)
{
    const qreal halfWidth = halfLength / LengthToWidth;
    const qreal offset = 2.0 * (halfWidth - halfLength) * (position - 0.5);
    return blended(SideOff, SideOn, position, halfWidth / TrackToHandle, offset, orientation);
}

QPolygonF rockerHalf(qreal halfLength, Qt::Orientation orientation, qreal position)
{
    const qreal halfWidth = halfLength / LengthToWidth;
    // As far as a side handle travels, each half travels half the way: both follow the finger alike.
    const qreal offset = (halfWidth - halfLength) * position;
    return blended(HalfOff, HalfOn, position, halfWidth / TrackToHandle, offset, orientation);
}
