// How a light looks.
#include "kellight.h"

#include "inkedpicture.h"
#include "kellightgeometry.h"
#include "kellightpictures.h"
#include "kellightring.h"
#include "sharedlooks.h"

#include <QPainter>
#include <QPainterPath>
#include <QTimer>

#include <cmath>
#include <tuple>

using KelLightGeometry::Layout;

namespace
{

// The ring's angles begin at the bottom.
constexpr qreal RingBegin = 90.0;

QPainterPath ringPath(const QRectF &outer, qreal width, double shift)
{
    QPainterPath path;
    path.arcMoveTo(outer, shift);
    const QPointF begin = path.currentPosition();
    path.arcTo(outer, shift, 360.0 - 2.0 * shift);

    const QRectF inner = outer.adjusted(width, width, -width, -width);
    QPainterPath back;
    back.arcMoveTo(inner, -shift);
    back.arcTo(inner, -shift, 2.0 * shift - 360.0);
    back.lineTo(begin);
    path.connectPath(back);
    return path;
}

// Where the unlit part of the ring ends, as a share of the full circle.
double unlitEnd(double percent, qreal glow, double shift)
{
    return (360.0 - 2.0 * shift) / 360.0 * (1.0 - percent / (100.0 - glow / 3.6)) + shift / 360.0;
}

// From the end of the ring to its begin.
QGradientStops ringColors(double percent, qreal glow, double shift, const QColor &fill, const QColor &back)
{
    const double end = unlitEnd(percent, glow, shift);
    const double lit = qBound(0.0, glow / 360.0 + end, 1.0);
    if (lit <= 0.0)
        return {{0.0, fill}, {1.0, fill}};

    QGradient gradient;
    gradient.setColorAt(1.0, fill);
    gradient.setColorAt(lit, fill);
    gradient.setColorAt(qBound(0.0, end, 1.0), back);
    gradient.setColorAt(0.0, back);
    return gradient.stops();
}

QRectF squareAround(qreal radius)
{
    return {-radius, -radius, 2.0 * radius, 2.0 * radius};
}

/// What ring and unlit lamp look like, but for the ring's colours: lights that agree in this share them.
struct BaseLook {
    QSize size;
    qreal ratio;
    KelLight::IconType lamp;
    bool binary;
    double barSize;
    double angleShift;

    bool operator==(const BaseLook &other) const { return values() == other.values(); }

    std::tuple<int, int, qreal, int, bool, double, double> values() const
    {
        return {size.width(), size.height(), ratio, lamp, binary, barSize, angleShift};
    }
};

uint qHash(const BaseLook &look, uint seed)
{
    return ::qHash((qint64(look.size.width()) << 32) + look.size.height(), seed) + uint(look.lamp);
}

// How far the light is between its bounds, in percent.
double shownPercent(double level, double low, double high)
{
    const double share = (level - low) / qMax(high - low, 0.001);
    return share > 0.0 ? qMin(share, 1.0) * 100.0 : 0.0;
}

} // namespace

void KelLight::setIconType(IconType it)
{
    m_iconType = it;
    if (it < Bulb || it > Spot)
        return;
    m_lamp = it;
    m_pictureSize = QSize();
    scalePictures();
    refresh();
}

void KelLight::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    scalePictures();
    dropPaintings();
}

void KelLight::scalePictures()
{
    if (testAttribute(Qt::WA_PendingResizeEvent))
        return; // that event comes before the first painting, and with the size that counts
    const QSize size = KelLightGeometry::layout(this->size(), {m_binary, m_barSize, m_angleShift}).picture.size();
    const qreal ratio = devicePixelRatioF();
    if (size == m_pictureSize && ratio == m_pictureRatio)
        return;
    m_pictureSize = size;
    m_pictureRatio = ratio;
    m_pictures->fill({});
    m_isPrepared = false;
}

/// The first frame shows one stage. The others follow when it is on the screen, since the press that wants them should
/// not have to wait for them.
void KelLight::prepareStages()
{
    if (m_isPrepared)
        return;
    m_isPrepared = true;
    QTimer::singleShot(0, this, [this] {
        for (const LampStage stage : {LampStage::Full, LampStage::Warm, LampStage::Halo})
            stagePicture(stage);
    });
}

const InkedPicture &KelLight::stagePicture(LampStage stage)
{
    InkedPicture &picture = (*m_pictures)[size_t(stage)];
    if (picture.isNull() && !m_pictureSize.isEmpty()) {
        QImage image = lampPicture(m_lamp, stage, m_pictureSize * m_pictureRatio);
        image.setDevicePixelRatio(m_pictureRatio);
        picture = InkedPicture(image);
    }
    return picture;
}

