#include "graphicplot.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <graphiccanvas.h>
#include <graphiccolors.h>
#include <graphiccurve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_widget.h>
#include <qwt_text.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double CurvesAbove = 20.0; ///< The grid lies at 10.
constexpr double AxisFontFactor = 0.9;
constexpr int MarkSpaceAlongX = 2; ///< A label and the space to the next, in widths of a label.
constexpr int MarkSpaceAlongY = 3; ///< The same in heights.
constexpr int MostMarks = 10;

GraphicScale scaleOf(const QwtScaleMap &map)
{
    return {map.s1(), map.pDist() / map.sDist() * (map.p2() < map.p1() ? -1.0 : 1.0), map.p1()};
}

} // namespace

GraphicCurveItem::GraphicCurveItem()
{
    setZ(CurvesAbove);
    setItemAttribute(QwtPlotItem::AutoScale, false);
}

void GraphicCurveItem::draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                            const QRectF &canvasRect) const
{
    if (!series)
        return;
    QRectF area = canvasRect;
    if (painter->hasClipping()) {
        const double margin = curveMargin(pen);
        area &= painter->clipBoundingRect().toAlignedRect().adjusted(-qRound(margin), 0, qRound(margin), 0);
    }
    drawSeries(*painter, area, *series, scaleOf(xMap), scaleOf(yMap), pen);
}

void GraphicBackground::draw(QPainter *painter, const QwtScaleMap &, const QwtScaleMap &,
                             const QRectF &canvasRect) const
{
    painter->fillRect(canvasRect, color);
}

GraphicPlot::GraphicPlot(QWidget *parent)
    : QwtPlot(parent)
    , m_canvas(new GraphicCanvas(*this))
    , m_grid(std::make_unique<QwtPlotGrid>())
{
    setCanvas(m_canvas);
    setAutoReplot(false);
    setAutoDelete(false);
    plotLayout()->setAlignCanvasToScales(true);
    plotLayout()->setSpacing(0);
    m_background.attach(this);
    m_grid->attach(this);
    for (const int axis : {xBottom, yLeft}) {
        axisWidget(axis)->setMargin(0);
        setAxisMaxMinor(axis, 2);
    }
    setFonts();
    setColors();
}

GraphicPlot::~GraphicPlot() = default;

void GraphicPlot::setCurvesCount(std::size_t count)
{
    m_curves.resize(std::min(count, m_curves.size()));
    while (m_curves.size() < count) {
        m_curves.push_back(std::make_unique<GraphicCurveItem>());
        m_curves.back()->attach(this);
    }
}

void GraphicPlot::setLabels(Axis axis, const GraphicLabels &labels, const QString &title)
{
    setAxisScaleDraw(axis, newScaleDraw(labels));
    setAxisScaleEngine(axis, newScaleEngine(labels.isTime));
    QwtText text(title, QwtText::PlainText);
    text.setFont(axisFont(axis));
    setAxisTitle(axis, text);
    holdStill();
}

void GraphicPlot::setRange(Axis axis, const GraphicRange &range)
{
    setAxisScale(axis, range.from, range.to);
}

void GraphicPlot::setGrid(bool isVisible)
{
    m_grid->setVisible(isVisible);
}

void GraphicPlot::settle()
{
    updateAxes();
    // Wider labels take their place once; giving it back would shake the picture.
    QwtScaleDraw *draw = axisScaleDraw(yLeft);
    draw->setMinimumExtent(std::max(draw->minimumExtent(), draw->extent(axisFont(yLeft))));
    QCoreApplication::sendPostedEvents(this, QEvent::LayoutRequest);
    m_canvas->invalidate();
}

void GraphicPlot::showNew(double from, double to)
{
    double margin = 0.0;
    for (const auto &curve : m_curves)
        margin = std::max(margin, curveMargin(curve->pen));
    const GraphicScale pixels = scale(xBottom);
    const double left = std::max(pixels.pixel(from) - margin, 0.0);
    const double right = std::min(pixels.pixel(to) + margin, static_cast<double>(m_canvas->width()));
    if (from <= to && left < right)
        m_canvas->invalidate(static_cast<int>(left), static_cast<int>(std::ceil(right)));
}

GraphicScale GraphicPlot::scale(Axis axis) const
{
    return scaleOf(canvasMap(axis));
}

void GraphicPlot::changeEvent(QEvent *event)
{
    QwtPlot::changeEvent(event);
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::ApplicationFontChange:
        setFonts();
        break;
    case QEvent::PaletteChange:
    case QEvent::EnabledChange:
    case QEvent::StyleChange:
        setColors();
        break;
    default:
        break;
    }
}

/// The plot library gives its axes fonts of its own.
void GraphicPlot::setFonts()
{
    QFont labels = font();
    if (labels.pointSizeF() > 0.0)
        labels.setPointSizeF(labels.pointSizeF() * AxisFontFactor);
    for (const int axis : {xBottom, yLeft}) {
        setAxisFont(axis, labels);
        QwtText title = axisTitle(axis);
        title.setFont(labels);
        setAxisTitle(axis, title);
    }
    holdStill();
}

/// Keeps room for usual labels, so that the canvas stays where it is while others come and go.
void GraphicPlot::holdStill()
{
    const QFontMetricsF metrics(axisFont(yLeft));
    QwtScaleDraw *draw = axisScaleDraw(yLeft);
    draw->setMinimumExtent(metrics.horizontalAdvance(QStringLiteral("-000")) + draw->maxTickLength() + draw->spacing());
    const int overhang = qRound(metrics.horizontalAdvance(QStringLiteral("0000")) / 2.0);
    axisWidget(xBottom)->setMinBorderDist(overhang, overhang);
    axisWidget(yLeft)->setMinBorderDist(qRound(metrics.height() / 2.0), qRound(metrics.height() / 2.0));
}

void GraphicPlot::setColors()
{
    m_background.color = palette().color(QPalette::Base);
    m_grid->setPen(gridColor(palette()), 1.0);
    m_canvas->invalidate();
}

bool GraphicPlot::setMarksCount()
{
    const QFontMetrics metrics(axisFont(xBottom));
    const int labelWidth = metrics.horizontalAdvance(QStringLiteral("00:00:00"));
    const QSize size = m_canvas->size();
    const int alongX = std::clamp(size.width() / (labelWidth * MarkSpaceAlongX), 2, MostMarks);
    const int alongY = std::clamp(size.height() / (metrics.height() * MarkSpaceAlongY), 2, MostMarks);
    const bool isOther = alongX != axisMaxMajor(xBottom) || alongY != axisMaxMajor(yLeft);
    setAxisMaxMajor(xBottom, alongX);
    setAxisMaxMajor(yLeft, alongY);
    return isOther;
}
