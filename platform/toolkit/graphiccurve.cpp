#include "graphiccurve.h"

#include <QPaintEngine>
#include <QPainter>

namespace
{

constexpr int ExactPoints = 2;       ///< A run of so many is drawn point by point.
constexpr int BarsAtOnce = 4096;     ///< Curves that go back and forth can have bars without end.
constexpr int LinePoints = 512;      ///< A longer line is drawn in pieces, but dashes begin anew with each.
constexpr int WidePoints = 8;        ///< Outlines that cross themselves cost more than many short ones.
constexpr double ThinWidth = 2.0;    ///< Such lines, in pixels, are made of the quick ones with a width of 1
constexpr double CoarseLength = 8.0; ///< where their parts are so long that the joints are not seen.
constexpr double LeastCover = 0.25;  ///< A pen that covers less of a column leaves it alone.
constexpr double LeastShare = 0.02;  ///< Of a pixel; less cannot be seen.
constexpr double PaperColumns = 2.0; ///< Columns per unit of length where there are no pixels.

/// Narrows \a from..\a to (shares of a line) to where start + share * delta is at least \a least.
bool narrow(double start, double delta, double least, double &from, double &to)
{
    if (delta == 0.0)
        return start >= least;
    const double share = (least - start) / delta;
    if (delta > 0.0)
        from = std::max(from, share);
    else
        to = std::min(to, share);
    return from <= to;
}

/// Whether the parts of \a piece are long on average.
bool isCoarse(const QPolygonF &piece)
{
    double length = 0.0;
    for (int i = 1; i < piece.size(); ++i)
        length += (piece.at(i) - piece.at(i - 1)).manhattanLength();
    return length > CoarseLength * (piece.size() - 1);
}

QColor withCoverage(QColor color, double coverage)
{
    color.setAlphaF(color.alphaF() * std::clamp(coverage, 0.0, 1.0));
    return color;
}

/// Whether the painter's coordinates are pixels but for their size and place.
bool hasPixels(const QPainter &painter)
{
    return painter.paintEngine() && painter.paintEngine()->type() == QPaintEngine::Raster &&
           painter.deviceTransform().type() <= QTransform::TxScale && painter.deviceTransform().m11() > 0.0 &&
           painter.deviceTransform().m22() > 0.0;
}

/// Makes the painter's units pixels of its device, its origin a whole one, and returns how the old
/// coordinates come to the new ones.
QTransform toPixels(QPainter &painter)
{
    const QTransform device = painter.deviceTransform();
    const QTransform whole = QTransform::fromTranslate(std::round(device.dx()), std::round(device.dy()));
    const QTransform rest = painter.worldTransform().inverted() * device;
    painter.setWorldTransform(whole * rest.inverted());
    return device * whole.inverted();
}

GraphicScale scaledBy(const GraphicScale &scale, double factor, double shift)
{
    return {scale.from, scale.factor * factor, scale.offset * factor + shift};
}

} // namespace

bool clipLine(QPointF &a, QPointF &b, const QRectF &area)
{
    const QPointF delta = b - a;
    double from = 0.0;
    double to = 1.0;
    if (!narrow(a.x(), delta.x(), area.left(), from, to) || !narrow(-a.x(), -delta.x(), -area.right(), from, to) ||
        !narrow(a.y(), delta.y(), area.top(), from, to) || !narrow(-a.y(), -delta.y(), -area.bottom(), from, to))
        return false;
    const QPointF start = a;
    if (from > 0.0)
        a = start + delta * from;
    if (to < 1.0)
        b = start + delta * to;
    return true;
}

GraphicCurvePainter::GraphicCurvePainter(QPainter &painter, const QRectF &area, const GraphicScale &yScale,
                                         const QPen &pen, Medium medium)
    : m_painter(painter)
    , m_area(area)
    , m_yScale(yScale)
    , m_pen(pen)
    , m_medium(medium)
    , m_isThin(medium == Medium::Screen && pen.style() == Qt::SolidLine && pen.widthF() <= ThinWidth &&
               pen.color().alpha() == 255)
    , m_linePoints(medium == Medium::Screen && pen.style() == Qt::SolidLine ? WidePoints : LinePoints)
{
    // A round pen. It reaches into a column when it covers a good part of it.
    const double radius = pen.widthF() / 2.0;
    for (double distance = 0.0; distance == 0.0 || distance <= radius - LeastCover; distance += 1.0)
        m_reach.append(std::sqrt(radius * radius - distance * distance));
}

GraphicCurvePainter::~GraphicCurvePainter()
{
    gap();
    drawBars();
}

void GraphicCurvePainter::setColumns(const GraphicScale &xScale, double columnWidth)
{
    m_xScale = xScale;
    m_columnWidth = columnWidth;
}

