#include "testmain.h"

#include "../support/memorypeak.h"

#include <graphicseries.h>

#include <cmath>
#include <random>

/// The points of a curve: what is kept, what is dropped and how they are found again.
class tst_GraphicSeries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointsKeepTheirOrder_data();
    void pointsKeepTheirOrder();
    void notFinite_data();
    void notFinite();
    void history_data();
    void history();
    void historyOverManyChunks();
    void historyAppliesAtOnce();
    void historyOfUnsortedPoints();
    void unsortedPointsDoNotPileUp();
    void sorted_data();
    void sorted();
    void extent_data();
    void extent();
    void extentOfWhatIsLeft();
    void copyKeepsItsPoints();
    void walkShowsEverythingOnce_data();
    void walkShowsEverythingOnce();
    void nearestIsTheNearest_data();
    void nearestIsTheNearest();
    void nearestOfNothing();
    void memoryPerPoint_data();
    void memoryPerPoint();
};

static const double Infinity = std::numeric_limits<double>::infinity();
static const double Nan = std::numeric_limits<double>::quiet_NaN();

static QVector<QPointF> line(int count)
{
    QVector<QPointF> points;
    for (int i = 0; i < count; ++i)
        points.append(QPointF(i, i % 17));
    return points;
}

static GraphicSeries seriesOf(const QVector<QPointF> &points)
{
    GraphicSeries series;
    for (const QPointF &point : points)
        series.append(point.x(), point.y());
    return series;
}

static QVector<double> xs(const GraphicSeries &series)
{
    QVector<double> all;
    for (int i = 0; i < series.count(); ++i)
        all.append(series.at(i).x);
    return all;
}

void tst_GraphicSeries::pointsKeepTheirOrder_data()
{
    QTest::addColumn<int>("count");

    for (const int count : {0, 1, 63, 64, 65, 511, 512, 513, 5000})
        QTest::addRow("%d points", count) << count;
}

void tst_GraphicSeries::pointsKeepTheirOrder()
{
    QFETCH(int, count);
    const QVector<QPointF> points = line(count);
    const GraphicSeries appended = seriesOf(points);
    QCOMPARE(appended.count(), count);
    QCOMPARE(appended.points(), points);
    for (int i = 0; i < count; ++i)
        QCOMPARE(QPointF(appended.at(i).x, appended.at(i).y), points.at(i));

    GraphicSeries replaced = seriesOf(line(7));
    replaced.setPoints(points);
    QCOMPARE(replaced.points(), points);
    replaced.clear();
    QCOMPARE(replaced.count(), 0);
    QVERIFY(replaced.points().isEmpty());
    replaced.append(1.0, 2.0);
    QCOMPARE(replaced.points(), QVector<QPointF>({QPointF(1.0, 2.0)}));
}

void tst_GraphicSeries::notFinite_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<int>("count");

    QTest::newRow("a finite point is kept") << 1.0 << 1.0 << 2;
    QTest::newRow("x not a number is ignored") << Nan << 1.0 << 1;
    QTest::newRow("x infinite is ignored") << Infinity << 1.0 << 1;
    QTest::newRow("x below all is ignored") << -Infinity << 1.0 << 1;
    QTest::newRow("y not a number is a break") << 1.0 << Nan << 2;
    QTest::newRow("y infinite is a break") << 1.0 << Infinity << 2;
    QTest::newRow("y below all is a break") << 1.0 << -Infinity << 2;
}

void tst_GraphicSeries::notFinite()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(int, count);
    GraphicSeries appended = seriesOf({QPointF(0.0, 5.0)});
    appended.append(x, y);
    GraphicSeries replaced;
    replaced.setPoints({QPointF(0.0, 5.0), QPointF(x, y)});
    for (const GraphicSeries &series : {appended, replaced}) {
        QCOMPARE(series.count(), count);
        if (count == 2 && !std::isfinite(y)) {
            QVERIFY(std::isnan(series.at(1).y));
            QCOMPARE(series.extent().yMax, 5.0);
            QCOMPARE(series.extent().yMin, 5.0);
        }
    }
}

