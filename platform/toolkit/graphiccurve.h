/// \file
/// One curve of a plot on its way to the screen or into a file. Not installed.
#pragma once

#include <QPen>
#include <QPolygonF>
#include <QRect>
#include <QRectF>
#include <QVector>
#include <graphiccolumns.h>

class QPainter;

/// Draws the runs of one curve (it is a sink of GraphicColumns) in pixels of its painter.
///
/// A column with at most two points is drawn exactly, as part of an antialiased line. One with more is a
/// bar from its smallest to its largest value, which looks the same as all the lines inside it and costs
/// two or three rectangles. On paper there are no pixels, so there such a column becomes a zigzag.
class KEL_TOOLKIT_EXPORT GraphicCurvePainter
{
public:
    enum class Medium { Screen, Paper };

    /// Draws into \a area, whose column 0 is its left edge. \a pen has a width of at least 1.
    GraphicCurvePainter(QPainter &painter, const QRectF &area, const GraphicScale &yScale, const QPen &pen,
                        Medium medium);
    ~GraphicCurvePainter(); ///< Draws what is left.

    GraphicCurvePainter(const GraphicCurvePainter &) = delete;
    GraphicCurvePainter &operator=(const GraphicCurvePainter &) = delete;

    /// \a xScale gives the places of points; \a columnWidth is that of the columns of the runs to come.
    void setColumns(const GraphicScale &xScale, double columnWidth);

    void run(const GraphicRun &run);
    void gap();

private:
    /// What a full column covers, y downwards.
    struct Bar {
        int column;
        double top;
        double bottom;
    };

    QPointF place(const GraphicPoint &point) const;
    void addBar(const GraphicRun &run);
    void addZigzag(const GraphicRun &run);
    void endBar();
    void endLine();
    void addToLine(const QPointF &point);
    void drawPiece(const QPolygonF &piece);
    void drawThin(const QPolygonF &piece);
    void drawBars();
    void drawNeighbours(const Bar *bars, int count, int step);
    void drawBar(int column, double top, double bottom);

    QPainter &m_painter;
    const QRectF m_area;
    const GraphicScale m_yScale;
    const QPen m_pen;
    const Medium m_medium;
    const bool m_isThin;
    const int m_linePoints; ///< A longer line is drawn in pieces.
    GraphicScale m_xScale;
    double m_columnWidth = 1.0;
    QPolygonF m_line;
    QVector<Bar> m_bars;
    bool m_isAfterBar = false; ///< The last run became a bar,
    GraphicPoint m_barEnd{};   ///< and this was its last point.
    QVector<double> m_reach;   ///< How far the pen reaches up and down, by the distance in columns.
    QVector<QRect> m_fullRects;
};

/// Cuts the line from \a a to \a b to \a area; false when nothing is left.
KEL_TOOLKIT_EXPORT bool clipLine(QPointF &a, QPointF &b, const QRectF &area);

/// How far, in the painter's units, a point of a curve drawn with \a pen can change the picture.
KEL_TOOLKIT_EXPORT double curveMargin(const QPen &pen);

/// Draws \a series into \a area of \a painter. \a xScale and \a yScale make the painter's coordinates of values.
KEL_TOOLKIT_EXPORT void drawSeries(QPainter &painter, const QRectF &area, const GraphicSeries &series,
                                   const GraphicScale &xScale, const GraphicScale &yScale, const QPen &pen);
