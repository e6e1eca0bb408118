#include "kelthermometercolumn.h"

#include <QPainter>

ThermometerColumn::ThermometerColumn(const QImage &figure, int bottom, int pixelRatio)
{
    const auto *row = reinterpret_cast<const QRgb *>(figure.constScanLine((bottom - 1) * pixelRatio));
    const qreal pixel = 1.0 / pixelRatio;
    for (int x = 0; x < figure.width(); ++x) {
        const int coverage = qAlpha(row[x]);
        if (coverage == 0)
            continue;
        const bool isNew = m_strips.isEmpty() || m_strips.last().coverage != coverage;
        if (isNew)
            m_strips << Strip{QRectF(x * pixel, 0.0, pixel, bottom), coverage};
        else
            m_strips.last().area.setRight((x + 1) * pixel);
    }
}

void ThermometerColumn::draw(QPainter &painter, const QPointF &corner, const QColor &color) const
{
    // The strips end where pixels end.
    painter.setRenderHint(QPainter::Antialiasing, false);
    QColor part = color.toRgb();
    for (const Strip &strip : m_strips) {
        part.setAlpha(strip.coverage);
        painter.fillRect(strip.area.translated(corner), part);
    }
}