void tst_GraphicSeries::history_data()
{
    QTest::addColumn<double>("history");
    QTest::addColumn<QVector<double>>("left");

    using Numbers = QVector<double>;
    QTest::newRow("negative keeps everything") << -1.0 << Numbers({0, 1, 2, 3, 4});
    QTest::newRow("a little below 0 keeps everything") << -1e-9 << Numbers({0, 1, 2, 3, 4});
    QTest::newRow("0 keeps the newest") << 0.0 << Numbers({4});
    QTest::newRow("the point at the limit stays") << 2.0 << Numbers({2, 3, 4});
    QTest::newRow("a point beyond the limit goes") << 1.9 << Numbers({3, 4});
    QTest::newRow("more than there is") << 100.0 << Numbers({0, 1, 2, 3, 4});
    QTest::newRow("without end") << Infinity << Numbers({0, 1, 2, 3, 4});
}

void tst_GraphicSeries::history()
{
    QFETCH(double, history);
    QFETCH(QVector<double>, left);
    GraphicSeries appended;
    appended.setHistory(history);
    for (const QPointF &point : line(5))
        appended.append(point.x(), point.y());
    QCOMPARE(xs(appended), left);

    GraphicSeries replaced;
    replaced.setHistory(history);
    replaced.setPoints(line(5));
    QCOMPARE(xs(replaced), left);
}

void tst_GraphicSeries::historyOverManyChunks()
{
    GraphicSeries series;
    series.setHistory(1000.0);
    qint64 most = 0;
    for (int i = 0; i < 20000; ++i) {
        series.append(i, i);
        QCOMPARE(series.count(), std::min(i + 1, 1001));
        most = std::max(most, series.memory());
    }
    QCOMPARE(series.at(0).x, 18999.0);
    QCOMPARE(series.extent().xMin, 18999.0);
    QCOMPARE(series.extent().yMin, 18999.0);
    QVERIFY2(most < 1001 * 16 * 2, qPrintable(QString::number(most)));
}

void tst_GraphicSeries::historyAppliesAtOnce()
{
    GraphicSeries series = seriesOf(line(2000));
    series.setHistory(9.0);
    QCOMPARE(xs(series), QVector<double>({1990, 1991, 1992, 1993, 1994, 1995, 1996, 1997, 1998, 1999}));
    series.setHistory(-1.0);
    series.append(5000.0, 0.0);
    QCOMPARE(series.count(), 11);
}

void tst_GraphicSeries::historyOfUnsortedPoints()
{
    GraphicSeries series;
    series.setHistory(10.0);
    for (const double x : {100.0, 95.0, 101.0, 99.0, 106.0})
        series.append(x, x);
    series.settle();
    QCOMPARE(xs(series), QVector<double>({100.0, 101.0, 99.0, 106.0}));

    // An old point deep in the middle, behind newer ones in chunks of their own.
    for (int i = 0; i < 2000; ++i)
        series.append(107.0 + 1e-3 * i, i == 1000 ? Nan : 1.0);
    series.append(104.0, 1.0);
    for (int i = 0; i < 600; ++i)
        series.append(110.0, 1.0);
    series.append(115.0, 1.0);
    series.settle();
    const QVector<double> left = xs(series);
    QCOMPARE(left.size(), 1 + 2000 + 600 + 1);
    QVERIFY(!left.contains(104.0));
    QVERIFY(series.isSorted());
}

void tst_GraphicSeries::unsortedPointsDoNotPileUp()
{
    GraphicSeries series;
    series.setHistory(100.0);
    series.append(1e9, 0.0); // a wrong clock: never too old, so the front alone drops nothing
    int most = 0;
    for (int i = 0; i < 50000; ++i) {
        series.append(i, 0.0);
        most = std::max(most, series.count());
    }
    QVERIFY2(most < 1500, qPrintable(QString::number(most)));
    series.settle();
    QCOMPARE(series.count(), 102);
}

void tst_GraphicSeries::sorted_data()
{
    QTest::addColumn<QVector<QPointF>>("points");
    QTest::addColumn<bool>("isSorted");

    QTest::newRow("nothing") << QVector<QPointF>() << true;
    QTest::newRow("growing") << line(600) << true;
    QTest::newRow("the same x again") << QVector<QPointF>({{1, 1}, {1, 2}}) << true;
    QTest::newRow("one step back") << QVector<QPointF>({{1, 1}, {2, 2}, {1.5, 1}}) << false;
}

