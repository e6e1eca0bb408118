/// \file
/// Marks, labels and title along one side of a plot's canvas. Not installed.
#pragma once

#include <QFont>
#include <QPalette>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <graphic.h>
#include <graphicaxis.h>
#include <graphiccolumns.h>
#include <graphicrange.h>

#include <memory>
#include <utility>

class QPainter;
class QwtScaleDraw;
class QwtScaleEngine;

/// An axis, with the plot library's marks and labels.
///
/// Its owner asks how much room it needs and then says where it lies. What it says there goes by its range, its font
/// and the number of its labels, never by the place that it got.
class PlotAxis
{
public:
    explicit PlotAxis(Graphic::Axis side);
    ~PlotAxis();

    void setFont(const QFont &font);
    const QFont &font() const { return m_font; }
    void setLabels(const GraphicLabels &labels, const QString &title);
    void setRange(const GraphicRange &range);
    bool setMarksCount(int most); ///< How many labels there are at most; whether that is another number.

    /// Whether what is written there, or how large, is another than at the last call.
    bool takeChange() { return std::exchange(m_isChanged, false); }

    /// As extent() and overhang(), with labels of the usual size and without a title.
    double usualExtent() const;
    double usualOverhang() const;

    /// How far marks, labels and title reach away from the canvas. Never becomes less before labels or font change:
    /// wider labels take their place once, and giving it back would shake the picture.
    double extent();
    /// How far labels reach over the end of an axis of that \a length, where the greatest values are; the same holds.
    double overhang(double length);

    /// The canvas's side begins at \a from, its left or upper end, and is so long.
    void place(const QPointF &from, double length);
    GraphicScale scale() const; ///< Makes pixels of values, where the axis was placed.

    void draw(QPainter &painter, const QPalette &palette) const;
    void drawGrid(QPainter &painter, const QRectF &canvas) const; ///< A line at every mark with a label.

private:
    bool isAlongX() const { return m_side == Graphic::XAxis; }
    void divide();
    void reserve();

    const Graphic::Axis m_side;
    std::unique_ptr<QwtScaleDraw> m_draw;
    std::unique_ptr<QwtScaleEngine> m_engine;
    QFont m_font;
    QString m_title;
    GraphicLabels m_labels;
    GraphicRange m_range{0.0, 1.0};
    int m_mostMarks = 1;
    double m_overhang = 0.0; ///< The largest so far.
    bool m_isChanged = true;
};
