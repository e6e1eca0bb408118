/// \file
/// How a thermometer is painted. Not installed.
#pragma once

#include "inkedpicture.h"
#include "kelthermometerbulb.h"
#include "kelthermometercolumn.h"

#include <QFont>

/// What a thermometer shows.
struct ThermometerState {
    double level = 0.0;
    ThermometerBounds bounds;
    QColor liquidColor;
};

/// Paints thermometers. What does not move with the level (the glass, the scale, the outline, the bulb's
/// shape) is kept as pictures for a size, a pixel ratio and the scale's bounds, until they are dropped. Thermometers
/// that agree in these share them. Labels have the application's font.
class KEL_WIDGETS_EXPORT ThermometerFace
{
public:
    /// Paints a thermometer; the painter stands at the widget's corner.
    void paint(QPainter &painter, const ThermometerGeometry &geometry, const ThermometerState &state, qreal pixelRatio);

    /// Forgets the pictures.
    void drop();

private:
    struct Look {
        QSizeF size;
        ThermometerBounds bounds;
        qreal pixelRatio = 0.0;

        bool operator==(const Look &other) const;
    };

    /// A look with the font that its labels have.
    struct LabelledLook {
        Look look;
        QFont font;

        bool operator==(const LabelledLook &other) const { return look == other.look && font == other.font; }
    };

    struct Parts {
        QPainterPath outline;
        InkedPicture glass;
        InkedPicture tubeLines; // scale and outline above the bulb
        InkedPicture lines;     // what else there is of them
        InkedPicture emptyTube; // glass and lines in one
        ThermometerBulb bulb;
        ThermometerColumn column;

        int sizeInKibibytes() const;
    };

    friend uint qHash(const LabelledLook &labelled, uint seed);
    void refresh(const ThermometerGeometry &geometry, const Look &look);
    static Parts makeParts(const ThermometerGeometry &geometry, const Look &look);
    void paintApart(QPainter &painter, const ThermometerGeometry &geometry, const QRect &liquid, const QColor &color);
    void paintWhole(QPainter &painter, const ThermometerGeometry &geometry, const QRect &liquid,
                    const QColor &color) const;
    bool canPaintApart(const ThermometerGeometry &geometry, const QRect &liquid) const;

    Look m_look;
    Parts m_parts;
};
