/// \file
/// The ring of a light and what lies on it, as a picture. Not installed.
#pragma once

#include <QGradient>
#include <QImage>
#include <QVector>

/// A ring whose colours run around it, under a picture that stays. A fade changes the colours of a few degrees
/// only, in every frame. So each pixel of the ring is kept under the number of its colour, and what a frame
/// paints is the pixels of those colours that changed. The picture is the one that a conical gradient gives. A copy
/// costs next to nothing until it gets other colours.
class KelLightRing
{
public:
    /// The ring is where \a shape is not transparent, \a over lies on it; both are premultiplied and of one
    /// size. There is no ring when \a shape is null. \a centre is in their pixels.
    KelLightRing(const QImage &shape, const QImage &over, const QPointF &centre);

    /// Gives the ring the colours of a conical gradient that begins at the bottom and has \a stops.
    void setColors(const QGradientStops &stops);

    const QImage &picture() const { return m_picture; }

    int sizeInKibibytes() const; ///< At least 1.

private:
    /// A pixel of the ring.
    struct Pixel {
        int place = 0; // in the picture
        QRgb over = 0;
        quint32 coverage = 0; // of 255
    };

    QVector<Pixel> m_pixels; // by the number of their colour
    QVector<int> m_begins;   // where each colour's pixels begin, and the end
    QGradientStops m_stops;  // the ones whose colours the picture has; none at first
    QVector<QRgb> m_colors;  // of the picture
    QImage m_picture;
};
