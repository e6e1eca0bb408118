/// \file
/// The plot library's plot, set up for panels. Not installed.
#pragma once

#include <QPen>
#include <graphicaxis.h>
#include <graphiccolumns.h>
#include <graphicrange.h>
#include <qwt_plot.h>
#include <qwt_plot_item.h>

#include <memory>
#include <vector>

class GraphicCanvas;
class QwtPlotGrid;

/// A curve among the plot's items. It draws a series that lives elsewhere.
class GraphicCurveItem : public QwtPlotItem
{
public:
    GraphicCurveItem();

    const GraphicSeries *series = nullptr;
    QPen pen;

    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
              const QRectF &canvasRect) const override;
};

/// What lies behind everything, on the screen and in pictures.
class GraphicBackground : public QwtPlotItem
{
public:
    QColor color;

    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
              const QRectF &canvasRect) const override;
};

/// Axes, grid, canvas and curves.
class GraphicPlot : public QwtPlot
{
public:
    explicit GraphicPlot(QWidget *parent);
    ~GraphicPlot() override;

    GraphicCanvas &area() const { return *m_canvas; }

    std::vector<std::unique_ptr<GraphicCurveItem>> &curves() { return m_curves; }
    void setCurvesCount(std::size_t count);

    void setLabels(Axis axis, const GraphicLabels &labels, const QString &title);
    void setRange(Axis axis, const GraphicRange &range);
    void setGrid(bool isVisible);

    /// Gives the axes as many labels as have room; whether that is another number.
    bool setMarksCount();

    /// Shows points that came between \a from and \a to along x, and nothing else; none when \a from is the greater.
    void showNew(double from, double to);

    /// Takes over ranges, fonts and colours, and lays out the plot anew when its axes need it.
    void settle();

    QSize minimumSizeHint() const override { return {1, 1}; } ///< Its owner knows better.

    GraphicScale scale(Axis axis) const; ///< Makes pixels of the canvas of values.

protected:
    void changeEvent(QEvent *event) override;

private:
    void setFonts();
    void setColors();
    void holdStill();

    GraphicCanvas *m_canvas;
    GraphicBackground m_background;
    std::unique_ptr<QwtPlotGrid> m_grid;
    std::vector<std::unique_ptr<GraphicCurveItem>> m_curves;
};
