#include "plotvariants.h"

#include <kelgraphic.h>

#include <QAbstractEventDispatcher>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double Start = 1767250800.0; // 2026-01-01 07:00 UTC
constexpr double Hour = 3600.0;

/// An hour of a room's climate.
void fillCurves(KelGraphic &plot)
{
    constexpr double PointsPerTurn = 40.0;
    for (int i = 0; i <= 120; ++i) {
        const double turn = i / PointsPerTurn;
        const double time = Start + 30.0 * i;
        plot.addPoint(time, 21.5 + 4.0 * std::sin(2.0 * turn), 0);
        plot.addPoint(time, 44.0 - 7.0 * std::sin(1.3 * turn) + std::sin(9.0 * turn), 1);
    }
}

/// Takes the progress icon's time away, so that it stands in every picture the same.
class StandingStill : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *, QEvent *event) override
    {
        return event->type() == QEvent::Timer && m_timers.contains(static_cast<QTimerEvent *>(event)->timerId());
    }

    void stop(int timer) { m_timers << timer; }

private:
    QList<int> m_timers;
};

void showStandingIcon(KelGraphic &plot)
{
    auto *filter = new StandingStill(&plot);
    const auto before = QAbstractEventDispatcher::instance()->registeredTimers(&plot);
    plot.showProgress();
    for (const auto &timer : QAbstractEventDispatcher::instance()->registeredTimers(&plot)) {
        const auto isTimer = [&timer](const auto &other) { return other.timerId == timer.timerId; };
        if (std::none_of(before.cbegin(), before.cend(), isTimer))
            filter->stop(timer.timerId);
    }
    plot.installEventFilter(filter);
    plot.setVisibleRange(Graphic::XAxis, Start, Start + Hour);
}

} // namespace

QVector<GalleryVariant> plotVariants()
{
    const auto variant = [](const char *caption, const QStringList &variables,
                            const std::function<void(KelGraphic &)> &dress) {
        return GalleryVariant{QString::fromLatin1(caption), [variables, dress](QWidget &widget) {
                                  auto &plot = static_cast<KelGraphic &>(widget);
                                  plot.setTimeAxis(true);
                                  plot.setVariables(variables);
                                  dress(plot);
                              }};
    };
    const QStringList climate = {QStringLiteral("room.0=Temperature"), QStringLiteral("room.1=Humidity")};
    const QStringList pumps = {QStringLiteral("p.0=Inlet"),  QStringLiteral("p.1=Outlet"), QStringLiteral("p.2=Bypass"),
                               QStringLiteral("p.3=Return"), QStringLiteral("p.4=Tank"),   QStringLiteral("p.5=Drain")};
    return {
        variant("two variables", climate, fillCurves),
        variant("waiting for data", climate, showStandingIcon),
        variant("with cursor, inputs and status", climate,
                [](KelGraphic &plot) {
                    fillCurves(plot);
                    plot.setCursorVisible(true);
                    plot.setBorderInputsVisible(true);
                    plot.setStatusVisible(true);
                }),
        variant("six variables, no tool bar", pumps,
                [](KelGraphic &plot) {
                    plot.setButtons(Graphic::NoButton);
                    plot.setTimeAxis(false);
                    for (int curve = 0; curve < plot.graphicsCount(); ++curve) {
                        for (int i = 0; i <= 100; ++i)
                            plot.addPoint(i, 10.0 * curve + 4.0 * std::sin((i + 15.0 * curve) / 12.0), curve);
                    }
                }),
    };
}
