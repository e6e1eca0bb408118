#include "kelthermometerbulb.h"

#include <QPainter>
#include <QRgba64>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr int TintCount = 256; // No channel has more steps.
constexpr int Opaque = 255;

using Tints = std::array<QRgb, TintCount>;

/// How far \a point is on its way from the highlight (0) to the bulb's rim (1), as in a radial gradient.
qreal wayToRim(const ThermometerGeometry &geometry, const QPointF &point)
{
    const QPointF focus = liquidHighlight(geometry);
    const QPointF way = point - focus;
    const qreal radius = static_cast<qreal>(geometry.bulbRadius);
    const qreal a = radius * radius - QPointF::dotProduct(focus, focus);
    const qreal b = -QPointF::dotProduct(way, focus);
    return std::min(1.0, (std::sqrt(b * b + a * QPointF::dotProduct(way, way)) - b) / a);
}

/// From white to \a color; the steps are finer than eight bits, as those of a gradient are.
Tints makeTints(const QColor &color)
{
    constexpr quint32 White = 0xffff;
    constexpr quint32 Start = (White << 16) + (1U << 15);
    const auto step = [](quint32 channel) {
        const double way = static_cast<double>(channel) - White;
        return static_cast<quint32>(qRound(way * 65536.0 / (TintCount - 1))); // downwards, by way of overflow
    };
    const auto toByte = [](quint32 fixed) {
        const quint32 channel = fixed >> 16;
        return (channel - (channel >> 8) + 128) >> 8;
    };
    const QRgba64 end = color.rgba64();
    const quint32 red = step(end.red());
    const quint32 green = step(end.green());
    const quint32 blue = step(end.blue());

    Tints tints{};
    QRgb *tint = tints.data();
    for (quint32 i = 0; i < TintCount; ++i) {
        tint[i] =
            0xff000000 | toByte(Start + i * red) << 16 | toByte(Start + i * green) << 8 | toByte(Start + i * blue);
    }
    tints.back() = end.toArgb32();
    return tints;
}

} // namespace

ThermometerBulb::ThermometerBulb(const ThermometerGeometry &geometry, const QImage &figure, int pixelRatio)
{
    const QPoint origin = geometry.origin().toPoint();
    const int reach = static_cast<int>(geometry.bulbRadius) + 1;
    m_corner = origin - QPoint(reach, reach + 1); // one row more, since the origin is rounded
    const QSize size(2 * reach + 1, qRound(geometry.height) - m_corner.y());
    m_picture = figure.copy(QRect(m_corner * pixelRatio, size * pixelRatio));

    const QPointF centre = geometry.origin() - m_corner;
    m_tints.reserve(m_picture.width() * m_picture.height());
    for (int y = 0; y < m_picture.height(); ++y) {
        sortRow(y);
        for (int x = 0; x < m_picture.width(); ++x) {
            const QPointF point = QPointF(x + 0.5, y + 0.5) / pixelRatio - centre;
            m_tints << static_cast<quint8>(qRound((TintCount - 1) * wayToRim(geometry, point)));
        }
    }
}

/// Keeps the first run of full pixels, and all others one by one.
void ThermometerBulb::sortRow(int y)
{
    const auto *line = reinterpret_cast<const QRgb *>(m_picture.constScanLine(y));
    Run run;
    for (int x = 0; x < m_picture.width(); ++x) {
        const int coverage = qAlpha(line[x]);
        if (coverage == Opaque && (run.end == 0 || run.end == x)) {
            run.begin = run.end == 0 ? x : run.begin;
            run.end = x + 1;
        } else if (coverage != 0) {
            m_rim << Rim{x, y, static_cast<QRgb>(coverage)};
        }
    }
    m_runs << run;
}

int ThermometerBulb::sizeInBytes() const
{
    const auto bytesOf = [](const auto &list) { return list.size() * static_cast<int>(sizeof(list.at(0))); };
    return m_picture.bytesPerLine() * m_picture.height() + bytesOf(m_tints) + bytesOf(m_runs) + bytesOf(m_rim);
}

void ThermometerBulb::draw(QPainter &painter, const QPointF &corner, const QColor &color)
{
    if (color != m_color) // beyond the bounds of the colour it stays
        fill(color);
    painter.drawImage(corner + m_corner, m_picture);
}

void ThermometerBulb::fill(const QColor &color)
{
    m_color = color;
    const Tints tints = makeTints(color);
    const QRgb *table = tints.data();
    const quint8 *tint = m_tints.constData();
    auto *pixels = reinterpret_cast<QRgb *>(m_picture.bits()); // 32 bits each, so there are no gaps between lines
    const int width = m_picture.width();
    int start = 0;
    for (const Run &run : m_runs) {
        const int end = start + run.end; // not read anew after each pixel
        for (int i = start + run.begin; i < end; ++i)
            pixels[i] = table[tint[i]];
        start += width;
    }
    for (const Rim &rim : m_rim) {
        const int i = rim.y * width + rim.x;
        pixels[i] = qPremultiply((table[tint[i]] & RGB_MASK) | rim.coverage << 24);
    }
}
