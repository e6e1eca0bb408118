/// \file
/// A curve as one run of points per pixel column. Not installed.
#pragma once

#include <graphicseries.h>

#include <cmath>

/// Turns values into pixels along one axis.
struct GraphicScale {
    double from = 0.0;   ///< The value at pixel \a offset.
    double factor = 1.0; ///< Pixels per unit.
    double offset = 0.0;

    double pixel(double value) const { return (value - from) * factor + offset; }
    double value(double pixel) const { return (pixel - offset) / factor + from; }
};

/// Consecutive points that lie in one pixel column.
struct GraphicRun {
    int column = 0; ///< -1 for all that lies left of the picture, the number of columns for what lies right.
    int count = 0;
    GraphicPoint first{};
    GraphicPoint last{};
    double yMin = 0.0;
    double yMax = 0.0;
};

/// Visits a series and hands its runs to \a Sink: `void run(const GraphicRun &)`, `void gap()`. Whole
/// blocks of points that share a column cost as much as one point, and so does all that lies beside the
/// picture.
template <typename Sink>
class GraphicColumns
{
public:
    /// \a scale makes columns of x, of which there are \a columns.
    GraphicColumns(const GraphicScale &scale, int columns, Sink &sink)
        : m_scale(scale)
        , m_columns(columns)
        , m_sink(sink)
    {
    }

    void read(const GraphicSeries &series)
    {
        series.walk(*this);
        flush();
    }

    bool extent(const GraphicExtent &extent, const GraphicPoint &first, const GraphicPoint &last, int count)
    {
        const int column = columnOf(extent.xMin);
        if (column != columnOf(extent.xMax))
            return false;
        enter(column, first);
        m_run.yMin = std::min(m_run.yMin, extent.yMin);
        m_run.yMax = std::max(m_run.yMax, extent.yMax);
        m_run.count += count;
        m_last = &last;
        return true;
    }

    void point(const GraphicPoint &point)
    {
        if (std::isnan(point.y)) {
            flush();
            m_sink.gap();
            return;
        }
        enter(columnOf(point.x), point);
        m_run.yMin = std::min(m_run.yMin, point.y);
        m_run.yMax = std::max(m_run.yMax, point.y);
        ++m_run.count;
        m_last = &point;
    }

private:
    int columnOf(double x) const
    {
        const double pixel = m_scale.pixel(x);
        return !(pixel >= 0.0) ? -1 : pixel >= m_columns ? m_columns : static_cast<int>(pixel);
    }

    /// Begins a run with \a first unless one in that \a column is going on.
    void enter(int column, const GraphicPoint &first)
    {
        if (m_run.count > 0 && m_run.column == column)
            return;
        flush();
        m_run = {column, 0, first, first, first.y, first.y};
    }

    void flush()
    {
        if (m_run.count == 0)
            return;
        m_run.last = *m_last; // read only now: a look at every block's end would cost more than the rest
        m_sink.run(m_run);
        m_run.count = 0;
    }

    const GraphicScale m_scale;
    const int m_columns;
    Sink &m_sink;
    GraphicRun m_run;
    const GraphicPoint *m_last = nullptr;
};