void GraphicCurvePainter::run(const GraphicRun &run)
{
    const bool isInside = run.column >= 0 && run.column * m_columnWidth < m_area.width();
    if (run.count <= ExactPoints || !isInside) {
        endBar();
        addToLine(place(run.first));
        if (run.count > 1)
            addToLine(place(run.last));
        return;
    }
    if (m_medium == Medium::Paper)
        addZigzag(run);
    else
        addBar(run);
}

void GraphicCurvePainter::gap()
{
    endBar();
    endLine();
}

QPointF GraphicCurvePainter::place(const GraphicPoint &point) const
{
    return {m_xScale.pixel(point.x), m_yScale.pixel(point.y)};
}

void GraphicCurvePainter::addBar(const GraphicRun &run)
{
    const double low = m_yScale.pixel(run.yMin);
    const double high = m_yScale.pixel(run.yMax);
    Bar bar{run.column, std::min(low, high), std::max(low, high)};

    if (m_isAfterBar && std::abs(m_bars.last().column - run.column) <= 1) {
        // Neighbours meet half way between the points where one ends and the other begins.
        const double meeting = (m_yScale.pixel(m_barEnd.y) + m_yScale.pixel(run.first.y)) / 2.0;
        Bar &before = m_bars.last();
        before.top = std::min(before.top, meeting);
        before.bottom = std::max(before.bottom, meeting);
        bar.top = std::min(bar.top, meeting);
        bar.bottom = std::max(bar.bottom, meeting);
    } else {
        endBar();
        if (!m_line.isEmpty())
            addToLine(place(run.first));
        endLine();
    }

    if (m_bars.size() >= BarsAtOnce)
        drawBars();
    m_bars.append(bar);
    m_isAfterBar = true;
    m_barEnd = run.last;
}

void GraphicCurvePainter::addZigzag(const GraphicRun &run)
{
    const double middle = m_area.left() + (run.column + 0.5) * m_columnWidth;
    const double low = m_yScale.pixel(run.yMin);
    const double high = m_yScale.pixel(run.yMax);
    const double first = m_yScale.pixel(run.first.y);
    const bool isLowFirst = std::abs(first - low) < std::abs(first - high);
    addToLine(place(run.first));
    addToLine({middle, isLowFirst ? low : high});
    addToLine({middle, isLowFirst ? high : low});
    addToLine(place(run.last));
}

/// After a bar a line goes on from the bar's last point.
void GraphicCurvePainter::endBar()
{
    if (!m_isAfterBar)
        return;
    m_isAfterBar = false;
    addToLine(place(m_barEnd));
}

void GraphicCurvePainter::addToLine(const QPointF &point)
{
    m_line.append(point);
    if (m_line.size() < m_linePoints)
        return;
    endLine();
    m_line.append(point);
}

/// Draws the line so far, as much of it as can be seen.
void GraphicCurvePainter::endLine()
{
    const double margin = m_pen.widthF() + 1.0;
    const QRectF visible = m_area.adjusted(-margin, -margin, margin, margin);
    QPolygonF piece;
    if (m_line.size() == 1 && visible.contains(m_line.first()))
        piece.append(m_line.first());
    for (int i = 1; i < m_line.size(); ++i) {
        QPointF a = m_line.at(i - 1);
        QPointF b = m_line.at(i);
        if (!clipLine(a, b, visible))
            continue;
        if (!piece.isEmpty() && piece.last() != a) {
            drawPiece(piece);
            piece.clear();
        }
        if (piece.isEmpty())
            piece.append(a);
        piece.append(b);
    }
    drawPiece(piece);
    m_line.clear();
}

void GraphicCurvePainter::drawPiece(const QPolygonF &piece)
{
    if (piece.isEmpty())
        return;
    m_painter.setRenderHint(QPainter::Antialiasing, true);
    m_painter.setBrush(Qt::NoBrush);
    QPen pen = m_pen;
    if (piece.size() > 1 && m_isThin && isCoarse(piece)) {
        drawThin(piece);
        return;
    }
    if (piece.size() > 1) {
        m_painter.setPen(pen);
        m_painter.drawPolyline(piece);
        return;
    }
    // A point without neighbours would be lost at the width of a line.
    pen.setStyle(Qt::SolidLine);
    pen.setCapStyle(Qt::RoundCap);
    pen.setWidthF(std::max(3.0, 2.0 * m_pen.widthF()));
    m_painter.setPen(pen);
    m_painter.drawPoint(piece.first());
}

