// The plot library's plot, set up for panels; a module that is loaded with the first plot.
#include <QCoreApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <graphiccolors.h>
#include <graphiccurve.h>
#include <graphicplot.h>
#include <graphicscales.h>
#include <qwt_plot.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_item.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_renderer.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_widget.h>
#include <qwt_text.h>

#include <algorithm>

namespace
{

constexpr double CurvesAbove = 20.0; ///< The grid lies at 10.
constexpr double AxisFontFactor = 0.9;
constexpr double MarkSpaceAlongX = 2.0; ///< A label and the space to the next, in widths of a label.
constexpr double MarkSpaceAlongY = 2.5; ///< The same in heights.
constexpr int MostMarks = 10;
constexpr int MostLines = 2; ///< Of a label along x: the first time says the day too.

GraphicScale scaleOf(const QwtScaleMap &map)
{
    return {map.s1(), map.pDist() / map.sDist() * (map.p2() < map.p1() ? -1.0 : 1.0), map.p1()};
}

QwtPlot::Axis axisId(Graphic::Axis axis)
{
    return axis == Graphic::XAxis ? QwtPlot::xBottom : QwtPlot::yLeft;
}

/// The curves among the plot's items.
class CurvesItem : public QwtPlotItem
{
public:
    explicit CurvesItem(const std::vector<GraphicCurveLook> &curves)
        : m_curves(curves)
    {
        setZ(CurvesAbove);
        setItemAttribute(QwtPlotItem::AutoScale, false);
    }

    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
              const QRectF &canvasRect) const override
    {
        for (const GraphicCurveLook &curve : m_curves) {
            if (!curve.series || !curve.isVisible)
                continue;
            QRectF area = canvasRect;
            if (painter->hasClipping()) {
                const double margin = curveMargin(curve.pen);
                area &= painter->clipBoundingRect().toAlignedRect().adjusted(-qRound(margin), 0, qRound(margin), 0);
            }
            painter->save();
            drawSeries(*painter, area, *curve.series, scaleOf(xMap), scaleOf(yMap), curve.pen);
            painter->restore();
        }
    }

private:
    const std::vector<GraphicCurveLook> &m_curves;
};

/// What lies behind everything, on the screen and in pictures.
class Background : public QwtPlotItem
{
public:
    QColor color;

    void draw(QPainter *painter, const QwtScaleMap &, const QwtScaleMap &, const QRectF &canvasRect) const override
    {
        painter->fillRect(canvasRect, color);
    }
};

class Plot : public QwtPlot, public GraphicPlot
{
public:
    explicit Plot(QWidget *parent);

    QWidget *widget() override { return this; }
    void setLabels(Graphic::Axis axis, const GraphicLabels &labels, const QString &title) override;
    void setRange(Graphic::Axis axis, const GraphicRange &range) override
    {
        setAxisScale(axisId(axis), range.from, range.to);
    }
    void setGrid(bool isVisible) override { m_grid.setVisible(isVisible); }
    QFont labelFont(Graphic::Axis axis) const override { return axisFont(axisId(axis)); }
    GraphicScale scale(Graphic::Axis axis) const override { return scaleOf(canvasMap(axisId(axis))); }
    QSize usualArea() const override;
    bool setMarksCount() override;
    void drawContent(QPainter &painter) override { drawCanvas(&painter); }
    void drawPicture(QPainter &painter, const QRectF &rect) override;

    QSize minimumSizeHint() const override { return {1, 1}; } ///< Its owner knows better.

protected:
    void placeArea(QWidget *canvas) override;
    void layOut() override;
    void changeEvent(QEvent *event) override;

private:
    void setFonts();
    void setColors();
    double usualExtent(QwtPlot::Axis axis) const;
    QSize usualOverhang() const;
    void holdStill();

    Background m_background;
    QwtPlotGrid m_grid;
    CurvesItem m_items{curves};
};

