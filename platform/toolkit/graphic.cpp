#include "graphic.h"

#include <QImage>
#include <QPainter>
#include <QTimerEvent>
#include <QVBoxLayout>
#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <scaling.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

/// Paints the plot's curves, then whatever the plot's users add.
class Canvas : public QWidget
{
public:
    Canvas(Graphic &graphic, QwtPlot &plot)
        : QWidget(&plot)
        , m_graphic(graphic)
        , m_plot(plot)
    {
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), palette().base());
        m_plot.drawCanvas(&painter);
        Q_EMIT m_graphic.graphicPaintEvent(&painter);
    }

private:
    Graphic &m_graphic;
    QwtPlot &m_plot;
};

} // namespace

struct GraphicParts {
    std::vector<GraphicType> types;
    std::vector<QVector<QPointF>> points;
    std::vector<std::unique_ptr<QwtPlotCurve>> curves;
    GraphicType spare;
    QwtPlot *plot = nullptr;
    QString titles[2];
    QString units[2];
    Graphic::Buttons buttons = Graphic::NoButton;
    bool isTime = false;
    bool isFitted = true;
    bool hasGrid = true;
    bool hasCursor = false;
    bool isPaused = false;
    bool hasInputs = false;
    bool hasStatus = false;
    bool hasLegend = true;
};

Graphic::Graphic(QWidget *parent)
    : QWidget(parent)
    , m_parts(std::make_unique<GraphicParts>())
{
    m_parts->plot = new QwtPlot(this);
    m_parts->plot->setCanvas(new Canvas(*this, *m_parts->plot));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_parts->plot);
}

Graphic::~Graphic() = default;

void Graphic::setGraphicsCount(int count, bool resize)
{
    const auto wanted = static_cast<std::size_t>(std::max(0, count));
    if (!resize) {
        m_parts->types.clear();
        m_parts->points.clear();
    }
    m_parts->types.resize(wanted);
    m_parts->points.resize(wanted);
    m_parts->curves.clear();
    for (std::size_t i = 0; i < wanted; ++i) {
        m_parts->curves.push_back(std::make_unique<QwtPlotCurve>());
        m_parts->curves.back()->setSamples(m_parts->points[i]);
        m_parts->curves.back()->attach(m_parts->plot);
    }
}

int Graphic::graphicsCount() const
{
    return static_cast<int>(m_parts->types.size());
}

GraphicType &Graphic::graphic(int i)
{
    if (i < 0 || i >= graphicsCount())
        return m_parts->spare = GraphicType();
    return m_parts->types[static_cast<std::size_t>(i)];
}

const GraphicType &Graphic::graphic(int i) const
{
    return const_cast<Graphic *>(this)->graphic(i);
}

void Graphic::addPoint(double x, double y, int i)
{
    if (i < 0 || i >= graphicsCount() || !std::isfinite(x))
        return;
    QVector<QPointF> &points = m_parts->points[static_cast<std::size_t>(i)];
    points.append(QPointF(x, y));
    while (m_historySize >= 0.0 && points.first().x() < x - m_historySize)
        points.removeFirst();
    update(false);
}

void Graphic::setGraphicData(const QVector<QPointF> &points, int i)
{
    if (i < 0 || i >= graphicsCount())
        return;
    m_parts->points[static_cast<std::size_t>(i)].clear();
    for (const QPointF &point : points)
        addPoint(point.x(), point.y(), i);
}

QVector<QPointF> Graphic::graphicData(int i) const
{
    return i < 0 || i >= graphicsCount() ? QVector<QPointF>() : m_parts->points[static_cast<std::size_t>(i)];
}

int Graphic::pointsCount(int i) const
{
    return graphicData(i).size();
}

void Graphic::clear()
{
    for (QVector<QPointF> &points : m_parts->points)
        points.clear();
    update(false);
}

void Graphic::updateLegend(bool)
{
    for (std::size_t i = 0; i < m_parts->curves.size(); ++i)
        m_parts->curves[i]->setTitle(m_parts->types[i].name);
}

void Graphic::update(bool now)
{
    for (std::size_t i = 0; i < m_parts->curves.size(); ++i)
        m_parts->curves[i]->setSamples(m_parts->points[i]);
    m_parts->plot->replot();
    if (now)
        canvas()->repaint();
    else
        canvas()->update();
}

bool Graphic::isReadyToRepaint() const
{
    return isVisible() && !canvas()->size().isEmpty();
}

void Graphic::setHistorySize(double distance)
{
    if (!std::isnan(distance))
        m_historySize = distance;
}

void Graphic::setAxisTitle(Axis axis, const QString &title)
{
    m_parts->titles[axis] = title;
}

