/// \file
/// A panel's plot whose icon turns when the test says so.
#pragma once

#include <kelgraphic.h>
#include <scaling.h>

#include <QAbstractEventDispatcher>
#include <QPainter>
#include <QTimerEvent>

#include <cmath>

inline constexpr int TickMs = 25;
/// Long enough for what waits to be painted.
inline constexpr int SettleMs = 60;
inline constexpr double Inset = 0.7;
/// Where the middle of the icon's spokes lies, in icon sizes from its middle.
inline constexpr double SpokeRadius = 0.3125;

inline QStringList texts(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *text : list)
        result << QString::fromLatin1(text);
    return result;
}

/// The icon's timers: of the interval that it turns at.
inline QList<QAbstractEventDispatcher::TimerInfo> iconTimers(KelGraphic &plot)
{
    QList<QAbstractEventDispatcher::TimerInfo> found;
    for (const auto &info : QAbstractEventDispatcher::instance()->registeredTimers(&plot)) {
        if (info.interval == TickMs)
            found << info;
    }
    return found;
}

/// A plot whose icon turns when the test says so, and not by itself.
class SteppedGraphic : public KelGraphic
{
public:
    void tick()
    {
        const auto timers = iconTimers(*this);
        if (timers.size() != 1)
            qFatal("%d timers turn the icon", timers.size());
        deliver(timers.first().timerId);
    }

    /// As if the timer \a id had run out.
    void deliver(int id)
    {
        QTimerEvent event(id);
        KelGraphic::timerEvent(&event);
    }

protected:
    void timerEvent(QTimerEvent *event) override
    {
        for (const auto &info : iconTimers(*this)) {
            if (info.timerId == event->timerId())
                return;
        }
        KelGraphic::timerEvent(event);
    }
};

/// What \a plot adds to its canvas, on transparent ground.
inline QImage overlay(KelGraphic &plot)
{
    QImage picture(plot.canvas()->size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    Q_EMIT plot.graphicPaintEvent(&painter);
    return picture;
}

inline bool isEmpty(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) > 0)
                return false;
        }
    }
    return true;
}

inline bool showsIcon(KelGraphic &plot)
{
    return !isEmpty(overlay(plot));
}

/// The icon as it belongs on the canvas of \a plot at \a angle.
inline QImage expectedOverlay(KelGraphic &plot, int angle, bool smooth = true)
{
    QImage picture(plot.canvas()->size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    const double side = preferredIconSize(2.0F, &plot).width();
    QTransform place;
    place.translate(picture.width() - Inset * side, Inset * side);
    place.rotate(angle);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
    painter.setTransform(place);
    painter.drawImage(QRectF(-side / 2, -side / 2, side, side), QImage(QStringLiteral(":/icons/progress.png")));
    return picture;
}

/// How opaque the icon of \a plot is at the middle of the spoke that points \a degrees clockwise from the top.
inline int spokeAlpha(KelGraphic &plot, const QImage &picture, int degrees)
{
    const double side = preferredIconSize(2.0F, &plot).width();
    const double radians = degrees * std::acos(-1.0) / 180.0;
    const QPointF where(picture.width() - Inset * side + SpokeRadius * side * std::sin(radians),
                        Inset * side - SpokeRadius * side * std::cos(radians));
    return qAlpha(picture.pixel(int(where.x()), int(where.y())));
}

/// A plot on the screen with two variables.
inline void show(KelGraphic &plot)
{
    plot.resize(400, 240);
    plot.setVariables(texts({"a=Alpha", "b=Beta"}));
    plot.show();
    plot.grab(); // so that the canvas has its size
}