Plot::Plot(QWidget *parent)
    : QwtPlot(parent)
{
    setAutoReplot(false);
    setAutoDelete(false);
    plotLayout()->setSpacing(0);
    m_background.attach(this);
    m_grid.attach(this);
    m_items.attach(this);
    for (const int axis : {xBottom, yLeft}) {
        axisWidget(axis)->setMargin(0);
        setAxisMaxMinor(axis, 2);
    }
    setFonts();
    setColors();
}

void Plot::placeArea(QWidget *canvas)
{
    setCanvas(canvas);
    plotLayout()->setAlignCanvasToScales(true);
}

void Plot::setLabels(Graphic::Axis which, const GraphicLabels &labels, const QString &title)
{
    const QwtPlot::Axis axis = axisId(which);
    setAxisScaleDraw(axis, newScaleDraw(labels));
    setAxisScaleEngine(axis, newScaleEngine(labels.isTime));
    QwtText text(title, QwtText::PlainText);
    text.setFont(axisFont(axis));
    setAxisTitle(axis, text);
    holdStill();
}

void Plot::layOut()
{
    updateAxes();
    // Wider labels take their place once; giving it back would shake the picture.
    QwtScaleDraw *draw = axisScaleDraw(yLeft);
    draw->setMinimumExtent(std::max(draw->minimumExtent(), draw->extent(axisFont(yLeft))));
    QCoreApplication::sendPostedEvents(this, QEvent::LayoutRequest);
}

void Plot::drawPicture(QPainter &painter, const QRectF &rect)
{
    QwtPlotRenderer renderer;
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground);
    renderer.render(this, &painter, rect);
}

void Plot::changeEvent(QEvent *event)
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
void Plot::setFonts()
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

/// How far labels of the usual size reach away from the canvas.
double Plot::usualExtent(QwtPlot::Axis axis) const
{
    const QFontMetricsF metrics(axisFont(axis));
    const double label =
        axis == yLeft ? metrics.horizontalAdvance(QStringLiteral("-000")) : metrics.lineSpacing() * MostLines;
    return label + axisScaleDraw(axis)->maxTickLength() + axisScaleDraw(axis)->spacing();
}

/// How far they reach over the ends of an axis.
QSize Plot::usualOverhang() const
{
    const QFontMetricsF metrics(axisFont(yLeft));
    return {qRound(metrics.horizontalAdvance(QStringLiteral("0000")) / 2.0), qRound(metrics.height() / 2.0)};
}

/// Keeps room for usual labels, so that the canvas stays where it is while others come and go.
void Plot::holdStill()
{
    axisScaleDraw(yLeft)->setMinimumExtent(usualExtent(yLeft));
    const QSize overhang = usualOverhang();
    axisWidget(xBottom)->setMinBorderDist(overhang.width(), overhang.width());
    axisWidget(yLeft)->setMinBorderDist(overhang.height(), overhang.height());
}

void Plot::setColors()
{
    m_background.color = palette().color(QPalette::Base);
    m_grid.setPen(gridColor(palette()), 1.0);
    looksDifferent();
}

QSize Plot::usualArea() const
{
    const QSize beside = QSizeF(usualExtent(yLeft), usualExtent(xBottom)).toSize();
    return (size() - beside - usualOverhang()).expandedTo({0, 0});
}

bool Plot::setMarksCount()
{
    const QFontMetrics metrics(axisFont(xBottom));
    const int labelWidth = metrics.horizontalAdvance(QStringLiteral("00:00:00"));
    const QSize area = usualArea();
    const int alongX = std::clamp(qRound(area.width() / (labelWidth * MarkSpaceAlongX)), 1, MostMarks);
    const int alongY = std::clamp(qRound(area.height() / (metrics.height() * MarkSpaceAlongY)), 1, MostMarks);
    const bool isOther = alongX != axisMaxMajor(xBottom) || alongY != axisMaxMajor(yLeft);
    setAxisMaxMajor(xBottom, alongX);
    setAxisMaxMajor(yLeft, alongY);
    return isOther;
}

} // namespace

extern "C" Q_DECL_EXPORT GraphicPlot *kelNewPlot(QWidget *parent)
{
    return new Plot(parent);
}
