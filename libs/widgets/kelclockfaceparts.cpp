#include "kelclockfaceparts.h"

#include "sharedlooks.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace
{

constexpr qreal RadiusPerPen = 80.0;
constexpr qreal RadiusPerFontPixel = 5.7;
constexpr qreal FaceToRings = 1.1; // The outermost ring keeps this distance from the rim.

constexpr qreal CircleShare = 0.2; // Of the numbers' side, between a ring and the line around it.
constexpr qreal WidthShare = 1.4;
constexpr qreal RingsPerHighlight = 7.0;

constexpr qreal Anywhere = 1e6; // Of ink that may be far from its number; further than any face.

constexpr qreal FaintOpacity = 0.5;
constexpr QColor HighlightColor(128, 128, 255);

// Lines and numbers are black on every palette. Below this contrast, which is the least for signs that
// must be made out, the window is too dark for them.
constexpr qreal LeastContrast = 3.0;

constexpr qreal Turn = 2.0 * static_cast<qreal>(ClockPi);
constexpr int MinutesPerTurn = 60;

qreal smallerSide(const QSize &size)
{
    return std::min(size.width(), size.height());
}

/// As the eye sees it, 0 for black to 1 for white.
qreal luminance(const QColor &color)
{
    const auto linear = [](qreal part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

qreal contrastToBlack(const QColor &color)
{
    constexpr qreal Flare = 0.05;
    return (luminance(color) + Flare) / Flare;
}

QPointF atAngle(qreal radius, qreal angle)
{
    return {radius * std::sin(angle), -radius * std::cos(angle)};
}

QPen line(qreal width, Qt::PenCapStyle cap)
{
    return {Qt::black, width, Qt::SolidLine, cap, Qt::BevelJoin};
}

/// How much room the numbers of a ring need.
struct NumberRoom {
    int side = 0; ///< Of a square that holds every number.
    qreal inkReach = 0.0;
};

/// A ring in a font; rings that agree in both need the same room.
struct RingInFont {
    ClockRing ring;
    QFont font;

    bool operator==(const RingInFont &other) const { return ring == other.ring && font == other.font; }
};

uint qHash(const RingInFont &numbers, uint seed)
{
    return ::qHash(numbers.font.pixelSize(), seed);
}

/// How far the ink of \a text, which has the bounds \a ink, is from the middle of a square that it is centred in.
qreal inkReach(const QString &text, const QRect &ink, const QFontMetrics &metrics)
{
    qreal advance = 0.0;
    for (const QChar digit : text)
        advance += metrics.horizontalAdvance(digit);
    const qreal baseline = (metrics.ascent() - metrics.descent()) / 2.0;
    return std::max({std::abs(ink.left() - advance / 2.0), std::abs(ink.right() + 1 - advance / 2.0),
                     std::abs(ink.top() + baseline), std::abs(ink.bottom() + 1 + baseline)});
}

/// Whether the ink of a number in \a font is its digits, as their widths place them.
bool isPlain(const QFont &font)
{
    return !font.underline() && !font.overline() && !font.strikeOut() && font.letterSpacing() == 0.0;
}

NumberRoom measure(const ClockRing &ring, const QFont &font)
{
    const QFontMetrics metrics(font);
    NumberRoom room;
    for (const ClockNumber &number : ring) {
        const QRect bounds = metrics.boundingRect(number.second);
        room.side = std::max({room.side, bounds.width() + 1, bounds.height() + 1});
        room.inkReach = std::max(room.inkReach, inkReach(number.second, bounds, metrics));
    }
    // The usual weight may lie a little otherwise than the heavy one, and glyphs stand on whole pixels.
    room.inkReach += std::max(2.0, font.pixelSize() / 8.0);
    if (!isPlain(font))
        room.inkReach = Anywhere;
    return room;
}

NumberRoom roomFor(const ClockRing &ring, const QFont &font)
{
    const RingInFont numbers{ring, font};
    if (const NumberRoom *known = SharedLooks<RingInFont, NumberRoom>::find(numbers))
        return *known;
    const NumberRoom room = measure(ring, font);
    SharedLooks<RingInFont, NumberRoom>::keep(numbers, room, 1);
    return room;
}

QRectF squareAround(const QPointF &place, qreal reach)
{
    return {place.x() - reach, place.y() - reach, 2.0 * reach, 2.0 * reach};
}

bool isHighlighted(const ClockNumber &number, const QString &selected)
{
    return !selected.isEmpty() && number.second.toInt() == selected.toInt();
}

void drawPlate(QPainter &painter, qreal radius, const QColor &color)
{
    if (radius <= 0.0 || !color.isValid())
        return;
    painter.setOpacity(1.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(QPointF(), radius, radius);
}

void drawCircle(QPainter &painter, qreal radius, qreal penWidth, qreal opacity)
{
    if (radius <= 0.0)
        return;
    painter.setOpacity(opacity);
    painter.setPen(line(penWidth, Qt::SquareCap));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(), radius, radius);
}

void drawHighlight(QPainter &painter, const QPointF &place, qreal radius)
{
    if (radius <= 0.0)
        return;
    painter.setOpacity(FaintOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(HighlightColor);
    painter.drawEllipse(place, radius, radius);
}

void drawNumber(QPainter &painter, const QPointF &place, int side, const QString &text)
{
    const qreal reach = side / 2.0 + 1.0;
    painter.setOpacity(1.0);
    painter.setPen(Qt::black);
    const QRectF square(place.x() + 1.0 - reach, place.y() + 1.0 - reach, side, side);
    painter.drawText(square, Qt::AlignCenter | Qt::TextDontClip, text);
}

void drawNumbers(QPainter &painter, const ClockFaceParts &parts, const ClockRingParts &where, const ClockRing &ring,
                 const QString &selected, const QRectF &area)
{
    QFont usual = parts.font;
    usual.setWeight(QFont::Normal);
    QFont heavy = parts.font;
    heavy.setWeight(QFont::Bold);
    for (const ClockNumber &number : ring) {
        const QPointF place = atAngle(where.textRadius, number.first);
        if (!squareAround(place, where.inkReach).intersects(area))
            continue;
        const bool isSelected = isHighlighted(number, selected);
        painter.setFont(isSelected ? heavy : usual);
        if (isSelected)
            drawHighlight(painter, place, parts.radius / RingsPerHighlight);
        drawNumber(painter, place, where.textSide, number.second);
    }
}

/// The number of \a ring in whose sector \a angle lies; a number stands in the middle of its sector.
QString numberAtAngle(const ClockRing &ring, qreal angle)
{
    const qreal sector = Turn / ring.size();
    const qreal shifted = angle + sector / 2.0;
    const auto isIn = [sector](qreal from, qreal what) { return from <= what && what <= from + sector; };
    for (const ClockNumber &number : ring) {
        const qreal from = number.first;
        // The last sector goes on past 12 o'clock.
        if (isIn(from, shifted) || (from + sector > Turn && isIn(from, shifted + Turn)))
            return number.second;
    }
    return {};
}

} // namespace

ClockFaceParts layoutClockFace(const QSize &size, const QFont &font, const QVector<ClockRing> &rings)
{
    const qreal half = smallerSide(size) / 2.0;
    ClockFaceParts parts;
    parts.center = QPointF(size.width() / 2.0, size.height() / 2.0);
    parts.penWidth = std::max(half / RadiusPerPen, 1.0);
    parts.rimRadius = half - parts.penWidth - 1.0;
    parts.radius = (half - parts.penWidth) / FaceToRings;
    parts.font = font;
    parts.font.setPixelSize(std::max(1, static_cast<int>((half - parts.penWidth) / RadiusPerFontPixel)));

    // One measure for all rings, of the heaviest font: a ring does not move when a number is picked.
    qreal offset = 0.0;
    for (const ClockRing &ring : rings) {
        const NumberRoom room = roomFor(ring, parts.font);
        const int side = room.side;
        const qreal width = WidthShare * side;
        parts.rings.append({parts.radius - offset + CircleShare * side, parts.radius - (side / 2.0 + 1.0) - offset,
                            side, room.inkReach, static_cast<float>(width)});
        offset += width;
    }
    return parts;
}

QRect clockFaceArea(const ClockFaceParts &parts, const QSize &size)
{
    qreal reach = smallerSide(size) / 2.0;
    for (const ClockRingParts &ring : parts.rings)
        reach = std::max({reach, ring.circleRadius + parts.penWidth, ring.textRadius + ring.textSide + 1.0});
    const QPointF corner(reach, reach);
    return QRectF(parts.center - corner, parts.center + corner).toAlignedRect() & QRect(QPoint(), size);
}

QRect clockHandsArea(const ClockFaceParts &parts, const QVector<KelClock::Arrow> &hands)
{
    qreal reach = 0.0;
    for (const KelClock::Arrow &hand : hands)
        reach = std::max(reach, parts.radius * static_cast<qreal>(hand.length + hand.width));
    const QPointF corner(reach + 1.0, reach + 1.0);
    return QRectF(parts.center - corner, parts.center + corner).toAlignedRect();
}

QColor clockPlateColor(const QPalette &palette)
{
    const qreal window = contrastToBlack(palette.color(QPalette::Window));
    const QColor &text = palette.color(QPalette::WindowText);
    return window < LeastContrast && contrastToBlack(text) > window ? text : QColor();
}

QRectF clockHighlightArea(const ClockFaceParts &parts, const QVector<ClockRing> &rings, const QString &selected)
{
    QRectF area;
    for (int i = 0; i < rings.size(); ++i) {
        const ClockRingParts &where = parts.rings.at(i);
        for (const ClockNumber &number : rings.at(i)) {
            if (!isHighlighted(number, selected))
                continue;
            const qreal reach = std::max(where.inkReach, parts.radius / RingsPerHighlight + 1.0);
            area |= squareAround(atAngle(where.textRadius, number.first), reach);
        }
    }
    return area.translated(parts.center);
}

void drawClockFace(QPainter &painter, const ClockFaceParts &parts, const QVector<ClockRing> &rings,
                   const QString &selected, const QColor &plate, const QRectF &area)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(parts.center);
    drawPlate(painter, parts.rimRadius, plate);
    drawCircle(painter, parts.rimRadius, parts.penWidth, 1.0);
    for (int i = 0; i < rings.size(); ++i) {
        drawCircle(painter, parts.rings.at(i).circleRadius, parts.penWidth / 2.0, FaintOpacity);
        drawNumbers(painter, parts, parts.rings.at(i), rings.at(i), selected, area.translated(-parts.center));
    }
    painter.restore();
}

void drawClockHands(QPainter &painter, const ClockFaceParts &parts, const QVector<KelClock::Arrow> &hands)
{
    if (parts.radius <= 0.0)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(parts.center);
    for (const KelClock::Arrow &hand : hands) {
        painter.setOpacity(static_cast<qreal>(hand.opacity));
        painter.setPen(line(parts.radius * static_cast<qreal>(hand.width), Qt::RoundCap));
        const qreal length = parts.radius * static_cast<qreal>(hand.length);
        painter.drawLine(QPointF(), atAngle(length, static_cast<qreal>(hand.currentAngle)));
    }
    painter.restore();
}

ClockPointer clockPointer(const QPoint &position, const QSize &size)
{
    const qreal dx = position.x() - size.width() / 2.0;
    const qreal dy = position.y() - size.height() / 2.0;
    return {std::hypot(dx, dy), std::atan2(0.0 - dx, dy) + static_cast<qreal>(ClockPi)};
}

QString clockNumberAt(const ClockPointer &pointer, const QSize &size, const QVector<ClockRing> &rings,
                      const QVector<float> &ringWidths)
{
    // The pen's width is left out here: a finger may hit a little outside of what is painted.
    qreal outer = smallerSide(size) / 2.0 / FaceToRings;
    for (int i = 0; i < rings.size(); ++i) {
        const qreal inner = outer - static_cast<qreal>(ringWidths.at(i));
        if (inner <= pointer.distance && pointer.distance <= outer)
            return numberAtAngle(rings.at(i), pointer.angle);
        outer = inner;
    }
    return {};
}

int clockMinuteAt(const ClockPointer &pointer)
{
    return qRound(pointer.angle / Turn * MinutesPerTurn);
}
