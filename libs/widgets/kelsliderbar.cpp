#include "kelsliderbar.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace
{

// A range below this is no range.
constexpr float SmallestRange = 1e-6F;

float toFloat(double number)
{
    return static_cast<float>(number);
}

QRectF fillFromLeft(const QRectF &bar, float share)
{
    return {0.0, 0.0, static_cast<double>(share) * bar.width(), bar.height()};
}

QRectF fillFromRight(const QRectF &bar, float share)
{
    const double part = static_cast<double>(share);
    return {part * bar.width(), 0.0, (1.0 - part) * bar.width(), bar.height()};
}

/// From the zero point to the value, on either side of it.
QRectF fillFromZero(const QRectF &bar, const SliderBarState &state, double range, double zero)
{
    const double zeroX = static_cast<double>(std::abs(toFloat(zero))) * bar.width();
    if (state.value < 0.0) {
        const double part = state.value / state.minimum;
        return {zeroX * (1.0 - part), 0.0, part * zeroX, bar.height()};
    }
    const double rightShare = static_cast<double>(std::abs(toFloat(state.maximum / range)));
    return {zeroX, 0.0, bar.width() * rightShare * (state.value / state.maximum), bar.height()};
}

/// The fill in whole pixels, for clipping.
QRect fillPixels(const QRectF &fill)
{
    return {QPoint(qRound(fill.x()), qRound(fill.y())),
            QPoint(qRound(fill.x() + fill.width()) - 1, qRound(fill.y() + fill.height()) - 1)};
}

} // namespace

SliderBarParts layoutSliderBar(const QSize &size, const SliderBarState &state)
{
    SliderBarParts parts;
    const float singleRange = toFloat(state.maximum - state.minimum);
    if (size.isEmpty() || !(std::abs(singleRange) >= SmallestRange))
        return parts;

    parts.isEmpty = false;
    parts.outline = QRectF(QPointF(), QSizeF(size));
    const double range = static_cast<double>(singleRange);
    const float share = toFloat((state.value - state.minimum) / range);
    const double zero = -state.minimum / range;
    const bool isPositive = state.minimum >= 0.0 && state.maximum >= 0.0;
    const bool isNegative = state.minimum <= 0.0 && state.maximum <= 0.0;

    if (state.style == KelSlider::MinToValue || (state.style == KelSlider::From0 && isPositive)) {
        parts.fill = fillFromLeft(parts.outline, share);
    } else if (state.style == KelSlider::MaxToValue || (state.style == KelSlider::From0 && isNegative)) {
        parts.fill = fillFromRight(parts.outline, share);
    } else if (state.style == KelSlider::From0) {
        parts.fill = fillFromZero(parts.outline, state, range, zero);
        parts.hasZeroLine = true;
        parts.zeroX = static_cast<int>(static_cast<double>(toFloat(zero)) * parts.outline.width());
    }

    const double smaller = std::min(parts.outline.width(), parts.outline.height());
    const double margin = smaller * (1.0 - state.titleSize) / 2.0;
    parts.caption = QRectF(margin, margin, parts.outline.width() - 2.0 * margin, parts.outline.height() - 2.0 * margin);
    return parts;
}

bool SliderBarFrame::Look::operator==(const Look &other) const
{
    return size == other.size && zeroX == other.zeroX && color == other.color && radius == other.radius &&
           pixelRatio == other.pixelRatio;
}

const QPixmap &SliderBarFrame::picture(const SliderBarParts &parts, const QColor &color, double radius,
                                       qreal pixelRatio)
{
    const Look look{parts.outline.size(), parts.hasZeroLine ? parts.zeroX : -1, color, radius, pixelRatio};
    if (look == m_look)
        return m_picture;

    m_look = look;
    m_picture = QPixmap((parts.outline.size() * pixelRatio).toSize());
    m_picture.setDevicePixelRatio(pixelRatio);
    m_picture.fill(Qt::transparent);
    QPainter painter(&m_picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(color);
    painter.setBrush(Qt::NoBrush);
    if (parts.hasZeroLine)
        painter.drawLine(parts.zeroX, 0, parts.zeroX, static_cast<int>(parts.outline.height()));
    painter.drawRoundedRect(parts.outline, radius, radius);
    return m_picture;
}

void drawSliderFill(QPainter &painter, const SliderBarParts &parts, const QPalette &palette, double radius)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.color(QPalette::Active, QPalette::Highlight));
    painter.drawRoundedRect(parts.fill, radius, radius);
}

void drawSliderCaption(QPainter &painter, const SliderBarParts &parts, const QPalette &palette, const QString &caption)
{
    const int pixelSize = static_cast<int>(parts.caption.height());
    if (pixelSize <= 0)
        return;
    QFont font = painter.font();
    font.setPixelSize(pixelSize);
    painter.setFont(font);

    // A line of text is higher than its font's pixel size: sideways the text ends with its box, but no
    // letter loses its tail.
    constexpr int Flags = Qt::AlignCenter | Qt::TextDontClip;
    QRectF column = parts.outline;
    column.setLeft(parts.caption.left());
    column.setRight(parts.caption.right());
    painter.setClipRect(column.toAlignedRect());
    painter.setPen(palette.color(QPalette::Active, QPalette::Text));
    painter.drawText(parts.caption, Flags, caption);

    const QRect filled = fillPixels(parts.fill) & column.toAlignedRect();
    if (filled.isEmpty())
        return;
    painter.setClipRect(filled);
    painter.setPen(palette.color(QPalette::Active, QPalette::HighlightedText));
    painter.drawText(parts.caption, Flags, caption);
}
