#include "kelclockface.h"

#include "sharedlooks.h"

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

/// All that the still parts look like, but for the highlighted number.
struct StillLook {
    QSize size;
    QFont font;
    QVector<ClockRing> rings;
    QColor plate;
    QPointF shift;
    qreal pixelRatio;

    bool operator==(const StillLook &other) const
    {
        return size == other.size && font == other.font && rings == other.rings && plate == other.plate &&
               shift == other.shift && pixelRatio == other.pixelRatio;
    }
};

uint qHash(const StillLook &look, uint seed)
{
    return ::qHash(look.size.width(), seed);
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
    m_still = stillWithoutHighlight(look);
    const QRectF changed = clockHighlightArea(m_parts, m_rings, m_selectedText);
    if (changed.isEmpty())
        return;

    // Only there the highlight shows. The rest is not painted again, but for the rings' lines: cut short, they
    // would come out a little otherwise.
    const QRectF onPicture = changed.translated(look.shift - m_area.topLeft());
    const QRectF pixels(onPicture.topLeft() * look.pixelRatio, onPicture.size() * look.pixelRatio);
    const QRect part = pixels.toAlignedRect() & m_still.rect();
    QPixmap highlighted = paintedStill(look, m_selectedText, changed.adjusted(-1.0, -1.0, 1.0, 1.0));
    highlighted.setDevicePixelRatio(1.0);
    m_still.setDevicePixelRatio(1.0);
    QPainter painter(&m_still);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawPixmap(part.topLeft(), highlighted, part);
    painter.end();
    m_still.setDevicePixelRatio(look.pixelRatio);
}

/// The still parts with no number highlighted, which faces that look alike share.
QPixmap KelClock::_NumericCircle::stillWithoutHighlight(const Look &look) const
{
    const StillLook shared{size(), font(), m_rings, clockPlateColor(palette()), look.shift, look.pixelRatio};
    if (const QPixmap *known = SharedLooks<StillLook, QPixmap>::find(shared))
        return *known;
    const QPixmap still = paintedStill(look, QString(), QRectF(QPointF(), size()));
    SharedLooks<StillLook, QPixmap>::keep(shared, still, still.width() * still.height() * still.depth() / 8 / 1024);
    return still;
}

/// The still parts with the number that is \a selected highlighted; in \a area all of them are there.
QPixmap KelClock::_NumericCircle::paintedStill(const Look &look, const QString &selected, const QRectF &area) const
{
    // One pixel more, since the face may begin within the first one.
    const QSizeF pixels = QSizeF(m_area.size()) * look.pixelRatio;
    QPixmap still(static_cast<int>(std::ceil(pixels.width())) + 1, static_cast<int>(std::ceil(pixels.height())) + 1);
    still.setDevicePixelRatio(look.pixelRatio);
    still.fill(Qt::transparent);
    QPainter painter(&still);
    painter.translate(look.shift - m_area.topLeft());
    drawClockFace(painter, m_parts, m_rings, selected, clockPlateColor(palette()), area);
    return still;
}
