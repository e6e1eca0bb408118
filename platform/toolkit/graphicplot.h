/// \file
/// A plot's axes, grid and curves. Not installed.
#pragma once

#include <QFont>
#include <QPen>
#include <QRectF>
#include <graphic.h>
#include <graphicaxis.h>
#include <graphiccolumns.h>
#include <graphicrange.h>

#include <vector>

class GraphicCanvas;

/// How a curve is drawn. Its points live elsewhere.
struct GraphicCurveLook {
    const GraphicSeries *series = nullptr; ///< Null: nothing is drawn.
    QPen pen;
    bool isVisible = true;
};

/// Axes, grid, canvas and curves. The plot library is behind it, in a module of its own that comes with the first
/// plot: it is large, brings other libraries along, and many panels have no plot.
class KEL_TOOLKIT_EXPORT GraphicPlot
{
public:
    GraphicPlot() = default;
    virtual ~GraphicPlot() = default;
    GraphicPlot(const GraphicPlot &) = delete;
    GraphicPlot &operator=(const GraphicPlot &) = delete;

    virtual QWidget *widget() = 0; ///< The plot, which is this very object.

    GraphicCanvas &area() const { return *m_canvas; }
    void setArea(GraphicCanvas *canvas) { m_canvas = canvas; } ///< Once, before anything else. It lies inside the plot.

    virtual void setLabels(Graphic::Axis axis, const GraphicLabels &labels, const QString &title) = 0;
    virtual void setRange(Graphic::Axis axis, const GraphicRange &range) = 0;
    virtual void setGrid(bool isVisible) = 0;
    virtual QFont labelFont(Graphic::Axis axis) const = 0;
    virtual GraphicScale scale(Graphic::Axis axis) const = 0; ///< Makes pixels of the canvas of values.

    /// How large the canvas is beside labels of the usual size. What the labels say and how many there are goes by
    /// this size: the canvas's own depends on them, and they would change each other for ever.
    virtual QSize usualArea() const = 0;

    /// Gives the axes as many labels as usualArea() has room for; whether that is another number.
    virtual bool setMarksCount() = 0;

    /// Shows points that came between \a from and \a to along x, and nothing else; none when \a from is the greater.
    void showNew(double from, double to);

    /// Takes over ranges, fonts and colours, and lays out the plot anew when its axes need it.
    void settle();

    virtual void drawContent(QPainter &painter) = 0;                     ///< What the canvas shows.
    virtual void drawPicture(QPainter &painter, const QRectF &rect) = 0; ///< The plot with its axes.

    std::vector<GraphicCurveLook> curves; ///< From back to front.

protected:
    virtual void layOut() = 0;
    void looksDifferent(); ///< The canvas has to be painted anew.

private:
    GraphicCanvas *m_canvas = nullptr;
};

/// A plot inside \a parent, which owns it. Ends the program when the module that draws it is not beside this library.
GraphicPlot *newGraphicPlot(QWidget *parent);
