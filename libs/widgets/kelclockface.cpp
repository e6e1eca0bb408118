#include "kelclockface.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>

#include <cmath>

namespace
{

constexpr QSize UsualSize(128, 128);
constexpr QSize SmallestSize(32, 32);

constexpr int MinutesPerHour = 60;
constexpr int TapMinutes = 5; // A finger does not hit single minutes.

int nearestTapMinute(int minute)
{
    return qRound(minute / static_cast<qreal>(TapMinutes)) * TapMinutes;
}

} // namespace

KelClock::_NumericCircle::_NumericCircle(QVector<ClockRing> rings, QVector<Arrow> hands, KelClock *clock)
    : QWidget(clock)
    , m_rings(std::move(rings))
    , m_hands(std::move(hands))
    , m_clock(clock)
{
}

void KelClock::_NumericCircle::setSelectedText(const QString &text)
{
    m_selectedText = text;
    m_still = QPixmap(); // The parts stay where they are.
    update();
}

void KelClock::_NumericCircle::setCurrentAngle(int hand, float angle)
{
    m_hands[hand].currentAngle = angle;
    update(clockHandsArea(m_parts, m_hands));
}

QSize KelClock::_NumericCircle::sizeHint() const
{
    return UsualSize;
}

QSize KelClock::_NumericCircle::minimumSizeHint() const
{
    return SmallestSize;
}

bool KelClock::_NumericCircle::Look::operator==(const Look &other) const
{
    return shift == other.shift && qFuzzyCompare(pixelRatio, other.pixelRatio);
}

void KelClock::_NumericCircle::changeEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
    case QEvent::EnabledChange:
        dropStill();
        break;
    default:
        break;
    }
    QWidget::changeEvent(event);
}

void KelClock::_NumericCircle::dropStill()
{
    m_layoutSize = QSize();
    update();
}

void KelClock::_NumericCircle::mousePressEvent(QMouseEvent *event)
{
    mouseMoveEvent(event);
}

void KelClock::_NumericCircle::mouseMoveEvent(QMouseEvent *event)
{
    if (event->type() == QEvent::MouseMove && event->buttons() == Qt::NoButton)
        return;
    if (m_ringWidths.size() != m_rings.size() || m_isReadOnly)
        return;

    const QString text = pickedText(*event);
    if (text.isEmpty() || text == m_selectedText)
        return;
    setSelectedText(text);
    // Who listens may delete the clock, so this stays the last line.
    QMetaObject::invokeMethod(m_clock, "numSelected");
}

QString KelClock::_NumericCircle::pickedText(const QMouseEvent &event)
{
    const ClockPointer pointer = clockPointer(event.pos(), size());
    if (m_rings.size() > 1)
        return clockNumberAt(pointer, size(), m_rings, m_ringWidths);

    int minute = clockMinuteAt(pointer);
    if (event.type() != QEvent::MouseMove)
        m_pressMinute = minute;
    if (minute == m_pressMinute)
        minute = nearestTapMinute(minute);
    else
        m_pressMinute = -1; // From now on the finger is after single minutes, also where it came down.
    return QString::number(minute % MinutesPerHour);
}

void KelClock::_NumericCircle::paintEvent(QPaintEvent *)
{
    layOut();
    m_ringWidths.clear();
    for (const ClockRingParts &ring : qAsConst(m_parts.rings))
        m_ringWidths.append(ring.width);

    QPainter painter(this);
    const Look look = lookOn(painter);
    if (m_still.isNull() || !(look == m_look))
        paintStill(look);
    painter.drawPixmap(m_area.topLeft() - look.shift, m_still);
    drawClockHands(painter, m_parts, m_hands);
}

void KelClock::_NumericCircle::layOut()
{
    if (m_layoutSize == size())
        return;
    m_layoutSize = size();
    m_parts = layoutClockFace(size(), font(), m_rings);
    m_area = clockFaceArea(m_parts, size());
    m_still = QPixmap();
}

KelClock::_NumericCircle::Look KelClock::_NumericCircle::lookOn(const QPainter &painter) const
{
    const qreal pixelRatio = painter.paintEngine()->paintDevice()->devicePixelRatioF();
    const QPointF corner = painter.deviceTransform().map(QPointF(m_area.topLeft()));
    const QPointF pixel(std::floor(corner.x()), std::floor(corner.y()));
    return {(corner - pixel) / pixelRatio, pixelRatio};
}

void KelClock::_NumericCircle::paintStill(const Look &look)
{
    m_look = look;
    // One pixel more, since the face may begin within the first one.
    const QSizeF pixels = QSizeF(m_area.size()) * look.pixelRatio;
    m_still =
        QPixmap(static_cast<int>(std::ceil(pixels.width())) + 1, static_cast<int>(std::ceil(pixels.height())) + 1);
    m_still.setDevicePixelRatio(look.pixelRatio);
    m_still.fill(Qt::transparent);
    QPainter painter(&m_still);
    painter.translate(look.shift - m_area.topLeft());
    drawClockFace(painter, m_parts, m_rings, m_selectedText, clockPlateColor(palette()));
}
