/// \file
/// Pictures without the part that nobody sees. Not installed.
#pragma once

#include <QImage>
#include <QPixmap>
#include <QPointF>

class QPainter;

/// A picture whose transparent margins are cut off, so that painting it does not look at them again and again.
/// They stay when a pixel of the widget is no whole number of the picture's.
class InkedPicture
{
public:
    InkedPicture() = default; ///< Nothing is seen.

    /// \a image with its own pixel ratio; of it only the part \a area, in its pixels and as wide as it is.
    InkedPicture(const QImage &image, const QRect &area);
    explicit InkedPicture(const QImage &image)
        : InkedPicture(image, image.rect())
    {
    }

    bool isNull() const { return m_pixmap.isNull(); }
    int sizeInBytes() const { return m_pixmap.width() * m_pixmap.height() * m_pixmap.depth() / 8; }

    /// Paints it so that the whole image has its corner at \a corner.
    void draw(QPainter &painter, const QPointF &corner = {}) const;

private:
    QPixmap m_pixmap;
    QPoint m_corner;
};
