#include "kelthermometer.h"

#include "animation.h"
#include "kelthermometerface.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr int AnimationMs = 200;
constexpr double LargestSingle = static_cast<double>(std::numeric_limits<float>::max());

} // namespace

KelThermometer::KelThermometer(QWidget *parent)
    : QWidget(parent)
    , m_face(new ThermometerFace())
    , m_animation(new QPropertyAnimation(this, "h__anim", this))
{
    setValue(0.0);
    calcColor();
    m_animation->setDuration(AnimationMs);
    m_animation->setEasingCurve(QEasingCurve::OutQuad);
}

KelThermometer::~KelThermometer() = default;

float KelThermometer::h__anim() const
{
    return static_cast<float>(qBound(-LargestSingle, m_level, LargestSingle));
}

void KelThermometer::calcColor()
{
    m_liquidColor = liquidColor(shareOf(m_level, {m_minimum, m_maximum}));
    update();
}

void KelThermometer::animate()
{
    const double way = m_value - static_cast<double>(h__anim());
    if (std::abs(m_value) <= LargestSingle && std::abs(way) <= LargestSingle) {
        animateTo(*m_animation, m_value);
        return;
    }
    m_animation->stop();
    s_anim(m_value);
}

QSize KelThermometer::sizeHint() const
{
    return {120, 300};
}

QSize KelThermometer::minimumSizeHint() const
{
    return {30, 60};
}

void KelThermometer::s_anim(double v)
{
    if (!std::isfinite(v))
        return;
    m_level = v;
    calcColor();
}

void KelThermometer::enable()
{
    setEnabled(true);
}

void KelThermometer::disable()
{
    setEnabled(false);
}

void KelThermometer::setReadOnly(bool y)
{
    m_readOnly = y;
}

void KelThermometer::setValue(double v)
{
    if (!std::isfinite(v))
        return;
    const double kept = std::max(std::min(v, m_gradMaximum), m_gradMinimum);
    if (kept == m_value)
        return;
    m_value = kept;
    calcColor();

    const QPointer<KelThermometer> alive(this);
    emit valueChanged(kept);
    if (alive)
        animate();
}

void KelThermometer::setMinimum(double v)
{
    if (!std::isfinite(v) || v == m_minimum)
        return;
    m_minimum = v;
    calcColor();
}

void KelThermometer::setMaximum(double v)
{
    if (!std::isfinite(v) || v == m_maximum)
        return;
    m_maximum = v;
    calcColor();
}

void KelThermometer::setGradMinimum(double v)
{
    if (!std::isfinite(v) || v == m_gradMinimum)
        return;
    m_gradMinimum = v;
    calcColor();
    setValue(m_value);
}

void KelThermometer::setGradMaximum(double v)
{
    if (!std::isfinite(v) || v == m_gradMaximum)
        return;
    m_gradMaximum = v;
    calcColor();
    setValue(m_value);
}

bool KelThermometer::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::ApplicationFontChange: // The labels have the application's font, whatever the widget's is.
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
        m_face->drop();
        update();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void KelThermometer::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const ThermometerState state{m_level, {m_gradMinimum, m_gradMaximum}, m_liquidColor};
    m_face->paint(painter, layoutThermometer(size()), state, devicePixelRatioF());
}

void KelThermometer::resizeEvent(QResizeEvent *)
{
    m_face->drop();
}

void KelThermometer::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() == Qt::NoButton || m_readOnly)
        return;
    const ThermometerGeometry geometry = layoutThermometer(size());
    if (geometry.hasScale())
        setValue(numberAt(geometry, {m_gradMinimum, m_gradMaximum}, qRound(event->localPos().y())));
}

void KelThermometer::mousePressEvent(QMouseEvent *event)
{
    mouseMoveEvent(event);
}
