/// \file
/// The bar of a KelSlider: where its parts are and how they are painted. Not installed.
#pragma once

#include <kelslider.h>

#include <QColor>
#include <QPixmap>
#include <QRectF>

class QPainter;

/// What a bar shows.
struct SliderBarState {
    double minimum = 0.0;
    double maximum = 0.0;
    double value = 0.0;
    KelSlider::BarStyle style = KelSlider::From0;
    double titleSize = 0.0; ///< Share of the smaller side that the caption's box takes.
};

/// Where the parts of a bar are.
struct SliderBarParts {
    bool isEmpty = true; ///< Nothing is painted: no area, or no range.
    QRectF outline;
    QRectF fill;
    bool hasZeroLine = false;
    int zeroX = 0;
    QRectF caption;
};

/// Lays out a bar of the size \a size in pixels.
SliderBarParts layoutSliderBar(const QSize &size, const SliderBarState &state);

/// Zero line and outline as a picture, which stays the same while the value moves.
class SliderBarFrame
{
public:
    /// For corners of the radius \a radius and a device of \a pixelRatio; painted anew when anything differs.
    const QPixmap &picture(const SliderBarParts &parts, const QColor &color, double radius, qreal pixelRatio);

private:
    struct Look {
        QSizeF size;
        int zeroX = -1;
        QColor color;
        double radius = 0.0;
        qreal pixelRatio = 0.0;

        bool operator==(const Look &other) const;
    };

    Look m_look;
    QPixmap m_picture;
};

/// Draws the filled part with corners of the radius \a radius.
void drawSliderFill(QPainter &painter, const SliderBarParts &parts, const QPalette &palette, double radius);

/// Draws \a caption over the bar, in the highlighted colour where the bar is filled.
void drawSliderCaption(QPainter &painter, const SliderBarParts &parts, const QPalette &palette, const QString &caption);
