#include "kellightring.h"

#include <QLinearGradient>
#include <QPainter>
#include <QtMath>

#include <cmath>
#include <numeric>

namespace
{

// As many as a gradient of Qt has.
constexpr int ColorCount = 1024;

/// The number of the colour at a pixel's middle, \a x and \a y from the centre: turning left from the bottom.
int colorAt(qreal x, qreal y)
{
    const qreal share = 1.25 - std::atan2(y, x) / (2.0 * M_PI); // never negative
    return static_cast<int>(share * (ColorCount - 1) + 0.5) % ColorCount;
}

/// The colours that a gradient has between 0 and 1.
QVector<QRgb> colorsOf(const QGradientStops &stops)
{
    QLinearGradient gradient(0.5, 0.0, ColorCount - 0.5, 0.0); // from the middle of the first to that of the last
    gradient.setStops(stops);
    QVector<QRgb> colors(ColorCount);
    QImage line(reinterpret_cast<uchar *>(colors.data()), ColorCount, 1, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&line);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(line.rect(), gradient);
    return colors;
}

/// \a pixel times \a share of 255, rounded as painting rounds it.
QRgb multiplied(QRgb pixel, quint32 share)
{
    constexpr quint32 Pair = 0xff00ff; // two channels with room for their products
    constexpr quint32 Half = 0x800080;
    quint32 even = (pixel & Pair) * share;
    quint32 odd = ((pixel >> 8) & Pair) * share;
    even = ((even + ((even >> 8) & Pair) + Half) >> 8) & Pair;
    odd = (odd + ((odd >> 8) & Pair) + Half) & ~Pair;
    return even | odd;
}

} // namespace

KelLightRing::KelLightRing(const QImage &shape, const QImage &over, const QPointF &centre)
    : m_begins(ColorCount + 1)
    , m_picture(over)
{
    QVector<int> colors;
    QVector<int> places;
    const int width = shape.width();
    for (int y = 0; y < shape.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(shape.constScanLine(y));
        for (int x = 0; x < width; ++x) {
            if (qAlpha(line[x]) == 0)
                continue;
            const int color = colorAt(x + 0.5 - centre.x(), y + 0.5 - centre.y());
            colors << color;
            places << y * width + x;
            ++m_begins[color + 1];
        }
    }
    std::partial_sum(m_begins.begin(), m_begins.end(), m_begins.begin());

    const auto *shapePixels = reinterpret_cast<const QRgb *>(shape.constBits());
    const auto *overPixels = reinterpret_cast<const QRgb *>(over.constBits());
    QVector<int> next = m_begins;
    m_pixels.resize(places.size());
    for (int i = 0; i < places.size(); ++i) {
        const int place = places.at(i);
        m_pixels[next[colors.at(i)]++] = {place, overPixels[place], static_cast<quint32>(qAlpha(shapePixels[place]))};
    }
}

void KelLightRing::setColors(const QGradientStops &stops)
{
    if (m_pixels.isEmpty() || stops == m_stops)
        return; // so a copy goes on sharing its picture
    m_stops = stops;
    const QVector<QRgb> colors = colorsOf(stops);
    const bool isFirst = m_colors.isEmpty();
    auto *pixels = reinterpret_cast<QRgb *>(m_picture.bits()); // 32 bits each, so there are no gaps between lines
    for (int i = 0; i < ColorCount; ++i) {
        const QRgb color = colors.at(i);
        if (!isFirst && color == m_colors.at(i))
            continue;
        const Pixel *end = m_pixels.constData() + m_begins.at(i + 1);
        for (const Pixel *pixel = m_pixels.constData() + m_begins.at(i); pixel != end; ++pixel) {
            const QRgb ring = multiplied(color, pixel->coverage);
            pixels[pixel->place] = pixel->over + multiplied(ring, 255 - static_cast<quint32>(qAlpha(pixel->over)));
        }
    }
    m_colors = colors;
}

int KelLightRing::sizeInKibibytes() const
{
    return 1 + (m_picture.bytesPerLine() * m_picture.height() + m_pixels.size() * int(sizeof(Pixel))) / 1024;
}
