/// \file
/// A plot on the screen and hands that use it.
#pragma once

#include <QApplication>
#include <QWheelEvent>
#include <QtTest>
#include <graphic.h>

/// A shown plot of 600 x 400 with one curve from (0, 0) to (100, 100) and the ranges 0 to 100.
class PlotBench
{
public:
    PlotBench()
    {
        plot.resize(600, 400);
        plot.setGraphicsCount(1, true);
        plot.setGraphicData({{0.0, 0.0}, {100.0, 100.0}});
        plot.graphic(0).name = QStringLiteral("Line");
        plot.updateLegend(true);
        plot.setVisibleRange(Graphic::XAxis, 0.0, 100.0);
        plot.setVisibleRange(Graphic::YAxis, 0.0, 100.0);
        plot.show();
        plot.grab(); // settles layout and ranges
    }

    QPointF at(double x, double y) const { return plot.canvasPosition({x, y}); }

    void wheel(const QPointF &position, int turn, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QWheelEvent event(position, plot.canvas()->mapToGlobal(position.toPoint()), QPoint(), QPoint(0, turn),
                          Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(plot.canvas(), &event);
    }

    double width(Graphic::Axis axis) const
    {
        const auto range = plot.visibleRange(axis);
        return range.second - range.first;
    }

    Graphic plot;
};

/// Whether \a a and \a b are equal but for what a pixel's fraction makes of it.
inline bool isClose(double a, double b, double tolerance = 1e-6)
{
    return qAbs(a - b) <= tolerance;
}