void tst_GraphicSeries::sorted()
{
    QFETCH(QVector<QPointF>, points);
    QFETCH(bool, isSorted);
    GraphicSeries series = seriesOf(points);
    QCOMPARE(series.isSorted(), isSorted);
    series.clear();
    QVERIFY(series.isSorted());
}

void tst_GraphicSeries::extent_data()
{
    QTest::addColumn<QVector<QPointF>>("points");
    QTest::addColumn<QVector<double>>("bounds"); // x and y: least, most

    using Points = QVector<QPointF>;
    QTest::newRow("one point") << Points({{3, 4}}) << QVector<double>({3, 3, 4, 4});
    QTest::newRow("breaks do not count") << Points({{0, Nan}, {3, 4}, {5, 1}, {9, Nan}})
                                         << QVector<double>({3, 5, 1, 4});
    Points many = line(3000);
    many[1777].setY(1000.0);
    many[2999].setY(-1000.0);
    QTest::newRow("peaks in many chunks") << many << QVector<double>({0, 2999, -1000, 1000});
}

void tst_GraphicSeries::extent()
{
    QFETCH(QVector<QPointF>, points);
    QFETCH(QVector<double>, bounds);
    const GraphicExtent extent = seriesOf(points).extent();
    QCOMPARE(QVector<double>({extent.xMin, extent.xMax, extent.yMin, extent.yMax}), bounds);
    QVERIFY(!extent.isEmpty());
    QVERIFY(GraphicSeries().extent().isEmpty());
    QVERIFY(seriesOf({QPointF(1.0, Nan)}).extent().isEmpty());
}

void tst_GraphicSeries::extentOfWhatIsLeft()
{
    GraphicSeries series;
    series.setHistory(40.0);
    series.append(0.0, 1000.0);
    for (int i = 1; i <= 50; ++i)
        series.append(i, 1.0); // the peak lies in the block of the points that are kept
    QCOMPARE(series.extent().yMax, 1.0);
    QCOMPARE(series.extent().xMin, 10.0);
}

void tst_GraphicSeries::copyKeepsItsPoints()
{
    QVector<QPointF> points = line(1000);
    points[600].setY(Nan); // so that the blocks of its chunk are looked at one by one
    GraphicSeries series = seriesOf(points);
    const GraphicSeries copy = series;
    const auto expectUnchanged = [&copy] {
        QCOMPARE(copy.count(), 1000);
        QCOMPARE(copy.at(999).x, 999.0);
        QCOMPARE(copy.extent().yMax, 16.0);
        QCOMPARE(copy.extent().xMin, 0.0);
    };
    series.append(1000.0, 99.0);
    expectUnchanged();
    series.setHistory(5.0);
    QCOMPARE(series.count(), 6);
    expectUnchanged();
    series.clear();
    expectUnchanged();

    GraphicSeries assigned = seriesOf(line(3));
    assigned = copy;
    QCOMPARE(assigned.count(), 1000);
    QCOMPARE(assigned.extent().yMax, 16.0);
}

/// Takes every second extent whole and asks for the points of the others.
struct Census {
    int count = 0;
    int breaks = 0;
    int extents = 0;
    double sum = 0.0;
    bool takesExtents = false;

    bool extent(const GraphicExtent &extent, const GraphicPoint &first, const GraphicPoint &last, int points)
    {
        if (!takesExtents || ++extents % 2 == 0)
            return false;
        expectInside(extent, first, last);
        count += points;
        return true;
    }
    void point(const GraphicPoint &point)
    {
        ++count;
        breaks += std::isnan(point.y) ? 1 : 0;
        sum += point.x;
    }
    static void expectInside(const GraphicExtent &extent, const GraphicPoint &first, const GraphicPoint &last)
    {
        QVERIFY(extent.xMin <= first.x && first.x <= extent.xMax);
        QVERIFY(extent.xMin <= last.x && last.x <= extent.xMax);
        QVERIFY(extent.yMin <= first.y && first.y <= extent.yMax);
    }
};

