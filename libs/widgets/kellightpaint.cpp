// How a light looks.
#include "kellight.h"

#include "kellightgeometry.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

using KelLightGeometry::Layout;

namespace
{

// The ring's angles begin at the bottom.
constexpr qreal RingBegin = 90.0;

// A gradient is a table of colours: its edges are not sharper than this, in degrees.
constexpr double GradientBlur = 2.0;

// A picture of the resource set, decoded once for all lights.
QImage lightPicture(KelLight::IconType type, const char *stage)
{
    static const char *const names[] = {"bulb", "led", "spot"};
    static QHash<QString, QImage> decoded;

    const QString path =
        QStringLiteral(":/icons/light_%1_%2.png").arg(QLatin1String(names[type]), QLatin1String(stage));
    auto found = decoded.find(path);
    if (found == decoded.end())
        found = decoded.insert(path, QImage(path).convertToFormat(QImage::Format_ARGB32_Premultiplied));
    return *found;
}

QPixmap scaled(const QImage &image, const QSize &size, qreal pixelRatio)
{
    if (image.isNull() || size.isEmpty())
        return {};
    QPixmap pixmap =
        QPixmap::fromImage(image.scaled(size * pixelRatio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    pixmap.setDevicePixelRatio(pixelRatio);
    return pixmap;
}

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

// For a ring around \a centre on an unturned painter.
QBrush ringBrush(const QPointF &centre, double percent, qreal glow, double shift, const QColor &fill,
                 const QColor &back)
{
    const double end = unlitEnd(percent, glow, shift);
    const double lit = qBound(0.0, glow / 360.0 + end, 1.0);
    if (lit <= 0.0)
        return fill;

    QConicalGradient gradient(centre, -RingBegin);
    gradient.setColorAt(1.0, fill);
    gradient.setColorAt(lit, fill);
    gradient.setColorAt(qBound(0.0, end, 1.0), back);
    gradient.setColorAt(0.0, back);
    return gradient;
}

QRectF squareAround(qreal radius)
{
    return {-radius, -radius, 2.0 * radius, 2.0 * radius};
}

// Around the centre, what of the ring looks different at the levels \a from and \a to.
QRectF changedPart(const Layout &where, double shift, double from, double to)
{
    const double fromEnd = unlitEnd(from, where.glow, shift) * 360.0;
    const double toEnd = unlitEnd(to, where.glow, shift) * 360.0;
    const double begin = qMin(fromEnd, toEnd) - GradientBlur;
    const double sweep = qMin(360.0, qMax(fromEnd, toEnd) + where.glow + GradientBlur - begin);

    const qreal outer = where.radius + where.penWidth;
    QPainterPath path;
    path.arcMoveTo(squareAround(outer), begin);
    path.arcTo(squareAround(outer), begin, sweep);
    const qreal inner = qMax(1e-3, outer - where.ringWidth - 2.0 * where.penWidth); // an arc needs a size
    path.arcTo(squareAround(inner), begin + sweep, -sweep);
    return QTransform().rotate(RingBegin).mapRect(path.boundingRect());
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
    m_images = {lightPicture(it, "0"), lightPicture(it, "100"), lightPicture(it, "w"), lightPicture(it, "h")};
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
    m_pictures = {scaled(m_images.off, size, ratio), scaled(m_images.full, size, ratio),
                  scaled(m_images.warm, size, ratio), scaled(m_images.halo, size, ratio)};
}

void KelLight::dropPaintings()
{
    m_base = QPixmap();
    m_ringShape = QPixmap();
    m_overRing = QPixmap();
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

    QPainter painter(this);
    if (m_animation.state() == QAbstractAnimation::Running) {
        paintLight(painter);
        return;
    }
    if (m_still.isNull()) {
        m_still = emptyPainting();
        QPainter stillPainter(&m_still);
        paintLight(stillPainter);
    }
    painter.drawPixmap(0, 0, m_still);
}

QPixmap KelLight::emptyPainting() const
{
    QPixmap painting(size() * m_pictureRatio);
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
    painter.drawPixmap(0, 0, m_base);
    painter.translate(width() * 0.5, height() * 0.5);
    drawGlow(painter, where.picture, percent);
}

// The ring's gradient costs more than all pictures, so a fade paints only the part that it moves over,
// and through a stencil instead of once more along curved lines.
void KelLight::updateBase(const Layout &where, double percent)
{
    const bool isNew = m_base.isNull();
    if (!isNew && (m_binary || percent == m_basePercent))
        return;
    if (isNew) {
        m_base = emptyPainting();
        paintStencils(where);
    }

    const QPointF centre(width() * 0.5, height() * 0.5);
    const QRectF changed = changedPart(where, m_angleShift, m_basePercent, percent).translated(centre);
    const QRect part = isNew ? rect() : changed.toAlignedRect().adjusted(-1, -1, 1, 1);
    QPainter painter(&m_base);
    painter.setClipRect(part);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawPixmap(0, 0, m_ringShape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(part, ringBrush(centre, percent, where.glow, m_angleShift, m_fillColor, m_backColor));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawPixmap(0, 0, m_overRing);
    m_basePercent = percent;
}

void KelLight::paintStencils(const Layout &where)
{
    const QRectF ring = squareAround(where.radius);
    QPainterPath path;
    if (m_binary)
        path.addEllipse(ring);
    else
        path = ringPath(ring, where.ringWidth, m_angleShift);
    const QPen line(QBrush(Qt::darkGray), where.penWidth, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);

    const auto draw = [&](QPixmap &stencil, const QPen &pen, const QBrush &brush, const QPixmap &lamp) {
        stencil = emptyPainting();
        QPainter painter(&stencil);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.translate(width() * 0.5, height() * 0.5);
        painter.save();
        painter.rotate(RingBegin);
        painter.setPen(pen);
        painter.setBrush(brush);
        painter.drawPath(path);
        painter.restore();
        painter.drawPixmap(where.picture.topLeft(), lamp);
    };
    draw(m_ringShape, Qt::NoPen, m_binary ? QBrush() : QBrush(Qt::black), QPixmap());
    draw(m_overRing, line, QBrush(), m_pictures.off);
}

void KelLight::drawGlow(QPainter &painter, const QRect &picture, double percent) const
{
    const auto draw = [&](const QPixmap &stage, double opacity) {
        if (stage.isNull() || opacity <= 0.0)
            return;
        painter.setOpacity(qMin(1.0, opacity));
        painter.drawPixmap(picture.topLeft(), stage);
    };
    draw(m_pictures.full, std::pow(percent / 75.0, 0.5));
    draw(m_pictures.warm, std::pow(percent / 20.0, 0.4));
    draw(m_pictures.halo, percent > 70.0 ? std::pow((percent - 70.0) / 30.0, 1.5) : 0.0);
}
