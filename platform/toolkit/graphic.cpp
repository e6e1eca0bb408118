#include "graphic.h"

#include <QEvent>
#include <QLayout>
#include <QPainter>
#include <QTimerEvent>
#include <graphiccanvas.h>
#include <graphicinputs.h>
#include <graphiclegend.h>
#include <graphicparts.h>
#include <graphicplot.h>
#include <graphictoolbar.h>
#include <scaling.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr QSize UsualSize(24, 15); ///< In heights of the font.
constexpr QSize SmallestSize(6, 4);

Graphic::Buttons usualButtons()
{
    return Graphic::FitButton | Graphic::GridButton | Graphic::CursorButton | Graphic::SavePictureButton |
           Graphic::PauseButton;
}

} // namespace

Graphic::Graphic(QWidget *parent)
    : QWidget(parent)
    , m_parts(std::make_unique<GraphicParts>(*this))
{
    qRegisterMetaType<QPainter *>("QPainter*"); // for those who look at signals by name
    setButtons(usualButtons());
}

Graphic::~Graphic()
{
    // The plot's items point into the curves, so it goes first.
    delete m_parts->plot;
}

void Graphic::setGraphicsCount(int count, bool resize)
{
    if (!resize)
        m_parts->setCurvesCount(0);
    m_parts->setCurvesCount(static_cast<std::size_t>(std::max(0, count)));
}

int Graphic::graphicsCount() const
{
    return static_cast<int>(m_parts->curves.size());
}

GraphicType &Graphic::graphic(int i)
{
    GraphicParts::Curve *curve = m_parts->curve(i);
    return curve ? curve->type : m_parts->spare = GraphicType();
}

const GraphicType &Graphic::graphic(int i) const
{
    return const_cast<Graphic *>(this)->graphic(i);
}

void Graphic::addPoint(double x, double y, int i)
{
    GraphicParts::Curve *curve = m_parts->curve(i);
    if (curve)
        m_parts->addPoint(*curve, x, y);
}

void Graphic::setGraphicData(const QVector<QPointF> &points, int i)
{
    GraphicParts::Curve *curve = m_parts->curve(i);
    if (!curve)
        return;
    curve->series.setPoints(points);
    m_parts->schedule(true);
}

QVector<QPointF> Graphic::graphicData(int i) const
{
    GraphicParts::Curve *curve = m_parts->curve(i);
    if (!curve)
        return {};
    curve->series.settle();
    return curve->series.points();
}

int Graphic::pointsCount(int i) const
{
    GraphicParts::Curve *curve = m_parts->curve(i);
    if (!curve)
        return 0;
    curve->series.settle();
    return curve->series.count();
}

void Graphic::clear()
{
    for (GraphicParts::Curve &curve : m_parts->curves) {
        curve.series.clear();
        curve.held.clear();
    }
    m_parts->schedule(true);
}

void Graphic::updateLegend(bool relayout)
{
    m_parts->showLegend();
    m_parts->schedule(false);
    if (relayout && isVisible())
        layout()->activate();
}

void Graphic::update(bool now)
{
    m_parts->schedule(false);
    if (!now || !isReadyToRepaint())
        return;
    m_parts->sync();
    canvas()->repaint();
}

bool Graphic::isReadyToRepaint() const
{
    return isVisible() && !canvas()->size().isEmpty();
}

void Graphic::setHistorySize(double distance)
{
    if (std::isnan(distance))
        return;
    m_historySize = distance;
    for (GraphicParts::Curve &curve : m_parts->curves)
        curve.series.setHistory(distance);
    m_parts->schedule(true);
}

void Graphic::setAxisTitle(Axis axis, const QString &title)
{
    m_parts->titles[axis] = title;
    m_parts->schedule(false);
}

QString Graphic::axisTitle(Axis axis) const
{
    return m_parts->titles[axis];
}

void Graphic::setAxisUnit(Axis axis, const QString &unit)
{
    m_parts->units[axis] = unit;
    m_parts->schedule(false);
}

QString Graphic::axisUnit(Axis axis) const
{
    return m_parts->units[axis];
}

void Graphic::setTimeAxis(bool isTime)
{
    m_parts->isTime = isTime;
    m_parts->schedule(false);
}

bool Graphic::isTimeAxis() const
{
    return m_parts->isTime;
}

void Graphic::setVisibleRange(Axis axis, double from, double to)
{
    if (!std::isfinite(from) || !std::isfinite(to))
        return;
    m_parts->sync(); // a fit that is due still sets the other axis
    m_parts->setRange(axis, drawableRange(from, to));
}

