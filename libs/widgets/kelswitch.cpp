#include "kelswitch.h"

#include "animation.h"
#include "colorarithmetic.h"
#include "kelswitchface.h"

#include <scaling.h>

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <cmath>

namespace
{

constexpr int AnimationMs = 200;

constexpr double TrackToFont = 1.25;
constexpr int TrackMargin = 4;
constexpr int MinimumSide = 10;

constexpr qreal LengthPerPen = 40.0; // The track's pen, and the room that it needs at the ends.
constexpr qreal HandlePenShare = 3.0;

// Even a switch that is on keeps most of the background in its track, so that the handle stands out.
constexpr double BackgroundShareOn = 0.6;
constexpr double BackgroundShareMoving = 0.4;
constexpr int HandleBackDarker = 120;
constexpr int HandleEdgeDarker = 200;

QPropertyAnimation *makeAnimation(QObject *target, const QByteArray &property)
{
    auto *animation = new QPropertyAnimation(target, property, target);
    animation->setDuration(AnimationMs);
    animation->setEasingCurve(QEasingCurve::InOutQuad);
    return animation;
}

QPen edge(const QColor &color, qreal width)
{
    return {color, width, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin};
}

} // namespace

KelSwitch::KelSwitch(QWidget *parent)
    : QAbstractButton(parent)
    , m_animation(makeAnimation(this, "h__anim"))
    , m_animationS(makeAnimation(this, "h__anim_s"))
{
    setCheckable(true);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

QSize KelSwitch::sizeHint() const
{
    const double wanted = fontHeight(nullptr) * m_scale * TrackToFont;
    const int side = static_cast<int>(qBound<double>(-QWIDGETSIZE_MAX, wanted, QWIDGETSIZE_MAX));
    const QSize size(3 * side, side + TrackMargin);
    return m_orientation == Qt::Horizontal ? size : size.transposed();
}

QSize KelSwitch::minimumSizeHint() const
{
    const int side = qRound(appScale(nullptr) * MinimumSide);
    return {side, side};
}

void KelSwitch::enable()
{
    setEnabled(true);
}

void KelSwitch::disable()
{
    setEnabled(false);
}

void KelSwitch::setReadOnly(bool y)
{
    m_readOnly = y;
}

void KelSwitch::setInvertedAppearance(bool y)
{
    m_invertedAppearance = y;
    update();
}

void KelSwitch::setOrientation(Qt::Orientation o)
{
    m_orientation = o;
    updateGeometry();
    update();
}

void KelSwitch::setSwitchStyle(SwitchStyle s)
{
    m_switchStyle = s;
    update();
}

void KelSwitch::setFillColor(QColor c)
{
    m_fillColor = c;
    update();
}

void KelSwitch::setBackColor(QColor c)
{
    m_backColor = c;
    update();
}

void KelSwitch::setScale(double s)
{
    if (!std::isfinite(s))
        return;
    m_scale = s;
    updateGeometry();
}

void KelSwitch::setOn()
{
    setChecked(true);
}

void KelSwitch::setOff()
{
    setChecked(false);
}

void KelSwitch::s_anim(float v)
{
    if (!std::isfinite(v))
        return;
    m_position = v;
    update();
}

void KelSwitch::s_anim_s(float v)
{
    if (!std::isfinite(v))
        return;
    m_blend = v;
    update();
}

void KelSwitch::animate()
{
    const float end = isChecked() ? 0.0f : 1.0f;
    animateTo(*m_animation, end);
    animateTo(*m_animationS, end);
}

void KelSwitch::checkStateSet()
{
    QAbstractButton::checkStateSet();
    animate();
}

void KelSwitch::nextCheckState()
{
    if (m_readOnly)
        return;
    QAbstractButton::nextCheckState();
    animate(); // During a click the base class does not report the new state to checkStateSet().
}

void KelSwitch::mousePressEvent(QMouseEvent *event)
{
    m_pressed = false;
    m_moved = false;
    if (m_readOnly) {
        QAbstractButton::mousePressEvent(event);
        return;
    }

    m_animation->stop();
    const QRectF track = switchTrack(switchHalfLength(size(), m_orientation), m_orientation);
    if (!track.translated(width() / 2.0, height() / 2.0).contains(event->pos())) {
        animate();
        event->accept();
        return;
    }

    m_pressed = true;
    m_pressPoint = event->pos();
    if (m_switchStyle == Center) {
        m_leftHalf = m_orientation == Qt::Horizontal ? width() / 2 > m_pressPoint.x() : height() / 2 > m_pressPoint.y();
    }
    QAbstractButton::mousePressEvent(event);
}

void KelSwitch::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_readOnly && m_pressed && width() >= 2 && height() >= 2)
        dragTo(event->pos());
    QAbstractButton::mouseMoveEvent(event);
}

