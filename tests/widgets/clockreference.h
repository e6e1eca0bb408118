/// \file
/// The faces of a KelClock painted line by line, to compare with.
#pragma once

#include "clockbench.h"

#include <QPainter>

/// A ring of numbers.
struct Numbers {
    QStringList texts;
    int each; // The angle between two, in parts of a turn.
};

inline QVector<Numbers> numbersOf(int face)
{
    if (face == 0)
        return {{outerHours(), 12}, {innerHours(), 12}};
    return {{faceMinutes(), 12}};
}

inline QPointF around(double radius, double angle)
{
    return {radius * std::sin(angle), -radius * std::cos(angle)};
}

inline QPen blackPen(double width, Qt::PenCapStyle cap = Qt::SquareCap)
{
    return {Qt::black, width, Qt::SolidLine, cap, Qt::BevelJoin};
}

inline void drawReferenceNumbers(QPainter &painter, const Numbers &numbers, QFont font, const QString &selected,
                                 double radius, double textRadius, int side)
{
    for (int i = 0; i < numbers.texts.size(); ++i) {
        const double angle = 2.0 * static_cast<double>(3.1415927F) * (i + 1) / numbers.each;
        const QPointF place = around(textRadius, angle);
        const bool isSelected = !selected.isEmpty() && numbers.texts.at(i).toInt() == selected.toInt();
        font.setWeight(isSelected ? 75 : 50);
        painter.setFont(font);
        if (isSelected) {
            painter.setOpacity(0.5);
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(128, 128, 255));
            painter.drawEllipse(place, radius / 7.0, radius / 7.0);
        }
        painter.setOpacity(1.0);
        painter.setPen(Qt::black);
        const double reach = side / 2.0 + 1.0;
        painter.drawText(QRectF(place.x() + 1.0 - reach, place.y() + 1.0 - reach, side, side),
                         Qt::AlignCenter | Qt::TextDontClip, numbers.texts.at(i));
    }
}

/// Draws \a face of \a clock as a whole, straight onto \a painter and without any picture in between.
inline void drawReference(QPainter &painter, const KelClock &clock, int face, const QString &selected)
{
    const QWidget &widget = *faceOf(clock, face);
    const double smaller = std::min(widget.width(), widget.height());
    const double pen = std::max(smaller / 2.0 / 80.0, 1.0);
    const double radius = (smaller / 2.0 - pen) / 1.1;
    painter.translate(widget.width() / 2.0, widget.height() / 2.0);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(blackPen(pen));
    painter.drawEllipse(QPointF(), smaller / 2.0 - pen - 1.0, smaller / 2.0 - pen - 1.0);

    QFont font = widget.font();
    font.setPixelSize(static_cast<int>((smaller / 2.0 - pen) / 5.7));
    double offset = 0.0;
    for (const Numbers &numbers : numbersOf(face)) {
        const int side = numberSide(widget, numbers.texts);
        painter.setOpacity(0.5);
        painter.setPen(blackPen(pen / 2.0));
        painter.setBrush(Qt::NoBrush);
        const double circle = radius - offset + 0.2 * side;
        painter.drawEllipse(QPointF(), circle, circle);
        drawReferenceNumbers(painter, numbers, font, selected, radius, radius - (side / 2.0 + 1.0) - offset, side);
        offset += 1.4 * side;
    }

    struct Hand {
        float width, length, opacity, angle;
    };
    const Hand hour = {0.075F, 0.275F, face == 0 ? 1.0F : 0.66F, clock.h__anim1()};
    const Hand minute = {0.03F, 0.35F, face == 0 ? 0.66F : 1.0F, clock.h__anim0()};
    for (const Hand &hand : face == 0 ? QVector<Hand>{minute, hour} : QVector<Hand>{hour, minute}) {
        painter.setOpacity(static_cast<double>(hand.opacity));
        painter.setPen(blackPen(radius * static_cast<double>(hand.width), Qt::RoundCap));
        painter.drawLine(QPointF(), around(radius * static_cast<double>(hand.length), static_cast<double>(hand.angle)));
    }
}

inline QImage reference(const KelClock &clock, int face, const QString &selected, qreal pixelRatio = 1.0,
                        const QColor &ground = Qt::transparent)
{
    QImage image((QSizeF(faceOf(clock, face)->size()) * pixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixelRatio);
    image.fill(ground);
    QPainter painter(&image);
    drawReference(painter, clock, face, selected);
    return image;
}

inline int farthest(const QImage &a, const QImage &b)
{
    int difference = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            difference = std::max({difference, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                   std::abs(qBlue(p) - qBlue(q)), std::abs(qAlpha(p) - qAlpha(q))});
        }
    }
    return difference;
}

/// Gives every face of \a clock a size and puts the hands somewhere.
inline void arrange(KelClock &clock, const QSize &faceSize, const QTime &time)
{
    for (int i = 0; i < 2; ++i)
        faceOf(clock, i)->setFixedSize(faceSize);
    clock.adjustSize();
    clock.layout()->activate();
    clock.setTime(time);
    finishAnimations(clock);
    clock.setProperty("h__anim0", 0.4F + clock.h__anim0());
    clock.setProperty("h__anim1", 0.2F + clock.h__anim1());
}

inline QString textOf(const QTime &time, int face)
{
    return time.isValid() ? QString::number(face == 0 ? time.hour() : time.minute()) : QString();
}
