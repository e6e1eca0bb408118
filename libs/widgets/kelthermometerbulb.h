/// \file
/// The lower end of a thermometer's liquid. Not installed.
#pragma once

#include "kelthermometergeometry.h"

#include <QImage>

class QPainter;

/// The bulb full of liquid, which shines. Its shape and its highlight stay while its colour changes in every
/// frame. So each pixel knows how much of it is liquid and which tint of the colour it has, and a frame
/// is a look into a table for each. The picture is the one that a gradient from white, at the
/// highlight, to the colour, at the rim, gives. A copy gets a picture of its own when it gets a colour.
class ThermometerBulb
{
public:
    ThermometerBulb() = default;

    /// \a figure is the whole widget, opaque where a thermometer is, with \a pixelRatio pixels each way.
    ThermometerBulb(const ThermometerGeometry &geometry, const QImage &figure, int pixelRatio);

    /// Its first row in the widget; above it the liquid has one colour.
    int top() const { return m_corner.y(); }

    int sizeInBytes() const;

    /// Paints it in a widget whose corner is \a corner.
    void draw(QPainter &painter, const QPointF &corner, const QColor &color);

private:
    /// Pixels of a row that are all liquid.
    struct Run {
        int begin = 0;
        int end = 0;
    };

    /// A pixel that is liquid in part.
    struct Rim {
        int x = 0;
        int y = 0;
        QRgb coverage = 0;
    };

    void sortRow(int y);
    void fill(const QColor &color);

    QPoint m_corner;
    QVector<quint8> m_tints; // Of each pixel, a number between white and the colour.
    QVector<Run> m_runs;     // One for each row.
    QVector<Rim> m_rim;
    QImage m_picture; // In the colour that was last asked for.
    QColor m_color;
};
