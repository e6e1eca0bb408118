/// \file
/// The faces of a KelClock, and pointers on them.
#pragma once

#include "mousedrag.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QImage>
#include <QPropertyAnimation>
#include <QTest>
#include <kelclock.h>

#include <algorithm>
#include <cmath>

inline constexpr double TestPi = 3.14159265358979323846;

/// The faces stand in their layout from the hours to the minutes.
inline QWidget *faceOf(const KelClock &clock, int index)
{
    return clock.layout()->itemAt(index)->widget();
}

inline QPropertyAnimation *animationOf(const KelClock &clock, const char *property)
{
    for (auto *animation : clock.findChildren<QPropertyAnimation *>()) {
        if (animation->propertyName() == property)
            return animation;
    }
    return nullptr;
}

/// Brings the hands to where they go.
inline void finishAnimations(const KelClock &clock)
{
    for (auto *animation : clock.findChildren<QPropertyAnimation *>()) {
        if (animation->state() == QAbstractAnimation::Running)
            animation->setCurrentTime(animation->duration());
    }
}

/// What \a widget paints on nothing, for a device of \a pixelRatio.
inline QImage rendered(QWidget &widget, qreal pixelRatio = 1.0, const QColor &ground = Qt::transparent)
{
    QImage image((QSizeF(widget.size()) * pixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixelRatio);
    image.fill(ground);
    widget.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

/// A point of \a face at \a distance from its centre and \a degrees clockwise from 12 o'clock.
inline QPointF pointOn(const QWidget &face, double degrees, double distance)
{
    const double angle = degrees * TestPi / 180.0;
    return {face.width() / 2.0 + distance * std::sin(angle), face.height() / 2.0 - distance * std::cos(angle)};
}

/// The side of the square that holds the largest of \a texts on \a face.
inline int numberSide(const QWidget &face, const QStringList &texts)
{
    const double half = std::min(face.width(), face.height()) / 2.0;
    QFont font = face.font();
    font.setPixelSize(std::max(1, static_cast<int>((half - std::max(half / 80.0, 1.0)) / 5.7)));
    int side = 0;
    for (const QString &text : texts) {
        const QRect bounds = QFontMetrics(font).boundingRect(text);
        side = std::max({side, bounds.width() + 1, bounds.height() + 1});
    }
    return side;
}

inline QStringList outerHours()
{
    return {"13", "14", "15", "16", "17", "18", "19", "20", "21", "22", "23", "00"};
}

inline QStringList innerHours()
{
    return {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"};
}

inline QStringList faceMinutes()
{
    return {"5", "10", "15", "20", "25", "30", "35", "40", "45", "50", "55", "0"};
}

/// A clock that is on the screen and has been painted, with faces of one size.
class ClockBench
{
public:
    explicit ClockBench(const QSize &faceSize = QSize(300, 300))
        : hours(faceOf(clock, 0))
        , minutes(faceOf(clock, 1))
    {
        hours->setFixedSize(faceSize);
        minutes->setFixedSize(faceSize);
        clock.show();
        if (!QTest::qWaitForWindowExposed(&clock))
            qFatal("the clock is not shown");
        rendered(*hours);
        rendered(*minutes);
    }

    static void press(QWidget *face, const QPointF &position, Qt::MouseButton button = Qt::LeftButton)
    {
        send(face, QEvent::MouseButtonPress, position, button);
    }

    static void release(QWidget *face, const QPointF &position)
    {
        send(face, QEvent::MouseButtonRelease, position, Qt::LeftButton);
    }

    static void tap(QWidget *face, const QPointF &position)
    {
        press(face, position);
        release(face, position);
    }

    static void send(QWidget *face, QEvent::Type type, const QPointF &position, Qt::MouseButton button)
    {
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
        QMouseEvent event(type, position, face->mapToGlobal(position.toPoint()), button, held, Qt::NoModifier);
        QApplication::sendEvent(face, &event);
    }

    KelClock clock;
    QWidget *hours;
    QWidget *minutes;
};
