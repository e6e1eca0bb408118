#include "kelclock.h"

#include "animation.h"
#include "kelclockface.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPointer>

#include <cmath>
#include <utility>

namespace
{

constexpr int AnimationMs = 200;
constexpr qreal FaceFontScale = 1.5;

constexpr int HoursPerRing = 12;
constexpr int HoursPerDay = 24;
constexpr int MinutesPerHour = 60;
constexpr int MinuteStep = 5;

// The hands of a face lie in this order: the other face's, then its own over it.
constexpr int OtherHand = 0;
constexpr int OwnHand = 1;
constexpr float OtherOpacity = 0.66F;
constexpr float OwnOpacity = 1.0F;

KelClock::Arrow hourHand(float opacity)
{
    return {0.075F, 0.275F, opacity};
}

KelClock::Arrow minuteHand(float opacity)
{
    return {0.03F, 0.35F, opacity};
}

/// The angle after \a part of \a whole turns' parts.
qreal turned(int part, int whole)
{
    return 2.0 * static_cast<qreal>(ClockPi) * part / whole;
}

ClockRing afternoonRing()
{
    ClockRing ring;
    for (int i = 1; i <= HoursPerRing; ++i) {
        const QString hour = QString::number((i + HoursPerRing) % HoursPerDay);
        ring.append({turned(i, HoursPerRing), hour.rightJustified(2, QLatin1Char('0'))});
    }
    return ring;
}

ClockRing morningRing()
{
    ClockRing ring;
    for (int i = 1; i <= HoursPerRing; ++i)
        ring.append({turned(i, HoursPerRing), QString::number(i)});
    return ring;
}

ClockRing minuteRing()
{
    ClockRing ring;
    for (int minute = MinuteStep; minute <= MinutesPerHour; minute += MinuteStep)
        ring.append({turned(minute, MinutesPerHour), QString::number(minute % MinutesPerHour)});
    return ring;
}

/// The row of faces. A layout around the clock sees that it has a height for a width and then asks this
/// row for it, which must not have a face vanish beside neighbours that like to be large.
class FaceRow : public QHBoxLayout
{
public:
    using QHBoxLayout::QHBoxLayout;

    int heightForWidth(int) const override { return sizeHint().height(); }
};

QPropertyAnimation *makeAnimation(QObject *target, const QByteArray &property)
{
    auto *animation = new QPropertyAnimation(target, property, target);
    animation->setDuration(AnimationMs);
    animation->setEasingCurve(QEasingCurve::OutQuad);
    return animation;
}

} // namespace

KelClock::KelClock(QWidget *parent)
    : QWidget(parent)
{
    init();
    // After the faces: an animation reads its property at once.
    m_minuteAnimation = makeAnimation(this, "h__anim0");
    m_hourAnimation = makeAnimation(this, "h__anim1");
}

void KelClock::init()
{
    static const QVector<ClockRing> hourRings = {afternoonRing(), morningRing()};
    static const QVector<ClockRing> minuteRings = {minuteRing()};
    m_hours = new _NumericCircle(hourRings, {minuteHand(OtherOpacity), hourHand(OwnOpacity)}, this);
    m_minutes = new _NumericCircle(minuteRings, {hourHand(OtherOpacity), minuteHand(OwnOpacity)}, this);
    dressFaces();

    // A time reads from the hour to the minute also where text runs to the left.
    setLayoutDirection(Qt::LeftToRight);
    auto *row = new FaceRow(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_hours);
    row->addWidget(m_minutes);
}

void KelClock::dressFaces()
{
    QFont font = this->font();
    font.setWeight(QFont::Bold);
    if (font.pointSizeF() > 0.0)
        font.setPointSizeF(font.pointSizeF() * FaceFontScale);
    else
        font.setPixelSize(qRound(font.pixelSize() * FaceFontScale));
    m_hours->setFont(font);
    m_minutes->setFont(font);
}

bool KelClock::readOnly() const
{
    return m_hours->isReadOnly();
}

QTime KelClock::time() const
{
    return {m_hours->selectedText().toInt(), m_minutes->selectedText().toInt(), 0, 0};
}

float KelClock::h__anim0() const
{
    return m_hours->currentAngle(OtherHand);
}

float KelClock::h__anim1() const
{
    return m_hours->currentAngle(OwnHand);
}

int KelClock::heightForWidth(int) const
{
    return width();
}

void KelClock::enable()
{
    setEnabled(true);
}

void KelClock::disable()
{
    setEnabled(false);
}

void KelClock::setReadOnly(bool y)
{
    m_hours->setReadOnly(y);
    m_minutes->setReadOnly(y);
}

void KelClock::setTime(QTime t)
{
    if (!t.isValid() || t == time())
        return;
    m_hours->setSelectedText(QString::number(t.hour()));
    m_minutes->setSelectedText(QString::number(t.minute()));
    numSelected();
}

void KelClock::setHour(int hour)
{
    setTime(QTime(hour, time().minute()));
}

void KelClock::setMinute(int minute)
{
    setTime(QTime(time().hour(), minute));
}

void KelClock::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        dressFaces();
    QWidget::changeEvent(event);
}

void KelClock::s_anim0(float v)
{
    if (!std::isfinite(v))
        return;
    m_hours->setCurrentAngle(OtherHand, v);
    m_minutes->setCurrentAngle(OwnHand, v);
}

void KelClock::s_anim1(float v)
{
    if (!std::isfinite(v))
        return;
    m_hours->setCurrentAngle(OwnHand, v);
    m_minutes->setCurrentAngle(OtherHand, v);
}

void KelClock::numSelected()
{
    const int hour = m_hours->selectedText().toInt();
    const int minute = m_minutes->selectedText().toInt();
    const auto hourAngle = static_cast<float>(turned(hour % HoursPerRing, HoursPerRing));
    const auto minuteAngle = static_cast<float>(turned(minute, MinutesPerHour));
    m_hours->setTargetAngle(OtherHand, minuteAngle);
    m_hours->setTargetAngle(OwnHand, hourAngle);
    m_minutes->setTargetAngle(OtherHand, hourAngle);
    m_minutes->setTargetAngle(OwnHand, minuteAngle);
    animate();
    announce();
}

void KelClock::announce()
{
    const QPointer<KelClock> self(this); // A listener may delete the clock.
    const QTime before = std::exchange(m_announced, time());
    // Read anew each time: a listener may also set another one.
    if (time().hour() != before.hour())
        emit hourChanged(time().hour());
    if (self && time().minute() != before.minute())
        emit minuteChanged(time().minute());
    if (self)
        emit timeChanged(time());
}

void KelClock::animate()
{
    animateTo(*m_minuteAnimation, m_hours->targetAngle(OtherHand));
    animateTo(*m_hourAnimation, m_hours->targetAngle(OwnHand));
}