QPair<double, double> Graphic::visibleRange(Axis axis) const
{
    m_parts->sync();
    return {m_parts->ranges[axis].from, m_parts->ranges[axis].to};
}

void Graphic::fit()
{
    setFitted(true);
}

void Graphic::setFitted(bool isFitted)
{
    m_parts->toolBar->setChecked(FitButton, isFitted);
    if (m_parts->isFitted == isFitted)
        return;
    m_parts->sync(); // the range stays as it would be shown now
    m_parts->isFitted = isFitted;
    m_parts->schedule(false);
    Q_EMIT fittedChanged(isFitted);
}

bool Graphic::isFitted() const
{
    return m_parts->isFitted;
}

void Graphic::setGridVisible(bool isVisible)
{
    m_parts->hasGrid = isVisible;
    m_parts->toolBar->setChecked(GridButton, isVisible);
    m_parts->plot->setGrid(isVisible);
    m_parts->schedule(true);
}

bool Graphic::gridVisible() const
{
    return m_parts->hasGrid;
}

void Graphic::setCursorVisible(bool isVisible)
{
    m_parts->hasCursor = isVisible;
    m_parts->toolBar->setChecked(CursorButton, isVisible);
    canvas()->update();
}

bool Graphic::cursorVisible() const
{
    return m_parts->hasCursor;
}

void Graphic::setPaused(bool isPaused)
{
    m_parts->toolBar->setChecked(PauseButton, isPaused);
    if (m_parts->isPaused == isPaused)
        return;
    m_parts->sync(); // the picture that is held is the one that is due now
    for (GraphicParts::Curve &curve : m_parts->curves) {
        curve.series.settle();
        curve.held = isPaused ? curve.series : GraphicSeries();
    }
    m_parts->isPaused = isPaused;
    m_parts->schedule(true);
    Q_EMIT pausedChanged(isPaused);
}

bool Graphic::isPaused() const
{
    return m_parts->isPaused;
}

void Graphic::setBorderInputsVisible(bool isVisible)
{
    m_parts->hasInputs = isVisible;
    m_parts->toolBar->setChecked(BorderInputsButton, isVisible);
    m_parts->inputs->setVisible(isVisible);
}

bool Graphic::borderInputsVisible() const
{
    return m_parts->hasInputs;
}

void Graphic::setStatusVisible(bool isVisible)
{
    m_parts->hasStatus = isVisible;
    m_parts->toolBar->setChecked(StatusButton, isVisible);
    m_parts->status->setVisible(isVisible);
    m_parts->showStatus();
}

bool Graphic::statusVisible() const
{
    return m_parts->hasStatus;
}

void Graphic::setLegendVisible(bool isVisible)
{
    m_parts->hasLegend = isVisible;
    m_parts->toolBar->setChecked(LegendButton, isVisible);
    m_parts->legend->setVisible(isVisible);
}

bool Graphic::legendVisible() const
{
    return m_parts->hasLegend;
}

void Graphic::setButtons(Buttons buttons)
{
    m_parts->buttons = buttons;
    m_parts->toolBar->setButtons(buttons);
    m_parts->arrange();
}

Graphic::Buttons Graphic::buttons() const
{
    return m_parts->buttons;
}

QWidget *Graphic::canvas() const
{
    return &m_parts->plot->area();
}

QPointF Graphic::canvasPosition(const QPointF &point) const
{
    m_parts->sync();
    return {m_parts->plot->scale(XAxis).pixel(point.x()), m_parts->plot->scale(YAxis).pixel(point.y())};
}

QPointF Graphic::pointAt(const QPointF &canvasPosition) const
{
    m_parts->sync();
    return {m_parts->plot->scale(XAxis).value(canvasPosition.x()),
            m_parts->plot->scale(YAxis).value(canvasPosition.y())};
}

QSize Graphic::sizeHint() const
{
    return UsualSize * fontHeight(this);
}

QSize Graphic::minimumSizeHint() const
{
    return SmallestSize * fontHeight(this);
}

void Graphic::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_parts->arrange();
    m_parts->schedule(true);
}

void Graphic::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_parts->frame.timerId())
        m_parts->sync();
    else
        QWidget::timerEvent(event);
}

/// The axes are painted after this, so they show what the canvas will.
void Graphic::paintEvent(QPaintEvent *event)
{
    m_parts->sync();
    QWidget::paintEvent(event);
}

void Graphic::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::EnabledChange:
    case QEvent::StyleChange:
    case QEvent::FontChange:
        m_parts->showLegend();
        m_parts->schedule(true);
        break;
    default:
        break;
    }
}

void Graphic::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_parts->schedule(true);
}