void tst_GraphicSeries::walkShowsEverythingOnce_data()
{
    QTest::addColumn<int>("dropped");
    QTest::addColumn<int>("brokenAt");

    QTest::newRow("whole") << 0 << -1;
    QTest::newRow("begins in the middle of a block") << 100 << -1;
    QTest::newRow("begins with a block") << 128 << -1;
    QTest::newRow("begins with a chunk") << 512 << -1;
    QTest::newRow("with a break") << 0 << 700;
    QTest::newRow("with a break, begins in the middle") << 77 << 500;
}

void tst_GraphicSeries::walkShowsEverythingOnce()
{
    QFETCH(int, dropped);
    QFETCH(int, brokenAt);
    QVector<QPointF> points = line(2000);
    if (brokenAt >= 0)
        points[brokenAt].setY(Nan);
    GraphicSeries series = seriesOf(points);
    series.setHistory(1999.0 - dropped);

    Census all;
    series.walk(all);
    QCOMPARE(all.count, 2000 - dropped);
    QCOMPARE(all.breaks, brokenAt >= 0 ? 1 : 0);
    QCOMPARE(all.sum, 1999.0 * 2000.0 / 2.0 - dropped * (dropped - 1.0) / 2.0);

    Census mixed;
    mixed.takesExtents = true;
    series.walk(mixed);
    QCOMPARE(mixed.count, 2000 - dropped);
    QCOMPARE(mixed.breaks, all.breaks);
}

void tst_GraphicSeries::nearestIsTheNearest_data()
{
    QTest::addColumn<bool>("isSorted");
    QTest::addColumn<double>("yScale");

    QTest::newRow("along x") << true << 0.0;
    QTest::newRow("in the plane, sorted") << true << 2.0;
    QTest::newRow("in the plane") << false << 0.5;
}

void tst_GraphicSeries::nearestIsTheNearest()
{
    QFETCH(bool, isSorted);
    QFETCH(double, yScale);
    std::mt19937 random(7);
    std::uniform_real_distribution<double> anywhere(0.0, 100.0);
    QVector<QPointF> points;
    for (int i = 0; i < 3000; ++i)
        points.append(QPointF(isSorted ? i / 30.0 : anywhere(random), i % 50 == 0 ? Nan : anywhere(random)));
    const GraphicSeries series = seriesOf(points);

    for (int round = 0; round < 50; ++round) {
        const double x = anywhere(random) * 1.2 - 10.0;
        const double y = anywhere(random);
        double best = Infinity;
        for (const QPointF &point : qAsConst(points)) {
            if (!std::isnan(point.y()))
                best = std::min(best, std::hypot(point.x() - x, (point.y() - y) * yScale));
        }
        const auto found = series.nearest(x, y, 1.0, yScale);
        QVERIFY(found);
        QCOMPARE(std::hypot(found->x - x, (found->y - y) * yScale), best);
    }
}

void tst_GraphicSeries::nearestOfNothing()
{
    QVERIFY(!GraphicSeries().nearest(0.0, 0.0, 1.0, 1.0));
    QVERIFY(!seriesOf({QPointF(1.0, Nan)}).nearest(0.0, 0.0, 1.0, 1.0));
}

void tst_GraphicSeries::memoryPerPoint_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("atOnce");

    for (const int count : {20000, 100000, 1000000}) {
        QTest::addRow("%d appended", count) << count << false;
        QTest::addRow("%d at once", count) << count << true;
    }
}

void tst_GraphicSeries::memoryPerPoint()
{
    QFETCH(int, count);
    QFETCH(bool, atOnce);
    if (!MemoryPeak::isAvailable())
        QSKIP("the sanitizer brings an allocator of its own");
    const QVector<QPointF> points = line(atOnce ? count : 0);

    GraphicSeries series;
    const MemoryPeak peak;
    if (atOnce)
        series.setPoints(points);
    for (int i = 0; i < count && !atOnce; ++i)
        series.append(i, i);
    const double perPoint = static_cast<double>(peak.bytes()) / count;
    QVERIFY2(perPoint <= 16.0 * 1.1, qPrintable(QString::number(perPoint)));
    QCOMPARE(series.count(), count);
}

KEL_TEST_MAIN(tst_GraphicSeries)
#include "tst_graphicseries.moc"
