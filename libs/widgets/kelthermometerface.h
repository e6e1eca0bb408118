/// \file
/// How a thermometer is painted. Not installed.
#pragma once

#include "kelthermometerbulb.h"
#include "kelthermometercolumn.h"

#include <QPixmap>

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

    /// A part of the face as a picture, and its place in the widget.
    struct Layer {
        QPixmap picture;
        QPoint corner;
    };

    void refresh(const ThermometerGeometry &geometry, const QPainterPath &outline, const Look &look);
    Layer cropped(const QImage &sheet, const QRect &area) const;
    void paintApart(QPainter &painter, const ThermometerGeometry &geometry, const QRect &liquid, const QColor &color);
    void paintWhole(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline,
                    const QRect &liquid, const QColor &color) const;
    static void draw(QPainter &painter, const Layer &layer, const QPointF &corner = {});
    bool canPaintApart(const ThermometerGeometry &geometry, const QRect &liquid) const;

    Look m_look;
    Layer m_glass;
    Layer m_tubeLines; // scale and outline above the bulb
    Layer m_lines;     // what else there is of them
    Layer m_emptyTube; // glass and lines in one
    ThermometerBulb m_bulb;
    ThermometerColumn m_column;
};