/// Draws each part of \a piece as two lines of width 1 beside each other, which overlap to the wanted width.
void GraphicCurvePainter::drawThin(const QPolygonF &piece)
{
    const double apart = m_pen.widthF() - 1.0;
    QVector<QLineF> lines;
    lines.reserve(2 * piece.size());
    for (int i = 1; i < piece.size(); ++i) {
        const QLineF line(piece.at(i - 1), piece.at(i));
        const double length = line.length();
        if (apart <= 0.0 || length == 0.0) {
            lines.append(line);
            continue;
        }
        const QPointF aside = QPointF(-line.dy(), line.dx()) * (apart / 2.0 / length);
        lines.append(line.translated(aside));
        lines.append(line.translated(-aside));
    }
    m_painter.setPen(QPen(m_pen.color(), 1.0));
    m_painter.drawLines(lines);
}

void GraphicCurvePainter::drawBars()
{
    if (m_bars.isEmpty())
        return;
    m_painter.setRenderHint(QPainter::Antialiasing, false);
    int first = 0;
    while (first < m_bars.size()) {
        int end = first + 1;
        const int step = end < m_bars.size() ? m_bars.at(end).column - m_bars.at(first).column : 0;
        while (std::abs(step) == 1 && end < m_bars.size() && m_bars.at(end).column - m_bars.at(end - 1).column == step)
            ++end;
        drawNeighbours(m_bars.constData() + first, end - first, step < 0 ? -1 : 1);
        first = end;
    }
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(m_pen.color());
    m_painter.drawRects(m_fullRects);
    m_fullRects.clear();
    m_bars.clear();
}

/// Draws what the pen covers when it goes along bars whose columns follow each other by \a step, each column
/// once: shares of pixels would add up otherwise.
void GraphicCurvePainter::drawNeighbours(const Bar *bars, int count, int step)
{
    const int reach = m_reach.size() - 1;
    for (int i = -reach; i < count + reach; ++i) {
        double top = m_area.bottom();
        double bottom = m_area.top();
        for (int j = std::max(0, i - reach); j <= std::min(count - 1, i + reach); ++j) {
            const double extra = m_reach.at(std::abs(i - j));
            top = std::min(top, bars[j].top - extra);
            bottom = std::max(bottom, bars[j].bottom + extra);
        }
        top = std::max(top, m_area.top());
        bottom = std::min(bottom, m_area.bottom());
        if (top < bottom)
            drawBar(bars[0].column + step * i, top, bottom);
    }
}

/// Puts the whole pixels from \a top to \a bottom into m_fullRects and draws the shares at both ends.
void GraphicCurvePainter::drawBar(int column, double top, double bottom)
{
    const int x = static_cast<int>(m_area.left()) + column;
    const int firstFull = static_cast<int>(std::ceil(top));
    const int endFull = static_cast<int>(std::floor(bottom));
    if (firstFull > endFull) { // all inside one pixel
        m_painter.fillRect(QRect(x, endFull, 1, 1), withCoverage(m_pen.color(), bottom - top));
        return;
    }
    if (firstFull - top > LeastShare)
        m_painter.fillRect(QRect(x, firstFull - 1, 1, 1), withCoverage(m_pen.color(), firstFull - top));
    if (bottom - endFull > LeastShare)
        m_painter.fillRect(QRect(x, endFull, 1, 1), withCoverage(m_pen.color(), bottom - endFull));
    if (firstFull < endFull)
        m_fullRects.append(QRect(x, firstFull, 1, endFull - firstFull));
}

double curveMargin(const QPen &pen)
{
    // The dot of a lone point, its smooth edge, and the column to which a bar is joined.
    return std::ceil(std::max(3.0, 2.0 * pen.widthF())) + 3.0;
}

void drawSeries(QPainter &painter, const QRectF &area, const GraphicSeries &series, const GraphicScale &xScale,
                const GraphicScale &yScale, const QPen &pen)
{
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    const bool isScreen = hasPixels(painter);
    const QTransform pixels = isScreen ? toPixels(painter) : QTransform();
    const QRectF inPixels = pixels.mapRect(area);
    const QRectF target = isScreen ? QRectF(inPixels.toAlignedRect()) : inPixels;
    QPen scaled = pen;
    scaled.setWidthF(pen.widthF() * pixels.m22());

    const GraphicScale x = scaledBy(xScale, pixels.m11(), pixels.dx());
    const GraphicScale y = scaledBy(yScale, pixels.m22(), pixels.dy());
    {
        GraphicCurvePainter sink(painter, target, y, scaled,
                                 isScreen ? GraphicCurvePainter::Medium::Screen : GraphicCurvePainter::Medium::Paper);
        const double perUnit = isScreen ? 1.0 : PaperColumns;
        sink.setColumns(x, 1.0 / perUnit);
        const GraphicScale columns{x.from, x.factor * perUnit, (x.offset - target.left()) * perUnit};
        GraphicColumns<GraphicCurvePainter>(columns, static_cast<int>(std::ceil(target.width() * perUnit)), sink)
            .read(series);
    }
    painter.restore();
}
