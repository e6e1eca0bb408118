/// \file
/// The shape of a switch, in coordinates whose origin is its centre.
#pragma once

#include <QPolygonF>
#include <QRectF>
#include <QSize>
#include <kelwidgetsexport.h>

/// Half the length of the track that fits into \a size: three times as long as it is wide.
KEL_WIDGETS_EXPORT qreal switchHalfLength(const QSize &size, Qt::Orientation orientation);

/// The track of that half length.
KEL_WIDGETS_EXPORT QRectF switchTrack(qreal halfLength, Qt::Orientation orientation);

/// Outline of a handle at \a position (0 on to 1 off) on that track, in its place. It rests at the
/// right or upper end when on.
KEL_WIDGETS_EXPORT QPolygonF sideHandle(qreal halfLength, Qt::Orientation orientation, qreal position);

/// Outline of one half of the rocker, in its place; the other half is this one turned by 180 degrees.
/// The halves meet in the middle at position 0 and stand at the ends at position 1.
KEL_WIDGETS_EXPORT QPolygonF rockerHalf(qreal halfLength, Qt::Orientation orientation, qreal position);
