#include "kelthermometerface.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

#include <algorithm>

namespace
{

constexpr float HalfWidthsPerPen = 25.0F;
constexpr float HighlightOffset = 1.5F;

qreal toReal(float number)
{
    return static_cast<qreal>(number);
}

qreal penWidth(const ThermometerGeometry &geometry)
{
    return toReal(std::max(geometry.tubeHalfWidth / HalfWidthsPerPen, 1.0F));
}

QPen blackPen(qreal width)
{
    return {Qt::black, width, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin};
}

int labelPixelSize(const ThermometerGeometry &geometry)
{
    return static_cast<int>(std::min(geometry.tubeHalfWidth / 2.0F, geometry.scaleLength / 4.0F));
}

void drawTick(QPainter &painter, const ThermometerGeometry &geometry, const ThermometerTick &tick)
{
    float thinness = 2.0F;
    float reach = 1.25F;
    if (tick.length == ThermometerTick::Length::Long) {
        thinness = 1.0F;
        reach = 4.0F;
    } else if (tick.length == ThermometerTick::Length::Medium) {
        thinness = 1.5F;
        reach = 2.0F;
    }
    const float h = geometry.tubeHalfWidth;
    painter.setPen(blackPen(penWidth(geometry) / toReal(thinness)));
    painter.drawLine(static_cast<int>(-h), tick.y, static_cast<int>(-h / reach), tick.y);
}

} // namespace

bool ThermometerFace::Look::operator==(const Look &other) const
{
    return size == other.size && bounds == other.bounds && pixelRatio == other.pixelRatio && font == other.font;
}

void ThermometerFace::drop()
{
    m_look = Look();
}

void ThermometerFace::paint(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline,
                            const ThermometerState &state, qreal pixelRatio)
{
    const QSizeF size(toReal(geometry.width), toReal(geometry.height));
    refresh(geometry, outline, {size, state.bounds, QFont(), pixelRatio});

    painter.setRenderHint(QPainter::Antialiasing);
    if (geometry.hasScale()) {
        const float height = liquidHeight(geometry, shareOf(state.level, state.bounds));
        const QRect liquid = liquidArea(geometry, height);
        painter.save();
        painter.translate(geometry.origin());
        drawLiquid(painter, geometry, outline, liquid, state.liquidColor);
        painter.setClipRect(emptyArea(geometry, liquid));
        painter.translate(-geometry.origin());
        painter.drawPixmap(0, 0, m_glass);
        painter.restore();
        painter.drawPixmap(0, 0, m_scale);
    }
    painter.drawPixmap(0, 0, m_outline);
}

void ThermometerFace::refresh(const ThermometerGeometry &geometry, const QPainterPath &outline, const Look &look)
{
    if (look == m_look)
        return;
    m_look = look;
    const auto layer = [&geometry, &look](const auto &draw) {
        QPixmap picture((look.size * look.pixelRatio).toSize());
        picture.setDevicePixelRatio(look.pixelRatio);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(geometry.origin());
        draw(painter);
        return picture;
    };
    m_glass = layer([&](QPainter &painter) { drawGlass(painter, geometry, outline); });
    m_scale = layer([&](QPainter &painter) { drawScale(painter, geometry, look.bounds, look.font); });
    m_outline = layer([&](QPainter &painter) { drawOutline(painter, geometry, outline); });
}

void drawLiquid(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline, const QRect &area,
                const QColor &color)
{
    const qreal focus = toReal(geometry.tubeHalfWidth / HighlightOffset);
    QRadialGradient gradient(QPointF(), toReal(geometry.bulbRadius), QPointF(-focus, focus));
    gradient.setColorAt(0.0, Qt::white);
    gradient.setColorAt(1.0, color);
    painter.setClipRect(area);
    painter.fillPath(outline, gradient);
}

void drawGlass(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline)
{
    const qreal h = toReal(geometry.tubeHalfWidth);
    QLinearGradient gradient(-h, 0.0, h, 0.0);
    gradient.setColorAt(0.0, Qt::white);
    gradient.setColorAt(1.0, Qt::transparent);
    painter.fillPath(outline, gradient);
}

void drawScale(QPainter &painter, const ThermometerGeometry &geometry, const ThermometerBounds &bounds,
               const QFont &font)
{
    // Without a pixel there are no digits.
    const int pixelSize = labelPixelSize(geometry);
    QFont labelFont(font);
    if (pixelSize > 0)
        labelFont.setPixelSize(pixelSize);
    const int digitHeight = pixelSize > 0 ? QFontMetrics(labelFont).boundingRect(QStringLiteral("0")).height() : 0;

    painter.save();
    painter.translate(0.0, -toReal(geometry.bulbRadius));
    painter.setFont(labelFont);
    for (const ThermometerTick &tick : thermometerTicks(geometry, bounds, digitHeight)) {
        drawTick(painter, geometry, tick);
        if (pixelSize > 0 && !tick.label.isEmpty())
            painter.drawText(0, static_cast<int>(tick.y + digitHeight / 4.0), tick.label);
    }
    painter.restore();
}

void drawOutline(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline)
{
    painter.strokePath(outline, blackPen(penWidth(geometry)));
}
