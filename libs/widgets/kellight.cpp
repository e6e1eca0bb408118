#include "kellight.h"

#include "animation.h"
#include "inkedpicture.h"
#include "kellightgeometry.h"
#include "kellightring.h"

#include <QMouseEvent>
#include <QPointer>
#include <scaling.h>

#include <cmath>
#include <limits>

using KelLightGeometry::Part;

namespace
{

constexpr int AnimationMs = 200;
constexpr double SameLevel = 0.001;
constexpr int ByteMax = 254; // the largest value that dimmers take; 255 means something else to them
constexpr double ByteMaxLevel = 100.0;

bool isSame(double a, double b)
{
    return std::abs(a - b) < SameLevel;
}

} // namespace

KelLight::KelLight(QWidget *parent)
    : QWidget(parent)
    , m_animation(this, "h__anim")
    , m_pictures(new std::array<InkedPicture, 4>())
{
    setIconType(Bulb);
    m_animation.setDuration(AnimationMs);
    m_animation.setEasingCurve(QEasingCurve::OutQuad);
}

KelLight::~KelLight() = default;

double KelLight::level() const
{
    if (!m_binary)
        return m_level;
    return m_level > 0.5 ? m_highLevel : m_lowLevel;
}

int KelLight::byteLevel() const
{
    if (m_binary)
        return isOn() ? ByteMax : 0;
    if (isSame(m_highLevel, 0.0))
        return -1;
    if (isSame(level(), m_lowLevel))
        return 0;
    // Bounds of any size are allowed, the number of bytes ends with its type.
    constexpr double Most = std::numeric_limits<int>::max();
    return qRound(qBound(-Most, level() / ByteMaxLevel * ByteMax, Most));
}

bool KelLight::isOn() const
{
    return isSame(m_level, m_highLevel);
}

bool KelLight::isOff() const
{
    return isSame(m_level, m_lowLevel);
}

QSize KelLight::sizeHint() const
{
    const int side = qRound(appScale(nullptr) * 120);
    return {side, side};
}

QSize KelLight::minimumSizeHint() const
{
    const int side = qRound(appScale(nullptr) * 40);
    return {side, side};
}

int KelLight::heightForWidth(int) const
{
    return width();
}

void KelLight::setReadOnly(bool y)
{
    m_readOnly = y;
}

void KelLight::setBinary(bool y)
{
    const double remembered = m_level;
    m_binary = y;
    scalePictures();
    refresh();
    applyLevel(remembered);
}

void KelLight::setLevel(double l)
{
    if (l == m_level || std::isnan(l))
        return;
    applyLevel(l);
}

// Each signal carries what holds when it is emitted: a slot may have set another level meanwhile. A slot may also
// delete the light, so nothing of it is used behind the signals unless it lives.
void KelLight::applyLevel(double l)
{
    if (m_binary)
        m_level = l > m_clickThreshold ? m_highLevel : m_lowLevel;
    else
        m_level = qMin(m_highLevel, qMax(l, m_lowLevel));
    animateTo(m_animation, m_level);

    const QPointer<KelLight> alive(this);
    emit levelChanged(m_level);
    if (alive)
        emit byteLevelChanged(byteLevel());
    if (alive && m_level == m_lowLevel)
        emit turnedOff();
    if (alive && m_level == m_highLevel)
        emit turnedOn();
}

void KelLight::setByteLevel(int byteLevel)
{
    const double level = byteLevel / double(ByteMax) * m_highLevel;
    setLevel(byteLevel == 0 ? m_lowLevel : qMax(level, m_lowLevel));
}

void KelLight::setLowLevel(double lowLevel)
{
    if (!std::isfinite(lowLevel))
        return;
    m_lowLevel = lowLevel;
    if (lowLevel > m_onLevel) {
        m_onLevel = lowLevel;
        m_clickThreshold = lowLevel;
    }
    fitLevelToBounds();
}

void KelLight::setHighLevel(double highLevel)
{
    if (!std::isfinite(highLevel))
        return;
    m_highLevel = highLevel;
    m_onLevel = qMin(m_onLevel, highLevel);
    fitLevelToBounds();
}

void KelLight::fitLevelToBounds()
{
    setClickThreshold(m_clickThreshold);
    refresh();
    setLevel(qMin(m_highLevel, qMax(level(), m_lowLevel)));
}

void KelLight::setOnLevel(double onLevel)
{
    if (std::isnan(onLevel))
        return;
    m_onLevel = qMin(m_highLevel, qMax(onLevel, m_lowLevel));
    setClickThreshold(m_clickThreshold);
}

void KelLight::setOn(bool on)
{
    setLevel(on ? m_highLevel : m_lowLevel);
}

void KelLight::setRestoreLastOnLevel(bool yes)
{
    m_restoreLastOnLevel = yes;
}

void KelLight::setFillColor(QColor c)
{
    m_fillColor = c;
    refresh();
}

void KelLight::setBackColor(QColor c)
{
    m_backColor = c;
    refresh();
}

void KelLight::setAngleShift(double a)
{
    m_angleShift = a > 0.0 ? qMin(a, 180.0) : 0.0;
    refresh();
}

void KelLight::setBarSize(double a)
{
    m_barSize = a > 0.0 ? qMin(a, 100.0) : 0.0;
    scalePictures();
    refresh();
}

void KelLight::setClickThreshold(double a)
{
    if (!std::isnan(a))
        m_clickThreshold = qMin(m_onLevel, qMax(a, m_lowLevel));
}

void KelLight::click()
{
    if (m_binary) {
        setOn(!isOn());
    } else if (m_level >= m_clickThreshold) {
        m_lastOnLevel = level();
        setLevel(m_lowLevel);
    } else {
        if (m_clickThreshold > m_lastOnLevel)
            m_lastOnLevel = m_highLevel;
        setLevel(m_restoreLastOnLevel ? m_lastOnLevel : m_onLevel);
    }
}

void KelLight::s_anim(double v)
{
    if (std::isnan(v))
        return;
    m_shownLevel = v;
    m_still = QPixmap();
    update();
}

void KelLight::mousePressEvent(QMouseEvent *event)
{
    const Part part = KelLightGeometry::partAt(event->pos(), size(), {m_binary, m_barSize, m_angleShift});
    if (m_readOnly || event->button() != Qt::LeftButton || part == Part::Outside) {
        event->ignore();
    } else if (part == Part::Lamp) {
        const QPointer<KelLight> alive(this);
        click();
        if (alive)
            emit clicked();
    } else {
        m_dragging = true;
        dragTo(event->pos());
    }
}

void KelLight::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragging && !m_readOnly)
        dragTo(event->pos());
}

void KelLight::dragTo(const QPoint &position)
{
    if (m_binary)
        return;
    const double share = KelLightGeometry::shareAt(position, size(), {m_binary, m_barSize, m_angleShift});
    setLevel(m_lowLevel + (m_highLevel - m_lowLevel) * share);
}

void KelLight::mouseReleaseEvent(QMouseEvent *)
{
    m_dragging = false;
}
