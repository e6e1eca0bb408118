/// \file
/// Where the parts of a thermometer are, and which value and colour belong to which place. The origin is
/// the centre of the bulb, y grows downwards. Lengths are single precision: painting and pointer share them.
#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRect>
#include <QSize>
#include <QString>
#include <QVector>
#include <kelwidgetsexport.h>

/// The lengths that all parts follow from, in pixels.
struct ThermometerGeometry {
    float width = 0.0F;
    float height = 0.0F;
    float bulbRadius = 0.0F;
    float tubeHalfWidth = 0.0F;
    float scaleLength = 0.0F; ///< Its zero level stands one radius above the origin.

    /// Whether there is room for a scale; else only the outline is shown.
    bool hasScale() const { return scaleLength > 5.0F; }

    /// The centre of the bulb in the widget.
    QPointF origin() const { return {static_cast<qreal>(width / 2.0F), static_cast<qreal>(height - bulbRadius)}; }
};

/// The numbers at the scale's ends.
struct ThermometerBounds {
    double bottom = 0.0;
    double top = 0.0;

    bool operator==(const ThermometerBounds &other) const { return bottom == other.bottom && top == other.top; }
};

KEL_WIDGETS_EXPORT ThermometerGeometry layoutThermometer(const QSize &size);

/// Bulb, tube and its round end as one figure.
KEL_WIDGETS_EXPORT QPainterPath thermometerOutline(const ThermometerGeometry &geometry);

/// Where \a number is on the way from the bottom (0) to the top (1), beyond them as well. Equal bounds have
/// only a below (0), an at (0.5) and an above (1).
KEL_WIDGETS_EXPORT double shareOf(double number, const ThermometerBounds &bounds);

/// How high the liquid stands above the zero level.
KEL_WIDGETS_EXPORT float liquidHeight(const ThermometerGeometry &geometry, double share);

/// The whole pixels in which liquid of that height can be: from the bulb's bottom to its top.
KEL_WIDGETS_EXPORT QRect liquidArea(const ThermometerGeometry &geometry, float liquidHeight);

/// The whole pixels above \a liquid.
KEL_WIDGETS_EXPORT QRect emptyArea(const ThermometerGeometry &geometry, const QRect &liquid);

/// Where the liquid is white, seen from the origin.
KEL_WIDGETS_EXPORT QPointF liquidHighlight(const ThermometerGeometry &geometry);

/// The number that the pixel row \a y of the widget stands for; beyond the bounds outside the scale.
KEL_WIDGETS_EXPORT double numberAt(const ThermometerGeometry &geometry, const ThermometerBounds &bounds, int y);

/// Colour of the liquid at \a share of the way from cold to warm.
KEL_WIDGETS_EXPORT QColor liquidColor(double share);

/// One line of the scale.
struct ThermometerTick {
    enum class Length { Short, Medium, Long };

    double y = 0.0; ///< From the zero level, upwards negative; lines and labels stand on whole pixels.
    Length length = Length::Short;
    QString label; ///< Only long ones have one.
};

/// The lines of the scale, from the bottom to the top: one for each whole number. Lines that would share a
/// row of pixels are left out: first the ones, then the fives; of the tens then only those remain whose
/// labels, \a labelHeight pixels high, do not touch. So there are never more lines than pixels.
KEL_WIDGETS_EXPORT QVector<ThermometerTick> thermometerTicks(const ThermometerGeometry &geometry,
                                                             const ThermometerBounds &bounds, int labelHeight);
