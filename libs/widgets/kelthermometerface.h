/// \file
/// How a thermometer is painted. Not installed.
#pragma once

#include "inkedpicture.h"
#include "kelthermometerbulb.h"
#include "kelthermometercolumn.h"

/// What a thermometer shows.
struct ThermometerState {
    double level = 0.0;
    ThermometerBounds bounds;
    QColor liquidColor;
};

/// Paints thermometers. What does not move with the level (the glass, the scale, the outline, the bulb's
/// shape) is kept as pictures for a size, a pixel ratio and the scale's bounds, until they are dropped. Labels have
/// the application's font.
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
        qreal pixelRatio = 0.0;

        bool operator==(const Look &other) const;
    };

    void refresh(const ThermometerGeometry &geometry, const QPainterPath &outline, const Look &look);
    void paintApart(QPainter &painter, const ThermometerGeometry &geometry, const QRect &liquid, const QColor &color);
    void paintWhole(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline,
                    const QRect &liquid, const QColor &color) const;
    bool canPaintApart(const ThermometerGeometry &geometry, const QRect &liquid) const;

    Look m_look;
    InkedPicture m_glass;
    InkedPicture m_tubeLines; // scale and outline above the bulb
    InkedPicture m_lines;     // what else there is of them
    InkedPicture m_emptyTube; // glass and lines in one
    ThermometerBulb m_bulb;
    ThermometerColumn m_column;
};
