/// \file
/// The liquid in a thermometer's tube. Not installed.
#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QVector>

class QPainter;

/// The straight part of a thermometer's liquid, of one colour and as long as the tube. What of a pixel at its
/// edges is liquid never changes, so a frame fills rectangles of whole pixels instead of a shape.
class ThermometerColumn
{
public:
    ThermometerColumn() = default;

    /// \a figure is the whole widget, opaque where a thermometer is, with \a pixelRatio pixels each way. The
    /// column stands on the widget's row \a bottom.
    ThermometerColumn(const QImage &figure, int bottom, int pixelRatio);

    /// Paints it in a widget whose corner is \a corner, up to the widget's top: a clip ends it at the level.
    void draw(QPainter &painter, const QPointF &corner, const QColor &color) const;

private:
    /// Pixels that stand side by side and are equally full.
    struct Strip {
        QRectF area;
        int coverage = 0; // of 255
    };

    QVector<Strip> m_strips;
};
