#include "inkedpicture.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

/// The pixels of a widget around all of \a area that is not transparent; each is \a scale pixels of \a image long.
QRect inkedArea(const QImage &image, const QRect &area, int scale)
{
    const auto isInk = [](QRgb pixel) { return pixel != 0; };
    QRect ink;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        const auto *end = line + image.width();
        const auto *first = std::find_if(line, end, isInk);
        if (first == end)
            continue;
        const auto last = std::find_if(std::make_reverse_iterator(end), std::make_reverse_iterator(first), isInk);
        const int left = static_cast<int>(first - line);
        const int right = static_cast<int>(last.base() - line) - 1;
        ink |= QRect(QPoint(left / scale, y / scale), QPoint(right / scale, y / scale));
    }
    return ink;
}

} // namespace

InkedPicture::InkedPicture(const QImage &image, const QRect &area)
{
    Q_ASSERT(image.isNull() || image.format() == QImage::Format_ARGB32_Premultiplied);
    const qreal ratio = image.devicePixelRatio();
    if (ratio != std::floor(ratio)) {
        m_pixmap = QPixmap::fromImage(image);
        return;
    }
    const int scale = static_cast<int>(ratio);
    const QRect ink = area.isValid() ? inkedArea(image, area & image.rect(), scale) : QRect();
    if (ink.isEmpty())
        return;
    m_pixmap = QPixmap::fromImage(image.copy(QRect(ink.topLeft() * scale, ink.size() * scale)));
    m_corner = ink.topLeft();
}

void InkedPicture::draw(QPainter &painter, const QPointF &corner) const
{
    painter.drawPixmap(corner + m_corner, m_pixmap);
}
