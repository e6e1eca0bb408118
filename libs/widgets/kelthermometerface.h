/// \file
/// How a thermometer is painted. Not installed.
#pragma once

#include "kelthermometergeometry.h"

#include <QFont>
#include <QPixmap>

class QPainter;

/// What a thermometer shows.
struct ThermometerState {
    double level = 0.0;
    ThermometerBounds bounds;
    QColor liquidColor;
};

/// Paints thermometers. What does not move with the level (the glass, the scale, the outline) is kept as
/// pictures for a size, a pixel ratio, the scale's bounds and a font.
class ThermometerFace
{
public:
    /// Paints a thermometer whose outline is \a outline; the painter stands at the widget's corner.
    void paint(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline,
               const ThermometerState &state, qreal pixelRatio);

    /// Forgets the pictures.
    void drop();

private:
    struct Look {
        QSizeF size;
        ThermometerBounds bounds;
        QFont font;
        qreal pixelRatio = 0.0;

        bool operator==(const Look &other) const;
    };

    void refresh(const ThermometerGeometry &geometry, const QPainterPath &outline, const Look &look);

    Look m_look;
    QPixmap m_glass;
    QPixmap m_scale;
    QPixmap m_outline;
};

/// The steps of the picture, from the back to the front. The painter's origin is the bulb's centre.
void drawLiquid(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline, const QRect &area,
                const QColor &color);
void drawGlass(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline);
void drawScale(QPainter &painter, const ThermometerGeometry &geometry, const ThermometerBounds &bounds,
               const QFont &font);
void drawOutline(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline);
