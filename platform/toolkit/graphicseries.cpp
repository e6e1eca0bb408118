#include "graphicseries.h"

#include <algorithm>
#include <cmath>

namespace
{

/// How far \a value lies outside \a from to \a to.
double outside(double value, double from, double to)
{
    return value < from ? from - value : value > to ? value - to : 0.0;
}

/// Collects the extent of what it is shown.
struct ExtentVisitor {
    GraphicExtent all;

    bool extent(const GraphicExtent &extent, const GraphicPoint &, const GraphicPoint &, int)
    {
        all.add(extent);
        return true;
    }
    void point(const GraphicPoint &point)
    {
        if (!std::isnan(point.y))
            all.add(point);
    }
};

/// Keeps the best point so far and looks only into extents that may hold a better one.
struct NearestVisitor {
    double x;
    double y;
    double xScale;
    double yScale;
    double best = std::numeric_limits<double>::infinity();
    std::optional<GraphicPoint> found = std::nullopt;

    double distanceTo(const GraphicExtent &extent) const
    {
        return std::hypot(outside(x, extent.xMin, extent.xMax) * xScale, outside(y, extent.yMin, extent.yMax) * yScale);
    }
    bool extent(const GraphicExtent &extent, const GraphicPoint &, const GraphicPoint &, int) const
    {
        return distanceTo(extent) >= best;
    }
    void point(const GraphicPoint &point)
    {
        if (std::isnan(point.y))
            return;
        const double distance = std::hypot((point.x - x) * xScale, (point.y - y) * yScale);
        if (distance < best) {
            best = distance;
            found = point;
        }
    }
};

/// Copies all points.
struct PointsVisitor {
    QVector<QPointF> points;

    bool extent(const GraphicExtent &, const GraphicPoint &, const GraphicPoint &, int) const { return false; }
    void point(const GraphicPoint &point) { points.append(QPointF(point.x, point.y)); }
};

} // namespace

void GraphicExtent::add(const GraphicExtent &other)
{
    xMin = std::min(xMin, other.xMin);
    xMax = std::max(xMax, other.xMax);
    yMin = std::min(yMin, other.yMin);
    yMax = std::max(yMax, other.yMax);
}

GraphicSeries::GraphicSeries(const GraphicSeries &other)
    : m_entries(other.m_entries)
    , m_first(other.m_first)
    , m_end(other.m_end)
    , m_count(other.m_count)
    , m_history(other.m_history)
    , m_isSorted(other.m_isSorted)
{
    // Only the last chunk still changes.
    if (!m_entries.empty())
        m_entries.back().chunk = std::make_shared<Chunk>(*m_entries.back().chunk);
}

GraphicSeries &GraphicSeries::operator=(const GraphicSeries &other)
{
    if (this != &other)
        *this = GraphicSeries(other);
    return *this;
}

void GraphicSeries::append(double x, double y)
{
    if (!std::isfinite(x))
        return;
    store({x, y});
    if (m_history < 0.0)
        return;
    dropOldFromFront();
    // Elsewhere a search costs all points, so it waits until as many came, or somebody reads.
    if (!m_isSorted && ++m_unsettled > std::max(m_count / 2, +ChunkPoints))
        settle();
}

void GraphicSeries::setPoints(const QVector<QPointF> &points)
{
    clear();
    for (const QPointF &point : points) {
        if (std::isfinite(point.x()))
            store({point.x(), point.y()});
    }
    settle();
}

void GraphicSeries::clear()
{
    m_entries.clear();
    m_first = m_end = m_count = 0;
    m_isSorted = true;
}

void GraphicSeries::setHistory(double distance)
{
    m_history = distance;
    settle();
}

void GraphicSeries::settle()
{
    m_unsettled = 0;
    if (m_count == 0 || m_history < 0.0)
        return;
    dropOldFromFront();
    if (!m_isSorted && holdsOld())
        rebuild();
}

QVector<QPointF> GraphicSeries::points() const
{
    PointsVisitor visitor;
    visitor.points.reserve(m_count);
    walk(visitor);
    return visitor.points;
}

GraphicPoint GraphicSeries::at(int i) const
{
    Q_ASSERT(i >= 0 && i < m_count);
    const auto place = static_cast<std::size_t>(m_first) + static_cast<std::size_t>(i);
    return m_entries[place / ChunkPoints].chunk->points[place % ChunkPoints];
}

GraphicExtent GraphicSeries::extent() const
{
    ExtentVisitor visitor;
    walk(visitor);
    return visitor.all;
}

std::optional<GraphicPoint> GraphicSeries::nearest(double x, double y, double xScale, double yScale) const
{
    NearestVisitor visitor{x, y, xScale, yScale};
    // The chunk that promises most comes first; few others can then hold a better point.
    std::size_t promising = 0;
    double smallest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const double distance = visitor.distanceTo(m_entries[i].extent);
        if (distance < smallest) {
            smallest = distance;
            promising = i;
        }
    }
    if (promising < m_entries.size())
        walkBlocks(*m_entries[promising].chunk, firstIn(promising), endIn(promising), visitor);
    walk(visitor);
    return visitor.found;
}

qint64 GraphicSeries::memory() const
{
    return static_cast<qint64>(m_entries.size()) * static_cast<qint64>(sizeof(Chunk) + sizeof(Entry));
}

/// Appends \a point whatever the history says.
void GraphicSeries::store(const GraphicPoint &point)
{
    if (m_count > 0 && point.x < at(m_count - 1).x)
        m_isSorted = false;
    if (m_entries.empty() || m_end == ChunkPoints) {
        m_entries.push_back({std::make_shared<Chunk>(), GraphicExtent()});
        m_end = 0;
    }

    Entry &entry = m_entries.back();
    const int block = m_end / BlockPoints;
    entry.chunk->points[std::size_t(m_end)] = {point.x, std::isfinite(point.y) ? point.y : std::nan("")};
    if (std::isfinite(point.y)) {
        entry.chunk->blocks[std::size_t(block)].add(point);
        entry.extent.add(point);
    } else {
        entry.chunk->brokenBlocks |= 1U << block;
    }
    ++m_end;
    ++m_count;
}

/// The smallest x that the history allows; only for a series with points.
double GraphicSeries::oldestAllowed() const
{
    return m_history < 0.0 ? -std::numeric_limits<double>::infinity() : at(m_count - 1).x - m_history;
}

void GraphicSeries::dropOldFromFront()
{
    const double oldest = oldestAllowed();
    while (m_count > 0 && m_entries.front().chunk->points[std::size_t(m_first)].x < oldest) {
        ++m_first;
        --m_count;
        if (m_first == ChunkPoints || m_count == 0) {
            m_entries.pop_front();
            m_first = 0;
        }
    }
}

/// Whether a point is too old, wherever it lies.
bool GraphicSeries::holdsOld() const
{
    const double oldest = oldestAllowed();
    const auto &front = m_entries.front().chunk->points;
    const auto isOldPoint = [oldest](const GraphicPoint &point) { return point.x < oldest; };
    const auto isOldEntry = [oldest](const Entry &entry) { return entry.extent.xMin < oldest; };
    return std::any_of(front.begin() + m_first, front.begin() + endIn(0), isOldPoint) ||
           std::any_of(m_entries.begin() + 1, m_entries.end(), isOldEntry);
}

/// Stores all points anew but those that are too old.
void GraphicSeries::rebuild()
{
    const double oldest = oldestAllowed();
    const QVector<QPointF> all = points();
    clear();
    for (const QPointF &point : all) {
        if (point.x() >= oldest)
            store({point.x(), point.y()});
    }
}
