#include "graphiccursor.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double RingRadius = 4.0; ///< In pixels.
constexpr double RingWidth = 2.0;
constexpr double Distance = 12.0; ///< From the pointer to the box, so that neither hides the other.
constexpr double Padding = 0.4;   ///< Inside the box, in heights of the font.
constexpr double Gap = 0.8;       ///< Between name and value.
constexpr double Sample = 0.8;    ///< Width of a curve's colour.
constexpr int BoxAlpha = 235;

struct BoxColumns {
    double name = 0.0;
    double value = 0.0;
};

BoxColumns columnsOf(const QVector<GraphicReading> &readings, const QFontMetricsF &metrics)
{
    BoxColumns columns;
    for (const GraphicReading &reading : readings) {
        columns.name = std::max(columns.name, metrics.horizontalAdvance(reading.name));
        columns.value = std::max(columns.value, metrics.horizontalAdvance(reading.value));
    }
    return columns;
}

void drawFrame(QPainter &painter, const QRectF &box, const QPalette &palette)
{
    QColor background = palette.color(QPalette::Window);
    background.setAlpha(BoxAlpha);
    QColor border = palette.color(QPalette::WindowText);
    border.setAlphaF(0.4);
    painter.setPen(border);
    painter.setBrush(background);
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), 3.0, 3.0);
}

void drawRows(QPainter &painter, const QRectF &box, const QString &heading, const QVector<GraphicReading> &readings,
              const QPalette &palette)
{
    const double unit = QFontMetricsF(painter.font()).height();
    QRectF row(box.left() + unit * Padding, box.top() + unit * Padding, box.width() - 2.0 * unit * Padding, unit);
    painter.setPen(palette.color(QPalette::WindowText));
    painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, heading);
    for (const GraphicReading &reading : readings) {
        row.translate(0.0, unit);
        painter.fillRect(QRectF(row.left(), row.center().y() - 1.5, unit * Sample, 3.0), reading.color);
        painter.setPen(palette.color(QPalette::WindowText));
        painter.drawText(row.adjusted(unit * (Sample + Padding), 0.0, 0.0, 0.0),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, reading.name);
        painter.drawText(row, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, reading.value);
    }
}

} // namespace

QRectF boxBeside(const QPointF &pointer, const QSizeF &size, const QRectF &area, double distance)
{
    QRectF box(pointer + QPointF(distance, distance), size);
    if (box.right() > area.right())
        box.moveRight(pointer.x() - distance);
    if (box.bottom() > area.bottom())
        box.moveBottom(pointer.y() - distance);
    box.moveLeft(std::max(area.left(), box.left()));
    box.moveTop(std::max(area.top(), box.top()));
    return box;
}

void drawCursor(QPainter &painter, const QRectF &area, const QPointF &pointer, const QString &heading,
                const QVector<GraphicReading> &readings, const QPalette &palette)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor line = palette.color(QPalette::Text);
    line.setAlphaF(0.6);
    painter.setPen(QPen(line, 1.0, Qt::DashLine));
    const double x = std::floor(pointer.x()) + 0.5;
    painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));

    for (const GraphicReading &reading : readings) {
        painter.setPen(QPen(reading.color, RingWidth));
        painter.setBrush(palette.color(QPalette::Base));
        painter.drawEllipse(reading.place, RingRadius, RingRadius);
    }

    const QFontMetricsF metrics(painter.font());
    const double unit = metrics.height();
    const BoxColumns columns = columnsOf(readings, metrics);
    const double rowWidth = columns.name + columns.value + unit * (Sample + Padding + Gap);
    const double width = std::max(metrics.horizontalAdvance(heading) + 1.0, readings.isEmpty() ? 0.0 : rowWidth);
    const QSizeF size(width + 2.0 * unit * Padding, unit * (readings.size() + 1 + 2.0 * Padding));
    const QRectF box = boxBeside(pointer, size, area, Distance);
    drawFrame(painter, box, palette);
    drawRows(painter, box, heading, readings, palette);
    painter.restore();
}
