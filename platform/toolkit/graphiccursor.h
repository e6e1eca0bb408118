/// \file
/// The cursor that reads a plot's values. Not installed.
#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QVector>
#include <keltoolkitexport.h>

class QPainter;
class QPalette;

/// What the cursor reads from one curve.
struct GraphicReading {
    QString name;
    QString value;
    QColor color;
    QPointF place; ///< Of the point that was read.
};

/// Where a box of \a size stands beside \a pointer: right of it and below, or on the other side where there
/// is no room, and always inside \a area as far as it fits.
KEL_TOOLKIT_EXPORT QRectF boxBeside(const QPointF &pointer, const QSizeF &size, const QRectF &area, double distance);

/// Draws a line through \a pointer, a ring around each point that was read, and the box with \a heading and
/// the readings.
KEL_TOOLKIT_EXPORT void drawCursor(QPainter &painter, const QRectF &area, const QPointF &pointer,
                                   const QString &heading, const QVector<GraphicReading> &readings,
                                   const QPalette &palette);
