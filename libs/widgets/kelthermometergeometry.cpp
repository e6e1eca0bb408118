#include "kelthermometergeometry.h"

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace
{

// The bulb takes less of a slim thermometer's width the longer it is.
constexpr float WidestBulb = 2.0F;
constexpr float NarrowestBulb = 7.0F;
constexpr float RadiiBesideScale = 2.5F;

constexpr float HighlightOffset = 1.5F;

// Room for the outline's pen.
constexpr float Margin = 3.0F;

constexpr int ColdHue = 200;
constexpr int WarmHue = 20;

constexpr double LargestStep = 1e307;
constexpr double LargestWholeNumber = 1e15; // Shown with all its digits.
constexpr double FarAway = 1e6;             // In pixels; nobody sees what is there.

double toDouble(float number)
{
    return static_cast<double>(number);
}

int truncated(float number)
{
    return static_cast<int>(number);
}

/// The distance of the bounds; halved, which never overflows.
double halfRange(const ThermometerBounds &bounds)
{
    return bounds.top / 2.0 - bounds.bottom / 2.0;
}

bool isMultiple(double number, double step)
{
    return std::fmod(number, step) == 0.0;
}

/// The smallest step 10, 20, 50, 100, ... that is \a pixels long.
double labelStep(double pixelsPerNumber, int pixels)
{
    constexpr double Factors[] = {2.0, 2.5, 2.0};
    double step = 10.0;
    for (int i = 0; step * pixelsPerNumber < pixels && step < LargestStep; ++i)
        step *= Factors[i % 3];
    return step;
}

/// Which numbers have lines and which have labels.
struct ScaleSteps {
    double tick = 1.0;
    double label = 10.0;
};

ScaleSteps chooseSteps(double pixelsPerNumber, int labelHeight)
{
    if (!(pixelsPerNumber < 1.0))
        return {};
    const double label = labelStep(pixelsPerNumber, std::max(1, labelHeight));
    for (const double tick : {5.0, 10.0}) {
        if (tick * pixelsPerNumber >= 1.0)
            return {tick, label};
    }
    return {label, label};
}

QString labelText(double number)
{
    if (std::abs(number) <= LargestWholeNumber)
        return QString::number(static_cast<qlonglong>(number));
    return QString::number(number);
}

} // namespace

ThermometerGeometry layoutThermometer(const QSize &size)
{
    ThermometerGeometry geometry;
    if (size.isEmpty())
        return geometry;
    geometry.width = static_cast<float>(size.width());
    geometry.height = static_cast<float>(size.height());
    const float parts = qBound(WidestBulb, 7.0F - geometry.height / geometry.width, NarrowestBulb);
    geometry.bulbRadius = std::min(geometry.width, geometry.height) / parts;
    geometry.tubeHalfWidth = geometry.bulbRadius / 2.0F;
    geometry.scaleLength = geometry.height - RadiiBesideScale * geometry.bulbRadius;
    return geometry;
}

QPainterPath thermometerOutline(const ThermometerGeometry &geometry)
{
    const qreal r = toDouble(geometry.bulbRadius);
    const qreal height = toDouble(geometry.height);
    const qreal left = -r / 2.0;

    QPainterPath outline;
    if (geometry.bulbRadius > Margin)
        outline.addEllipse(QPointF(), r - toDouble(Margin), r - toDouble(Margin));
    QPainterPath cap;
    cap.addEllipse(QRectF(left, -height + r + toDouble(Margin), r, r));
    QPainterPath tube;
    tube.addRect(QRectF(QPointF(left, -height + 1.5 * r), QPointF(left + r, toDouble(Margin) - r / 2.0)));
    return outline.united(cap).united(tube);
}

double shareOf(double number, const ThermometerBounds &bounds)
{
    const double range = bounds.top - bounds.bottom;
    const double way = number - bounds.bottom;
    if (range == 0.0)
        return way == 0.0 ? 0.5 : (way < 0.0 ? 0.0 : 1.0);
    if (std::isfinite(range) && std::isfinite(way))
        return way / range;
    return (number / 2.0 - bounds.bottom / 2.0) / halfRange(bounds);
}

float liquidHeight(const ThermometerGeometry &geometry, double share)
{
    if (share >= 1.0)
        return geometry.scaleLength;
    return share >= 0.0 ? static_cast<float>(share) * geometry.scaleLength : 0.0F;
}

QRect liquidArea(const ThermometerGeometry &geometry, float liquidHeight)
{
    const int height = truncated(2.0F * geometry.bulbRadius + liquidHeight);
    return {truncated(-geometry.bulbRadius), truncated(geometry.bulbRadius) - height,
            truncated(2.0F * geometry.bulbRadius), height};
}

QRect emptyArea(const ThermometerGeometry &geometry, const QRect &liquid)
{
    const int height = truncated(geometry.height);
    return {liquid.left(), liquid.top() - height, liquid.width(), height};
}

QPointF liquidHighlight(const ThermometerGeometry &geometry)
{
    const double offset = toDouble(geometry.tubeHalfWidth / HighlightOffset);
    return {-offset, offset};
}

double numberAt(const ThermometerGeometry &geometry, const ThermometerBounds &bounds, int y)
{
    const double down = (y - toDouble(geometry.bulbRadius) / 2.0) / toDouble(geometry.scaleLength);
    const double share = toDouble(static_cast<float>(1.0 - down));
    const double range = bounds.top - bounds.bottom;
    if (std::isfinite(range))
        return share * range + bounds.bottom;
    return 2.0 * (share * halfRange(bounds) + bounds.bottom / 2.0);
}

QColor liquidColor(double share)
{
    const bool isCold = share < 0.5;
    const double distance = 1.0 - 2.0 * qBound(0.0, share, 1.0);
    const double x = (isCold ? std::sqrt(distance) : distance) / 2.0; // cold fades in a curve, warmth evenly
    const double s = std::sin((x + 0.5) * M_PI);
    return QColor::fromHsv(isCold ? ColdHue : WarmHue, static_cast<int>((1.0 - s * s) * 255.0),
                           static_cast<int>((1.0 - s / 2.0) * 255.0));
}

QVector<ThermometerTick> thermometerTicks(const ThermometerGeometry &geometry, const ThermometerBounds &bounds,
                                          int labelHeight)
{
    const double length = toDouble(geometry.scaleLength);
    const double pixelsPerNumber = length / 2.0 / std::abs(halfRange(bounds));
    const ScaleSteps steps = chooseSteps(pixelsPerNumber, labelHeight);
    const double first = std::ceil(std::trunc(bounds.bottom) / steps.tick);
    const double last = std::floor(std::trunc(bounds.top) / steps.tick);

    // Where numbers are so large that they have gaps, steps of one lead nowhere: the pixels end them.
    const double count = std::min(last - first, length + 1.0) + 1.0;
    QVector<ThermometerTick> ticks;
    for (int i = 0; i < count; ++i) {
        const double number = (first + i) * steps.tick;
        const double y = -shareOf(number, bounds) * length;
        ThermometerTick tick;
        tick.y = qBound(-FarAway, y, FarAway);
        if (steps.tick >= 10.0 || isMultiple(number, 10.0)) { // very large numbers are multiples only roughly
            tick.length = ThermometerTick::Length::Long;
            if (isMultiple(first + i, steps.label / steps.tick))
                tick.label = labelText(number);
        } else if (isMultiple(number, 5.0)) {
            tick.length = ThermometerTick::Length::Medium;
        }
        ticks << tick;
    }
    return ticks;
}