void KelSwitch::dragTo(const QPoint &position)
{
    const QPoint moved = m_invertedAppearance ? position - m_pressPoint : m_pressPoint - position;
    if (!m_moved) {
        // Until the pointer has gone far enough the press may become a click.
        if (moved.manhattanLength() > QApplication::startDragDistance()) {
            m_moved = true;
            m_pressPoint = position;
        }
        return;
    }

    const bool horizontal = m_orientation == Qt::Horizontal;
    const qreal way = (horizontal ? moved.x() : moved.y()) / (2.0 * switchHalfLength(size(), m_orientation));
    qreal shift = 0.0;
    if (m_switchStyle == Center)
        shift = m_leftHalf ? 4.0 * way : -4.0 * way;
    else
        shift = horizontal ? 2.0 * way : -2.0 * way;
    m_pressPoint = position;
    s_anim(qBound(0.0f, static_cast<float>(m_position + shift), 1.0f));
}

void KelSwitch::mouseReleaseEvent(QMouseEvent *event)
{
    const QPointer<KelSwitch> alive(this);
    const bool pressed = m_pressed;
    const bool moved = m_moved;
    m_pressed = false;
    m_moved = false;

    if (m_readOnly) {
        lift(event);
    } else if (pressed && !moved) {
        animate();
        QAbstractButton::mouseReleaseEvent(event);
    } else if (pressed) {
        const bool on = !(m_position > 0.5f);
        lift(event);
        if (!alive)
            return;
        setChecked(on);
        if (alive && isChecked() != on)
            animate(); // An exclusive group has refused: the handle goes back.
    }
}

// The button comes up without a click.
void KelSwitch::lift(QMouseEvent *event)
{
    const QPointer<KelSwitch> alive(this);
    if (isDown()) {
        setDown(false);
        emit released();
    }
    if (alive)
        QAbstractButton::mouseReleaseEvent(event); // Forgets the press; there is nothing left to click.
    event->accept();
}

void KelSwitch::paintEvent(QPaintEvent *)
{
    if (width() <= 1 || height() <= 1)
        return;

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(width() / 2.0, height() / 2.0);

    const qreal full = switchHalfLength(size(), m_orientation);
    const qreal pen = full / LengthPerPen;
    const qreal halfLength = full - pen;
    drawTrack(painter, switchTrack(halfLength, m_orientation), qMax(1.0, pen));
    drawHandle(painter, halfLength, qMax(1.0, pen / HandlePenShare));
}

void KelSwitch::drawTrack(QPainter &painter, const QRectF &track, qreal penWidth) const
{
    const double back = BackgroundShareMoving * m_blend + BackgroundShareOn;
    painter.setPen(edge(Qt::darkGray, penWidth));
    painter.setBrush(m_fillColor * (1.0 - back) + m_backColor * back);
    painter.drawRect(track);
}

// The colour tells the state, the place may be inverted.
void KelSwitch::drawHandle(QPainter &painter, qreal halfLength, qreal penWidth) const
{
    const double back = std::sqrt(m_position);
    const QColor color = m_fillColor * (1.0 - back) + m_backColor.darker(HandleBackDarker) * back;
    painter.setPen(edge(color.darker(HandleEdgeDarker), penWidth));
    painter.setBrush(color);

    const qreal position = m_invertedAppearance ? 1.0 - m_position : m_position;
    if (m_switchStyle == OneSide) {
        painter.drawPolygon(sideHandle(halfLength, m_orientation, position));
        return;
    }
    const QPolygonF half = rockerHalf(halfLength, m_orientation, position);
    painter.drawPolygon(half);
    painter.save();
    painter.rotate(180.0);
    painter.drawPolygon(half);
    painter.restore();
}
