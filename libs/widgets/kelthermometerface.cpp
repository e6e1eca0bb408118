#include "kelthermometerface.h"

#include "sharedlooks.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace
{

constexpr float HalfWidthsPerPen = 25.0F;
constexpr float SmallestBulb = 5.0F; // In pixels; below it nothing is worth keeping.
constexpr int RowsBelowZero = 2;     // Liquid never ends lower, for all rounding.

qreal toReal(float number)
{
    return static_cast<qreal>(number);
}

bool isWhole(qreal pixelRatio)
{
    return pixelRatio == std::floor(pixelRatio);
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

// The steps of the picture, from the back to the front. The painter's origin is the bulb's centre.

void drawLiquid(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline, const QRect &area,
                const QColor &color)
{
    QRadialGradient gradient(QPointF(), toReal(geometry.bulbRadius), liquidHighlight(geometry));
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
    const int y = static_cast<int>(tick.y);
    painter.setPen(blackPen(penWidth(geometry) / toReal(thinness)));
    painter.drawLine(static_cast<int>(-h), y, static_cast<int>(-h / reach), y);
}

void drawScale(QPainter &painter, const ThermometerGeometry &geometry, const ThermometerBounds &bounds)
{
    // Without a pixel there are no digits.
    const int pixelSize = labelPixelSize(geometry);
    QFont labelFont;
    if (pixelSize > 0)
        labelFont.setPixelSize(pixelSize);
    const int digitHeight = pixelSize > 0 ? QFontMetrics(labelFont).boundingRect(QStringLiteral("0")).height() : 0;

    painter.translate(0.0, -toReal(geometry.bulbRadius));
    painter.setFont(labelFont);
    for (const ThermometerTick &tick : thermometerTicks(geometry, bounds, digitHeight)) {
        drawTick(painter, geometry, tick);
        if (pixelSize > 0 && !tick.label.isEmpty())
            painter.drawText(0, static_cast<int>(tick.y + digitHeight / 4.0), tick.label);
    }
    painter.translate(0.0, toReal(geometry.bulbRadius));
}

void drawOutline(QPainter &painter, const ThermometerGeometry &geometry, const QPainterPath &outline)
{
    painter.strokePath(outline, blackPen(penWidth(geometry)));
}

/// What \a draw paints on a transparent sheet of the widget's size.
template <typename Draw>
QImage sheetOf(const ThermometerGeometry &geometry, qreal pixelRatio, const Draw &draw)
{
    const QSizeF size(toReal(geometry.width), toReal(geometry.height));
    QImage sheet((size * pixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    sheet.setDevicePixelRatio(pixelRatio);
    sheet.fill(Qt::transparent);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(geometry.origin());
    draw(painter);
    return sheet;
}

} // namespace

uint qHash(const ThermometerFace::LabelledLook &labelled, uint seed)
{
    return ::qHash(labelled.look.size.width(), seed);
}

bool ThermometerFace::Look::operator==(const Look &other) const
{
    return size == other.size && bounds == other.bounds && pixelRatio == other.pixelRatio;
}

void ThermometerFace::paint(QPainter &painter, const ThermometerGeometry &geometry, const ThermometerState &state,
                            qreal pixelRatio)
{
    const QSizeF size(toReal(geometry.width), toReal(geometry.height));
    refresh(geometry, {size, state.bounds, pixelRatio});

    if (!geometry.hasScale()) {
        m_parts.lines.draw(painter);
        return;
    }
    const QRect liquid = liquidArea(geometry, liquidHeight(geometry, shareOf(state.level, state.bounds)));
    if (canPaintApart(geometry, liquid))
        paintApart(painter, geometry, liquid, state.liquidColor);
    else
        paintWhole(painter, geometry, liquid, state.liquidColor);
}

void ThermometerFace::paintApart(QPainter &painter, const ThermometerGeometry &geometry, const QRect &liquid,
                                 const QColor &color)
{
    const QPointF corner = -geometry.origin();
    // Labels may be wider than the liquid's area; the liquid itself is narrower.
    const int aside = qCeil(toReal(geometry.width));
    painter.save();
    painter.translate(geometry.origin());
    painter.setClipRect(liquid.adjusted(-aside, 0, aside, 0));
    m_parts.column.draw(painter, corner, color);
    m_parts.bulb.draw(painter, corner, color);
    m_parts.tubeLines.draw(painter, corner);
    painter.setClipRect(emptyArea(geometry, liquid).adjusted(-aside, 0, aside, 0));
    m_parts.emptyTube.draw(painter, corner);
    painter.restore();
    m_parts.lines.draw(painter);
}

void ThermometerFace::paintWhole(QPainter &painter, const ThermometerGeometry &geometry, const QRect &liquid,
                                 const QColor &color) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(geometry.origin());
    drawLiquid(painter, geometry, m_parts.outline, liquid, color);
    painter.setClipRect(emptyArea(geometry, liquid));
    m_parts.glass.draw(painter, -geometry.origin());
    painter.restore();
    m_parts.tubeLines.draw(painter);
    m_parts.lines.draw(painter);
}

void ThermometerFace::drop()
{
    m_look = Look();
}

void ThermometerFace::refresh(const ThermometerGeometry &geometry, const Look &look)
{
    if (look == m_look)
        return;
    m_look = look;
    const LabelledLook labelled{look, QFont()};
    if (const Parts *known = SharedLooks<LabelledLook, Parts>::find(labelled)) {
        m_parts = *known;
        return;
    }
    m_parts = makeParts(geometry, look);
    SharedLooks<LabelledLook, Parts>::keep(labelled, m_parts, m_parts.sizeInKibibytes());
}

ThermometerFace::Parts ThermometerFace::makeParts(const ThermometerGeometry &geometry, const Look &look)
{
    Parts parts;
    parts.outline = thermometerOutline(geometry);
    const QPainterPath &outline = parts.outline;
    const qreal ratio = look.pixelRatio;
    const auto drawLines = [&](QPainter &sheet) {
        if (geometry.hasScale())
            drawScale(sheet, geometry, look.bounds);
        drawOutline(sheet, geometry, outline);
    };
    const QImage lines = sheetOf(geometry, ratio, drawLines);
    if (!geometry.hasScale() || !isWhole(ratio))
        parts.lines = InkedPicture(lines);
    if (!geometry.hasScale())
        return parts;
    QImage tube = sheetOf(geometry, ratio, [&](QPainter &sheet) { drawGlass(sheet, geometry, outline); });
    parts.glass = InkedPicture(tube);
    if (!isWhole(ratio))
        return parts;

    const int scale = static_cast<int>(ratio);
    const int split = qCeil(geometry.origin().y() - toReal(geometry.bulbRadius)) + RowsBelowZero;
    const QRect upper(0, 0, lines.width(), split * scale);
    parts.tubeLines = InkedPicture(lines, upper);
    parts.lines = InkedPicture(lines, lines.rect().adjusted(0, upper.height(), 0, 0));
    QPainter(&tube).drawImage(0, 0, lines);
    parts.emptyTube = InkedPicture(tube, upper);

    const QImage figure = sheetOf(geometry, ratio, [&](QPainter &sheet) { sheet.fillPath(outline, Qt::black); });
    parts.bulb = ThermometerBulb(geometry, figure, scale);
    parts.column = ThermometerColumn(figure, parts.bulb.top(), scale);
    return parts;
}

int ThermometerFace::Parts::sizeInKibibytes() const
{
    int bytes = bulb.sizeInBytes();
    for (const InkedPicture *picture : {&glass, &tubeLines, &lines, &emptyTube})
        bytes += picture->sizeInBytes();
    return 1 + bytes / 1024;
}

/// Whether bulb and column give the same picture as the whole liquid: where pixels are whole, where the
/// bulb has a size, and while the column does not reach into the tube's round end.
bool ThermometerFace::canPaintApart(const ThermometerGeometry &geometry, const QRect &liquid) const
{
    const float tubeTop = -geometry.bulbRadius - geometry.scaleLength;
    return isWhole(m_look.pixelRatio) && geometry.bulbRadius >= SmallestBulb &&
           static_cast<float>(liquid.top()) > tubeTop + 1.0F;
}
