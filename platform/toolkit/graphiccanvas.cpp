#include "graphiccanvas.h"

#include <QApplication>
#include <QGestureEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <graphicplot.h>

#include <cmath>

namespace
{

constexpr double ZoomPerNotch = 0.8; ///< What is left of the shown width after one notch of the wheel.
constexpr double WheelNotch = 120.0; ///< In eighths of a degree, as Qt counts.

} // namespace

GraphicCanvas::GraphicCanvas(GraphicPlot &plot)
    : QWidget(plot.widget())
    , m_plot(plot)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    grabGesture(Qt::PinchGesture);
    setObjectName(QStringLiteral("canvas"));
}

void GraphicCanvas::invalidate()
{
    m_picture = QPixmap();
    update();
}

void GraphicCanvas::invalidate(int left, int right)
{
    const QRect strip(left, 0, right - left, height());
    m_strip |= strip;
    update(strip);
}

bool GraphicCanvas::event(QEvent *event)
{
    if (event->type() == QEvent::Gesture) {
        const QGesture *gesture = static_cast<QGestureEvent *>(event)->gesture(Qt::PinchGesture);
        if (gesture)
            pinched(*static_cast<const QPinchGesture *>(gesture));
        return true;
    }
    return QWidget::event(event);
}

void GraphicCanvas::paintEvent(QPaintEvent *)
{
    Q_EMIT aboutToPaint();
    // A plot that is smaller than its axes leaves the canvas no room, or less than none; maybe only since just now.
    if (size().isEmpty())
        return;
    if (m_picture.isNull() || m_picture.size() != size() * devicePixelRatioF())
        renderItems();
    else if (!m_strip.isEmpty())
        renderStrip();
    m_strip = QRect();

    QPainter painter(this);
    painter.drawPixmap(0, 0, m_picture);
    Q_EMIT painted(&painter);
}

void GraphicCanvas::wheelEvent(QWheelEvent *event)
{
    // Some platforms turn the wheel sideways while Alt is held.
    const int turn = event->angleDelta().y() != 0 ? event->angleDelta().y() : event->angleDelta().x();
    const double factor = std::pow(ZoomPerNotch, turn / WheelNotch);
    const bool isAlongX = !(event->modifiers() & Qt::ShiftModifier);
    const bool isAlongY = !(event->modifiers() & Qt::ControlModifier);
    Q_EMIT zoomWanted(event->position(), isAlongX ? factor : 1.0, isAlongY ? factor : 1.0);
    event->accept();
}

void GraphicCanvas::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    m_drag = Drag::Pressed;
    m_dragFrom = event->localPos();
}

void GraphicCanvas::mouseMoveEvent(QMouseEvent *event)
{
    Q_EMIT pointed(event->localPos());
    const QPointF distance = event->localPos() - m_dragFrom;
    // A click by a trembling hand does not move the picture.
    if (m_drag == Drag::Pressed && distance.manhattanLength() >= QApplication::startDragDistance()) {
        m_drag = Drag::Moving;
        setCursor(Qt::ClosedHandCursor);
    }
    if (m_drag != Drag::Moving)
        return;
    m_dragFrom = event->localPos();
    Q_EMIT moved(distance);
}

void GraphicCanvas::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mouseReleaseEvent(event);
    m_drag = Drag::None;
    unsetCursor();
}

void GraphicCanvas::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT fitWanted();
}

void GraphicCanvas::leaveEvent(QEvent *)
{
    Q_EMIT left();
}

void GraphicCanvas::resizeEvent(QResizeEvent *)
{
    Q_EMIT resized();
}

void GraphicCanvas::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        m_drag = Drag::None;
        unsetCursor();
    }
    QWidget::changeEvent(event);
}

void GraphicCanvas::renderItems()
{
    m_picture = QPixmap(size() * devicePixelRatioF());
    m_picture.setDevicePixelRatio(devicePixelRatioF());
    m_picture.fill(palette().color(QPalette::Base)); // its last row may be a part of a pixel
    QPainter painter(&m_picture);
    m_plot.drawContent(painter);
}

void GraphicCanvas::renderStrip()
{
    QPainter painter(&m_picture);
    painter.setClipRect(m_strip);
    m_plot.drawContent(painter);
}

/// Two fingers zoom about the point between them and move it along.
void GraphicCanvas::pinched(const QPinchGesture &pinch)
{
    m_drag = Drag::None; // the first finger had begun to drag
    const QPointF center = mapFromGlobal(pinch.centerPoint().toPoint());
    const QPointF before = mapFromGlobal(pinch.lastCenterPoint().toPoint());
    if (pinch.state() != Qt::GestureStarted && center != before)
        Q_EMIT moved(center - before);
    if (pinch.scaleFactor() > 0.0 && pinch.scaleFactor() != 1.0)
        Q_EMIT zoomWanted(center, 1.0 / pinch.scaleFactor(), 1.0 / pinch.scaleFactor());
}
