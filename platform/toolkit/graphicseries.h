/// \file
/// The points of one curve, kept so that a picture of millions of them is made from few. Not installed.
#pragma once

#include <QPointF>
#include <QVector>
#include <keltoolkitexport.h>

#include <algorithm>
#include <array>
#include <deque>
#include <limits>
#include <memory>
#include <optional>

/// A point of a curve. One whose y is not a number breaks the curve.
struct GraphicPoint {
    double x;
    double y;
};

/// The smallest rectangle around some points; empty at first.
struct GraphicExtent {
    double xMin = std::numeric_limits<double>::infinity();
    double xMax = -std::numeric_limits<double>::infinity();
    double yMin = std::numeric_limits<double>::infinity();
    double yMax = -std::numeric_limits<double>::infinity();

    bool isEmpty() const { return !(xMin <= xMax); }
    void add(const GraphicPoint &point)
    {
        // Not std::min: a y that is not a number must leave the rectangle as it is.
        xMin = point.x < xMin ? point.x : xMin;
        xMax = point.x > xMax ? point.x : xMax;
        yMin = point.y < yMin ? point.y : yMin;
        yMax = point.y > yMax ? point.y : yMax;
    }
    void add(const GraphicExtent &other);
};

/// The points of one curve in the order in which they came.
///
/// They lie in chunks, each with the extents of its blocks and of itself, so that whole blocks and chunks
/// are drawn, searched and measured without a look at their points. All this takes 16.7 bytes per point,
/// and nothing is ever moved when points come or go. A copy shares all chunks but the last, so it is cheap
/// and keeps its points whatever becomes of the original.
class KEL_TOOLKIT_EXPORT GraphicSeries
{
public:
    static constexpr int ChunkPoints = 512;
    static constexpr int BlockPoints = 64;
    static constexpr int BlocksInChunk = ChunkPoints / BlockPoints;

    GraphicSeries() = default;
    GraphicSeries(const GraphicSeries &other);
    GraphicSeries &operator=(const GraphicSeries &other);
    GraphicSeries(GraphicSeries &&) noexcept = default;
    GraphicSeries &operator=(GraphicSeries &&) noexcept = default;
    ~GraphicSeries() = default;

    /// Appends a point, unless its x is not finite. What is too old for the history then goes at once
    /// where x is sorted, otherwise by and by.
    void append(double x, double y);
    void setPoints(const QVector<QPointF> &points);
    void clear();

    /// How far behind the newest point others may lie; below 0: without limit.
    void setHistory(double distance);
    /// Drops all that is too old for the history.
    void settle();

    int count() const { return m_count; } ///< Points, breaks included.
    QVector<QPointF> points() const;
    GraphicPoint at(int i) const;                ///< \a i from 0 to count() - 1, oldest first.
    bool isSorted() const { return m_isSorted; } ///< Whether x never falls.

    GraphicExtent extent() const; ///< Of all points that are not breaks.

    /// The point that is nearest to \a x, \a y when distances count \a xScale along x and \a yScale along y
    /// (0: not at all). Breaks are not found.
    std::optional<GraphicPoint> nearest(double x, double y, double xScale, double yScale) const;

    /// Shows all points to \a visitor in their order: `bool extent(extent, first, last, count)` offers a run
    /// of points without breaks, and when that returns false their parts follow; `void point(point)` is a
    /// single point or break. References stay valid until the series changes.
    template <typename Visitor>
    void walk(Visitor &visitor) const;

    /// Bytes on the heap, without what the allocator adds.
    qint64 memory() const;

private:
    struct Chunk {
        std::array<GraphicPoint, ChunkPoints> points;
        std::array<GraphicExtent, BlocksInChunk> blocks;
        quint32 brokenBlocks; ///< One bit for each block with a break.
    };
    struct Entry {
        std::shared_ptr<Chunk> chunk;
        GraphicExtent extent; ///< Of all points of the chunk, dropped ones included.
    };

    void store(const GraphicPoint &point);
    double oldestAllowed() const;
    void dropOldFromFront();
    bool holdsOld() const;
    void rebuild();
    int firstIn(std::size_t entry) const { return entry == 0 ? m_first : 0; }
    int endIn(std::size_t entry) const { return entry + 1 == m_entries.size() ? m_end : ChunkPoints; }
    template <typename Visitor>
    static void walkBlocks(const Chunk &chunk, int first, int end, Visitor &visitor);

    std::deque<Entry> m_entries;
    int m_first = 0; ///< The oldest point's place in the first chunk.
    int m_end = 0;   ///< The place behind the newest point in the last chunk.
    int m_count = 0;
    int m_unsettled = 0; ///< Points that came since old ones were looked for everywhere.
    double m_history = -1.0;
    bool m_isSorted = true;
};

template <typename Visitor>
void GraphicSeries::walk(Visitor &visitor) const
{
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const Chunk &chunk = *m_entries[i].chunk;
        const int first = firstIn(i);
        const int end = endIn(i);
        const bool isWhole = first == 0 && chunk.brokenBlocks == 0;
        if (!isWhole || !visitor.extent(m_entries[i].extent, chunk.points[0], chunk.points[std::size_t(end - 1)], end))
            walkBlocks(chunk, first, end, visitor);
    }
}

template <typename Visitor>
void GraphicSeries::walkBlocks(const Chunk &chunk, int first, int end, Visitor &visitor)
{
    int at = first;
    while (at < end) {
        const int block = at / BlockPoints;
        const int blockStart = block * BlockPoints;
        const int blockEnd = std::min(blockStart + BlockPoints, end);
        const bool isWhole = at == blockStart && (chunk.brokenBlocks >> block & 1) == 0;
        const GraphicPoint *points = chunk.points.data();
        if (isWhole &&
            visitor.extent(chunk.blocks[std::size_t(block)], points[at], points[blockEnd - 1], blockEnd - at)) {
            at = blockEnd;
            continue;
        }
        for (; at < blockEnd; ++at)
            visitor.point(points[at]);
    }
}
