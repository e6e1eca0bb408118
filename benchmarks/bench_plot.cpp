// How long a plot takes to show its curves anew, beside the bare curve of the plot library below it.
//
// To be fair to both sides: both are shown, with a canvas of 800 x 400, one curve of the same points and
// the same ranges, and both paint before they return. Ours gets another width of the curve before every
// picture, since without it would show the one that it has; it draws smooth lines 1.5 and 1.6 wide, its
// peer plain ones. A tick brings 100 new points to ours; its peer only replots, as the cost of appending
// is nothing beside that.
#include "comparison.h"
#include "subjects.h"

#include <graphic.h>

#include <QApplication>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

namespace
{

constexpr QSize CanvasSize(800, 400);
constexpr int TickPoints = 100;

/// \a count points from x = 0 to 1: a wave with noise.
QVector<QPointF> samples(int count)
{
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0.0, 0.2);
    QVector<QPointF> points;
    points.reserve(count);
    for (int i = 0; i < count; ++i) {
        const double x = static_cast<double>(i) / count;
        points.append(QPointF(x, std::sin(x * 20.0) + noise(random)));
    }
    return points;
}

/// Shows \a widget, which lives as long as the subject, with a canvas of the same size for everybody.
template <typename Plot>
Plot &shown(Plot *plot)
{
    keep(plot);
    plot->resize(CanvasSize + QSize(100, 100));
    plot->show();
    QApplication::processEvents();
    plot->resize(plot->size() + CanvasSize - plot->canvas()->size());
    QApplication::processEvents();
    if (plot->canvas()->size() != CanvasSize)
        std::printf("A canvas is %d x %d.\n", plot->canvas()->width(), plot->canvas()->height());
    return *plot;
}

Graphic &ours(int count)
{
    auto *plot = new Graphic;
    plot->setGraphicsCount(1, true);
    plot->setGraphicData(samples(count));
    plot->setVisibleRange(Graphic::XAxis, 0.0, 1.0);
    plot->setVisibleRange(Graphic::YAxis, -2.0, 2.0);
    plot->setCurveWidth(1.5);
    return shown(plot);
}

QwtPlot &bare(int count)
{
    auto *plot = new QwtPlot;
    qobject_cast<QwtPlotCanvas *>(plot->canvas())->setPaintAttribute(QwtPlotCanvas::ImmediatePaint);
    qobject_cast<QwtPlotCanvas *>(plot->canvas())->setFrameStyle(QFrame::NoFrame);
    auto *curve = new QwtPlotCurve;
    curve->setSamples(samples(count));
    curve->attach(plot);
    plot->setAxisScale(QwtPlot::xBottom, 0.0, 1.0);
    plot->setAxisScale(QwtPlot::yLeft, -2.0, 2.0);
    return shown(plot);
}

Contender pictures(Graphic &plot)
{
    return {"Graphic", [&plot, width = 1.5]() mutable {
                width = 3.1 - width;
                plot.setCurveWidth(width);
                plot.update(true);
            }};
}

/// New points at the right end, then a picture; the range stays.
Contender ticks(Graphic &plot)
{
    return {"Graphic", [&plot] {
                for (int i = 0; i < TickPoints; ++i)
                    plot.addPoint(1.0, 0.01 * i);
                plot.update(true);
            }};
}

/// The same while the range follows the points, so that the axes change as well.
Contender following(Graphic &plot)
{
    return {"Graphic, fitted", [&plot, x = 1.0]() mutable {
                for (int i = 0; i < TickPoints; ++i)
                    plot.addPoint(x += 1e-6, 0.01 * i);
                plot.update(true);
            }};
}

void compareCount(const std::string &count, int points, std::optional<double> goal)
{
    const std::optional<double> tickGoal = goal ? std::optional<double>(0.2) : std::nullopt;
    QwtPlot &peer = bare(points);
    const Contender replot{"QwtPlot::replot", [&peer] { peer.replot(); }};
    compare("picture of " + count + " points", pictures(ours(points)), replot, goal);
    compare("tick of 100, " + count + " points", ticks(ours(points)), replot, tickGoal);
    Graphic &fitted = ours(points);
    fitted.fit();
    compare("tick of 100, followed, " + count, following(fitted), replot, goal);
}

} // namespace

void benchPlot()
{
    compareCount("1,000,000", 1000000, 1.0 / 40.0);
    compareCount("100,000", 100000, 1.0 / 5.0);
    compareCount("1,000", 1000, std::nullopt);
}
