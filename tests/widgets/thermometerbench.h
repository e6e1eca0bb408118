/// \file
/// A thermometer whose column stands still, what it shows, and the same picture painted step by step.
#pragma once

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPropertyAnimation>
#include <cmath>
#include <kelthermometer.h>

/// Ends the animation and puts the column to \a level.
inline void settle(KelThermometer &thermometer, double level)
{
    thermometer.findChild<QPropertyAnimation *>()->stop();
    thermometer.setProperty("h__anim", level);
}

/// What \a thermometer shows on \a background, with \a ratio pixels of the picture for each of the widget.
inline QImage rendered(KelThermometer &thermometer, const QColor &background = Qt::white,
                       QImage::Format format = QImage::Format_ARGB32_Premultiplied, qreal ratio = 1.0)
{
    QImage image((QSizeF(thermometer.size()) * ratio).toSize(), format);
    image.setDevicePixelRatio(ratio);
    image.fill(background);
    thermometer.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

/// A thermometer painted without anything kept: every rule of the picture once more, one after the other.
struct StepByStep {
    QSize size = {120, 300};
    double level = 0.0;
    double minimum = -30.0;
    double maximum = 30.0;
    double gradMinimum = -50.0;
    double gradMaximum = 50.0;

    QColor color() const
    {
        const double t = (level - minimum) / (maximum - minimum);
        const bool cold = t < 0.5;
        const double x = cold ? std::sqrt(1 - 2 * qMax(t, 0.0)) / 2 : (1 - 2 * qMin(t, 1.0)) / 2;
        const double s = std::sin((x + 0.5) * 3.14159265358979323846);
        return QColor::fromHsv(cold ? 200 : 20, int((1 - s * s) * 255), int((1 - s / 2) * 255));
    }

    static QPen pen(qreal width) { return {Qt::black, width, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin}; }

    QPainterPath outline(float r, float height) const
    {
        QPainterPath bulb;
        if (r > 3)
            bulb.addEllipse(QPointF(), qreal(r - 3), qreal(r - 3));
        QPainterPath cap;
        cap.addEllipse(qreal(-r / 2), qreal(-height + r + 3), qreal(r), qreal(r));
        QPainterPath tube;
        tube.addRect(qreal(-r / 2), qreal(3 - r / 2), qreal(r), qreal(-height + 2 * r - 3));
        return bulb.united(cap).united(tube);
    }

    void drawScale(QPainter &painter, float h, float length, qreal width) const
    {
        QFont font;
        const int pixelSize = int(qMin(h / 2, length / 4));
        if (pixelSize > 0)
            font.setPixelSize(pixelSize);
        painter.setFont(font);
        const int th = QFontMetrics(font).boundingRect(QStringLiteral("0")).height();
        for (int i = int(gradMinimum); i <= int(gradMaximum); ++i) {
            const double y = -((i - gradMinimum) / (gradMaximum - gradMinimum)) * double(length);
            const bool ten = i % 10 == 0;
            const bool five = i % 5 == 0;
            painter.setPen(pen(ten ? width : (five ? width / 1.5 : width / 2)));
            painter.drawLine(int(-h), int(y), int(ten ? -h / 4 : (five ? -h / 2 : -h / 1.25f)), int(y));
            if (ten && pixelSize > 0)
                painter.drawText(0, int(y + th / 4.0), QString::number(i));
        }
    }

    void drawInside(QPainter &painter, const QPainterPath &path, float r, float length) const
    {
        const float h = r / 2;
        const double t = (level - gradMinimum) / (gradMaximum - gradMinimum);
        const float f = t >= 1 ? length : (t < 0 ? 0 : float(t) * length);

        QRect clip(int(-r), int(r), int(2 * r), int(-2 * r - f)); // upwards from the bulb's bottom
        painter.setClipRect(clip);
        QRadialGradient liquid(QPointF(0, 0), qreal(r), QPointF(qreal(-h / 1.5f), qreal(h / 1.5f)));
        liquid.setColorAt(0, Qt::white);
        liquid.setColorAt(1, color());
        painter.fillPath(path, liquid);

        clip = QRect(clip.x(), clip.y() + clip.height(), clip.width(), -size.height());
        painter.setClipRect(clip);
        QLinearGradient glass(qreal(-h), 0, qreal(h), 0);
        glass.setColorAt(0, Qt::white);
        glass.setColorAt(1, Qt::transparent);
        painter.fillPath(path, glass);
        painter.setClipping(false);
    }

    /// The whole picture, or only its lines and digits.
    void draw(QPainter &painter, bool linesOnly = false) const
    {
        const float width = float(size.width());
        const float height = float(size.height());
        const float r = qMin(width, height) / qBound(2.0f, 7 - height / width, 7.0f);
        const float length = height - 2.5f * r;
        const qreal penWidth = qreal(qMax(r / 2 / 25, 1.0f));
        const QPainterPath path = outline(r, height);

        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(qreal(width / 2), qreal(height - r));
        if (length > 5.0f) {
            if (!linesOnly)
                drawInside(painter, path, r, length);
            painter.translate(0, qreal(-r));
            drawScale(painter, r / 2, length, penWidth);
            painter.translate(0, qreal(r));
        }
        painter.strokePath(path, pen(penWidth));
    }

    QImage image(const QColor &background, QImage::Format format, qreal ratio, bool linesOnly = false) const
    {
        QImage image((QSizeF(size) * ratio).toSize(), format);
        image.setDevicePixelRatio(ratio);
        image.fill(background);
        QPainter painter(&image);
        draw(painter, linesOnly);
        return image;
    }

    void applyTo(KelThermometer &thermometer) const
    {
        thermometer.resize(size);
        thermometer.setGradMinimum(gradMinimum);
        thermometer.setGradMaximum(gradMaximum);
        thermometer.setMinimum(minimum);
        thermometer.setMaximum(maximum);
        settle(thermometer, level);
    }

    /// Says where \a thermometer does not paint this picture; empty when it does. A step of 255 is left to
    /// the rounding of gradients, and three under lines and digits: thin lines cross themselves, which is
    /// rounded once as a kept picture and each time when it is painted.
    QString difference(KelThermometer &thermometer, const QColor &background, QImage::Format format,
                       qreal ratio = 1.0) const
    {
        const QImage actual = rendered(thermometer, background, format, ratio);
        const QImage expected = image(background, format, ratio);
        const QImage lines = image(Qt::transparent, QImage::Format_ARGB32_Premultiplied, ratio, true);
        for (int y = 0; y < expected.height(); ++y) {
            for (int x = 0; x < expected.width(); ++x) {
                const QRgb a = actual.pixel(x, y);
                const QRgb b = expected.pixel(x, y);
                const int off = qMax(qMax(qAbs(qRed(a) - qRed(b)), qAbs(qGreen(a) - qGreen(b))),
                                     qMax(qAbs(qBlue(a) - qBlue(b)), qAbs(qAlpha(a) - qAlpha(b))));
                if (off > (qAlpha(lines.pixel(x, y)) == 0 ? 1 : 3))
                    return QStringLiteral("at %1, %2: %3 instead of %4").arg(x).arg(y).arg(a, 0, 16).arg(b, 0, 16);
            }
        }
        return QString();
    }
};