QString Graphic::axisTitle(Axis axis) const
{
    return m_parts->titles[axis];
}

void Graphic::setAxisUnit(Axis axis, const QString &unit)
{
    m_parts->units[axis] = unit;
}

QString Graphic::axisUnit(Axis axis) const
{
    return m_parts->units[axis];
}

void Graphic::setTimeAxis(bool isTime)
{
    m_parts->isTime = isTime;
}

bool Graphic::isTimeAxis() const
{
    return m_parts->isTime;
}

void Graphic::setVisibleRange(Axis axis, double from, double to)
{
    if (!std::isfinite(from) || !std::isfinite(to))
        return;
    setFitted(false);
    m_parts->plot->setAxisScale(axis == XAxis ? QwtPlot::xBottom : QwtPlot::yLeft, std::min(from, to),
                                std::max(from, to));
    update(false);
}

QPair<double, double> Graphic::visibleRange(Axis axis) const
{
    const QwtInterval range = m_parts->plot->axisInterval(axis == XAxis ? QwtPlot::xBottom : QwtPlot::yLeft);
    return {range.minValue(), range.maxValue()};
}

void Graphic::fit()
{
    m_parts->plot->setAxisAutoScale(QwtPlot::xBottom);
    m_parts->plot->setAxisAutoScale(QwtPlot::yLeft);
    setFitted(true);
    update(false);
}

void Graphic::setFitted(bool isFitted)
{
    if (m_parts->isFitted == isFitted)
        return;
    m_parts->isFitted = isFitted;
    Q_EMIT fittedChanged(isFitted);
}

bool Graphic::isFitted() const
{
    return m_parts->isFitted;
}

void Graphic::setGridVisible(bool isVisible)
{
    m_parts->hasGrid = isVisible;
}

bool Graphic::gridVisible() const
{
    return m_parts->hasGrid;
}

void Graphic::setCursorVisible(bool isVisible)
{
    m_parts->hasCursor = isVisible;
}

bool Graphic::cursorVisible() const
{
    return m_parts->hasCursor;
}

void Graphic::setPaused(bool isPaused)
{
    if (m_parts->isPaused == isPaused)
        return;
    m_parts->isPaused = isPaused;
    Q_EMIT pausedChanged(isPaused);
}

bool Graphic::isPaused() const
{
    return m_parts->isPaused;
}

void Graphic::setBorderInputsVisible(bool isVisible)
{
    m_parts->hasInputs = isVisible;
}

bool Graphic::borderInputsVisible() const
{
    return m_parts->hasInputs;
}

void Graphic::setStatusVisible(bool isVisible)
{
    m_parts->hasStatus = isVisible;
}

bool Graphic::statusVisible() const
{
    return m_parts->hasStatus;
}

void Graphic::setLegendVisible(bool isVisible)
{
    m_parts->hasLegend = isVisible;
}

bool Graphic::legendVisible() const
{
    return m_parts->hasLegend;
}

void Graphic::setButtons(Buttons buttons)
{
    m_parts->buttons = buttons;
}

Graphic::Buttons Graphic::buttons() const
{
    return m_parts->buttons;
}

QWidget *Graphic::canvas() const
{
    return m_parts->plot->canvas();
}

QPointF Graphic::canvasPosition(const QPointF &point) const
{
    return {m_parts->plot->canvasMap(QwtPlot::xBottom).transform(point.x()),
            m_parts->plot->canvasMap(QwtPlot::yLeft).transform(point.y())};
}

QPointF Graphic::pointAt(const QPointF &canvasPosition) const
{
    return {m_parts->plot->canvasMap(QwtPlot::xBottom).invTransform(canvasPosition.x()),
            m_parts->plot->canvasMap(QwtPlot::yLeft).invTransform(canvasPosition.y())};
}

bool Graphic::savePicture(const QString &path, QString *error)
{
    const bool isSaved = picture().save(path);
    if (!isSaved && error)
        *error = tr("The picture cannot be saved as %1.").arg(path);
    return isSaved;
}

QImage Graphic::picture(double scale)
{
    QImage image(size() * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(palette().window().color());
    render(&image);
    return image;
}

QSize Graphic::sizeHint() const
{
    return {fontHeight(this) * 24, fontHeight(this) * 15};
}

QSize Graphic::minimumSizeHint() const
{
    return {fontHeight(this) * 6, fontHeight(this) * 4};
}

void Graphic::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
}

void Graphic::timerEvent(QTimerEvent *event)
{
    QWidget::timerEvent(event);
}

void Graphic::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
}

void Graphic::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
}

void Graphic::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
}