void KelLight::dropPaintings()
{
    m_base.reset();
    m_still = QPixmap();
}

void KelLight::refresh()
{
    dropPaintings();
    update();
}

void KelLight::paintEvent(QPaintEvent *)
{
    // Sizes come with their own event; only a move to a screen of another pixel ratio shows here first.
    if (m_pictureRatio != devicePixelRatioF()) {
        scalePictures();
        dropPaintings();
    }

    prepareStages();
    QPainter painter(this);
    // A level that is seen for the first time may be one of many.
    const bool isMoving = m_animation.state() == QAbstractAnimation::Running || m_paintedLevel != m_shownLevel;
    m_paintedLevel = m_shownLevel;
    if (isMoving) {
        paintLight(painter);
        return;
    }
    if (m_still.isNull()) {
        QImage still = emptyPainting();
        QPainter stillPainter(&still);
        paintLight(stillPainter);
        stillPainter.end();
        m_still = QPixmap::fromImage(std::move(still));
    }
    painter.drawPixmap(0, 0, m_still);
}

QImage KelLight::emptyPainting() const
{
    QImage painting(size() * m_pictureRatio, QImage::Format_ARGB32_Premultiplied);
    painting.setDevicePixelRatio(m_pictureRatio);
    painting.fill(Qt::transparent);
    return painting;
}

void KelLight::paintLight(QPainter &painter)
{
    const Layout where = KelLightGeometry::layout(size(), {m_binary, m_barSize, m_angleShift});
    if (where.radius <= 0.0)
        return;
    const double percent = shownPercent(m_shownLevel, m_lowLevel, m_highLevel);

    updateBase(where, percent);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(0, 0, m_base->picture());
    painter.translate(width() * 0.5, height() * 0.5);
    drawGlow(painter, where.picture, percent);
}

void KelLight::updateBase(const Layout &where, double percent)
{
    if (m_base && percent == m_basePercent)
        return;
    const QGradientStops colors = ringColors(percent, where.glow, m_angleShift, m_fillColor, m_backColor);
    m_basePercent = percent;
    if (m_base) {
        m_base->setColors(colors);
        return;
    }
    // The lights of a panel mostly look alike, and then a copy shares all that it does not change.
    const BaseLook look{size(), m_pictureRatio, m_lamp, m_binary, m_barSize, m_angleShift};
    if (const KelLightRing *known = SharedLooks<BaseLook, KelLightRing>::find(look)) {
        m_base = std::make_unique<KelLightRing>(*known);
        m_base->setColors(colors);
        return;
    }
    m_base = makeBase(where);
    m_base->setColors(colors);
    SharedLooks<BaseLook, KelLightRing>::keep(look, *m_base, m_base->sizeInKibibytes());
}

std::unique_ptr<KelLightRing> KelLight::makeBase(const Layout &where)
{
    const QPointF centre(width() * 0.5, height() * 0.5);
    const QRectF ring = squareAround(where.radius);
    QPainterPath path;
    if (m_binary)
        path.addEllipse(ring);
    else
        path = ringPath(ring, where.ringWidth, m_angleShift);
    const QPen line(QBrush(Qt::darkGray), where.penWidth, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);

    const auto painted = [&](const QPen &pen, const QBrush &brush, const InkedPicture &lamp) {
        QImage image = emptyPainting();
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.translate(centre);
        painter.save();
        painter.rotate(RingBegin);
        painter.setPen(pen);
        painter.setBrush(brush);
        painter.drawPath(path);
        painter.restore();
        lamp.draw(painter, where.picture.topLeft());
        return image;
    };
    const QImage shape = m_binary ? QImage() : painted(Qt::NoPen, QBrush(Qt::black), {});
    return std::make_unique<KelLightRing>(shape, painted(line, QBrush(), stagePicture(LampStage::Off)),
                                          centre * m_pictureRatio);
}

void KelLight::drawGlow(QPainter &painter, const QRect &picture, double percent)
{
    const auto draw = [&](LampStage stage, double opacity) {
        if (picture.isEmpty() || opacity <= 0.0)
            return;
        painter.setOpacity(qMin(1.0, opacity));
        stagePicture(stage).draw(painter, picture.topLeft());
    };
    draw(LampStage::Full, std::pow(percent / 75.0, 0.5));
    draw(LampStage::Warm, std::pow(percent / 20.0, 0.4));
    draw(LampStage::Halo, percent > 70.0 ? std::pow((percent - 70.0) / 30.0, 1.5) : 0.0);
}
