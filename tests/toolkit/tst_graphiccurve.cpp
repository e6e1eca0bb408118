#include "testmain.h"

#include <QImage>
#include <QPainter>
#include <QPicture>
#include <graphiccurve.h>

#include <cmath>
#include <random>

/// How the points of a curve become pixels.
class tst_GraphicCurve : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsAgreeWithAPlainCount_data();
    void runsAgreeWithAPlainCount();
    void breaksEndRuns();
    void clip_data();
    void clip();
    void everyColumnShowsItsExtremes_data();
    void everyColumnShowsItsExtremes();
    void neighbourColumnsTouch();
    void linesBetweenFewPoints();
    void gapStaysEmpty();
    void lonePointIsADot();
    void farAwayPointsKeepTheSlope();
    void goingBackAndForth();
    void smoothCurveIsSmooth();
    void pixelRatio_data();
    void pixelRatio();
    void nothingOutsideTheArea();
    void paperHasLinesOnly();
};

static const double Nan = std::numeric_limits<double>::quiet_NaN();

namespace
{

struct Runs {
    QVector<GraphicRun> runs;
    int gaps = 0;

    void run(const GraphicRun &run) { runs.append(run); }
    void gap() { ++gaps; }
};

GraphicSeries seriesOf(const QVector<QPointF> &points)
{
    GraphicSeries series;
    series.setPoints(points);
    return series;
}

Runs runsOf(const QVector<QPointF> &points, const GraphicScale &scale, int columns)
{
    Runs sink;
    GraphicColumns<Runs>(scale, columns, sink).read(seriesOf(points));
    return sink;
}

/// A white picture of 200 x 100 with \a points in black, one unit of x and y per pixel, y upwards.
QImage pictureOf(const QVector<QPointF> &points, double width = 1.0, double ratio = 1.0, double unitsPerPixel = 1.0)
{
    QImage image(QSize(200, 100) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    const GraphicScale x{0.0, 1.0 / unitsPerPixel, 0.0};
    const GraphicScale y{0.0, -1.0, 100.0};
    drawSeries(painter, QRectF(0, 0, 200, 100), seriesOf(points), x, y, QPen(Qt::black, width));
    return image;
}

int darkness(const QImage &image, int x, int y)
{
    return image.valid(x, y) ? 255 - qGray(image.pixel(x, y)) : 0;
}

/// The sum of a column's darkness, in black pixels.
double inkIn(const QImage &image, int x)
{
    double ink = 0.0;
    for (int y = 0; y < image.height(); ++y)
        ink += darkness(image, x, y) / 255.0;
    return ink;
}

int darkestRow(const QImage &image, int x, bool fromTop)
{
    for (int i = 0; i < image.height(); ++i) {
        const int y = fromTop ? i : image.height() - 1 - i;
        if (darkness(image, x, y) > 100)
            return y;
    }
    return -1;
}

QVector<QPointF> noise(int count, double width, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> anywhere(10.0, 90.0);
    QVector<QPointF> points;
    for (int i = 0; i < count; ++i)
        points.append(QPointF(width * i / count, anywhere(random)));
    return points;
}

} // namespace

void tst_GraphicCurve::runsAgreeWithAPlainCount_data()
{
    QTest::addColumn<QVector<QPointF>>("points");
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("factor");

    QVector<QPointF> shuffled = noise(3000, 50.0, 3);
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(5));
    QTest::newRow("many in each column") << noise(20000, 50.0, 1) << 0.0 << 1.0;
    QTest::newRow("few in each column") << noise(70, 50.0, 2) << 0.0 << 1.0;
    QTest::newRow("both ends outside") << noise(20000, 50.0, 1) << 20.0 << 4.0;
    QTest::newRow("all left of it") << noise(2000, 50.0, 1) << 100.0 << 1.0;
    QTest::newRow("all right of it") << noise(2000, 50.0, 1) << -100.0 << 1.0;
    QTest::newRow("without order") << shuffled << 10.0 << 2.0;
}

void tst_GraphicCurve::runsAgreeWithAPlainCount()
{
    QFETCH(QVector<QPointF>, points);
    QFETCH(double, from);
    QFETCH(double, factor);
    constexpr int Columns = 50;
    QVector<GraphicRun> plain;
    for (const QPointF &point : qAsConst(points)) {
        const double pixel = std::floor((point.x() - from) * factor);
        const int column = static_cast<int>(std::clamp(pixel, -1.0, double(Columns)));
        const GraphicPoint last{point.x(), point.y()};
        if (plain.isEmpty() || plain.last().column != column)
            plain.append({column, 0, last, last, last.y, last.y});
        GraphicRun &run = plain.last();
        ++run.count;
        run.last = last;
        run.yMin = std::min(run.yMin, last.y);
        run.yMax = std::max(run.yMax, last.y);
    }

    const Runs found = runsOf(points, {from, factor, 0.0}, Columns);
    QCOMPARE(found.runs.size(), plain.size());
    for (int i = 0; i < plain.size(); ++i) {
        const GraphicRun &a = found.runs.at(i);
        const GraphicRun &b = plain.at(i);
        QCOMPARE(a.column, b.column);
        QCOMPARE(a.count, b.count);
        QCOMPARE(a.first.x, b.first.x);
        QCOMPARE(a.first.y, b.first.y);
        QCOMPARE(a.last.x, b.last.x);
        QCOMPARE(a.last.y, b.last.y);
        QCOMPARE(a.yMin, b.yMin);
        QCOMPARE(a.yMax, b.yMax);
    }
}

void tst_GraphicCurve::breaksEndRuns()
{
    const Runs found = runsOf({{1.1, 1}, {1.2, 2}, {1.3, Nan}, {1.4, 3}, {2.0, Nan}}, {0.0, 1.0, 0.0}, 10);
    QCOMPARE(found.gaps, 2);
    QCOMPARE(found.runs.size(), 2);
    QCOMPARE(found.runs.at(0).count, 2);
    QCOMPARE(found.runs.at(0).last.y, 2.0);
    QCOMPARE(found.runs.at(1).first.y, 3.0);
    QCOMPARE(found.runs.at(1).yMin, 3.0);
}

void tst_GraphicCurve::clip_data()
{
    QTest::addColumn<QLineF>("line");
    QTest::addColumn<bool>("isSeen");
    QTest::addColumn<QLineF>("left");

    QTest::newRow("inside") << QLineF(1, 1, 9, 9) << true << QLineF(1, 1, 9, 9);
    QTest::newRow("right through") << QLineF(-10, 5, 20, 5) << true << QLineF(0, 5, 10, 5);
    QTest::newRow("from far away") << QLineF(-1e12, -1e12, 1e12, 1e12) << true << QLineF(0, 0, 10, 10);
    QTest::newRow("one end outside") << QLineF(5, 5, 5, 1e15) << true << QLineF(5, 5, 5, 10);
    QTest::newRow("beside") << QLineF(-5, 1, -1, 9) << false << QLineF();
    QTest::newRow("past a corner") << QLineF(-4, 4, 5, -6) << false << QLineF();
    QTest::newRow("a point inside") << QLineF(5, 5, 5, 5) << true << QLineF(5, 5, 5, 5);
    QTest::newRow("a point outside") << QLineF(50, 5, 50, 5) << false << QLineF();
}

void tst_GraphicCurve::clip()
{
    QFETCH(QLineF, line);
    QFETCH(bool, isSeen);
    QFETCH(QLineF, left);
    QPointF a = line.p1();
    QPointF b = line.p2();
    QCOMPARE(clipLine(a, b, QRectF(0, 0, 10, 10)), isSeen);
    if (!isSeen)
        return;
    QVERIFY(QLineF(a, left.p1()).length() < 1e-3);
    QVERIFY(QLineF(b, left.p2()).length() < 1e-3);
}

void tst_GraphicCurve::everyColumnShowsItsExtremes_data()
{
    QTest::addColumn<int>("count");

    QTest::newRow("some per column") << 2000;
    QTest::newRow("very many per column") << 300000;
}

void tst_GraphicCurve::everyColumnShowsItsExtremes()
{
    QFETCH(int, count);
    QVector<QPointF> points = noise(count, 200.0, 11);
    points[count * 3 / 4].setY(99.0); // a peak of one sample
    const QImage image = pictureOf(points);

    QVector<double> least(200, 1000.0);
    QVector<double> most(200, -1000.0);
    for (const QPointF &point : qAsConst(points)) {
        const int column = static_cast<int>(point.x());
        least[column] = std::min(least[column], point.y());
        most[column] = std::max(most[column], point.y());
    }
    for (int x = 0; x < 200; ++x) {
        const double top = 100.0 - most[x];
        const double bottom = 100.0 - least[x];
        QVERIFY(darkness(image, x, static_cast<int>(top)) > 100);
        QVERIFY(darkness(image, x, static_cast<int>(bottom)) > 100);
        QVERIFY(inkIn(image, x) >= bottom - top);
        // Lines to the neighbours may reach further where there are few points.
        if (count < 100000)
            continue;
        QVERIFY(std::abs(darkestRow(image, x, true) - top) <= 1.5);
        QVERIFY(std::abs(darkestRow(image, x, false) - bottom) <= 1.5);
    }
    QVERIFY(darkness(image, 150, 1) > 200);
}

void tst_GraphicCurve::neighbourColumnsTouch()
{
    QVector<QPointF> points;
    for (int i = 0; i < 2000; ++i)
        points.append(QPointF(i / 10.0, i < 1000 ? 10.0 : 90.0)); // a step between two columns
    const QImage image = pictureOf(points);
    for (int y = 12; y < 88; ++y)
        QVERIFY2(darkness(image, 99, y) > 200 || darkness(image, 100, y) > 200, qPrintable(QString::number(y)));
    QCOMPARE(darkness(image, 97, 50), 0);
    QCOMPARE(darkness(image, 102, 50), 0);
}

void tst_GraphicCurve::linesBetweenFewPoints()
{
    const QImage image = pictureOf({{10, 10}, {190, 90}});
    for (int x = 12; x < 188; x += 8) {
        const double y = 100.0 - (10.0 + (x - 9.5) * 80.0 / 180.0);
        const int row = static_cast<int>(y);
        QVERIFY(darkness(image, x, row - 1) + darkness(image, x, row) + darkness(image, x, row + 1) > 200);
    }
    QCOMPARE(inkIn(image, 5), 0.0);
    QCOMPARE(inkIn(image, 195), 0.0);
}

void tst_GraphicCurve::gapStaysEmpty()
{
    QVector<QPointF> points;
    for (int i = 0; i < 20000; ++i)
        points.append(QPointF(i / 100.0, i >= 8000 && i < 12000 ? Nan : 50.0));
    const QImage dense = pictureOf(points);
    const QImage sparse = pictureOf({{0, 50}, {79, 50}, {100, Nan}, {121, 50}, {199, 50}});
    for (const QImage &image : {dense, sparse}) {
        QVERIFY(inkIn(image, 40) > 0.9);
        QCOMPARE(inkIn(image, 100), 0.0);
        QVERIFY(inkIn(image, 160) > 0.9);
    }
}

void tst_GraphicCurve::lonePointIsADot()
{
    const QImage image = pictureOf({{10, 10}, {20, Nan}, {100, 50}, {120, Nan}, {190, 90}});
    for (const QPoint at : {QPoint(10, 90), QPoint(100, 50), QPoint(190, 10)})
        QVERIFY(darkness(image, at.x(), at.y()) + darkness(image, at.x() - 1, at.y() - 1) > 200);
    QCOMPARE(inkIn(image, 50), 0.0);
}

void tst_GraphicCurve::farAwayPointsKeepTheSlope()
{
    // Through the middle, from and to where no painter can count.
    const QImage image = pictureOf({{100 - 1e13, 50 - 1e13}, {100 + 1e13, 50 + 1e13}});
    for (const int offset : {-40, -10, 0, 10, 40})
        QVERIFY(darkness(image, 100 + offset, 50 - offset) + darkness(image, 100 + offset, 49 - offset) > 80);
}

void tst_GraphicCurve::goingBackAndForth()
{
    QVector<QPointF> points;
    for (int i = 0; i <= 100000; ++i) {
        const double angle = 2.0 * M_PI * 10.0 * i / 100000.0; // ten times around
        points.append(QPointF(100.0 + 40.0 * std::cos(angle), 50.0 + 40.0 * std::sin(angle)));
    }
    const QImage image = pictureOf(points);
    for (int i = 0; i < 36; ++i) {
        const double angle = M_PI * i / 18.0;
        const int x = static_cast<int>(100.0 + 40.0 * std::cos(angle));
        const int y = static_cast<int>(50.0 - 40.0 * std::sin(angle));
        int darkest = 0;
        for (const QPoint step : {QPoint(0, 0), QPoint(-1, 0), QPoint(0, -1), QPoint(1, 0), QPoint(0, 1)})
            darkest = std::max(darkest, darkness(image, x + step.x(), y + step.y()));
        QVERIFY2(darkest > 100, qPrintable(QString::number(i)));
    }
    QCOMPARE(darkness(image, 100, 50), 0);
    QCOMPARE(inkIn(image, 30), 0.0);
}

void tst_GraphicCurve::smoothCurveIsSmooth()
{
    QVector<QPointF> points;
    for (int i = 0; i < 20000; ++i)
        points.append(QPointF(i / 100.0, 50.0 + i / 20000.0)); // rises by one pixel over the picture
    const QImage image = pictureOf(points, 1.5);
    for (int x = 5; x < 195; x += 10)
        QVERIFY(std::abs(inkIn(image, x) - 1.5) < 0.1);
    QVERIFY(darkness(image, 10, 50) > darkness(image, 190, 50));
}

void tst_GraphicCurve::pixelRatio_data()
{
    QTest::addColumn<double>("ratio");

    QTest::newRow("1") << 1.0;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2") << 2.0;
}

void tst_GraphicCurve::pixelRatio()
{
    QFETCH(double, ratio);
    QVector<QPointF> points = noise(100000, 200.0, 4);
    for (QPointF &point : points)
        point.setY(50.0);
    points[50000].setY(80.0);
    const QImage image = pictureOf(points, 1.0, ratio);
    QVERIFY(darkness(image, qRound(100.0 * ratio), qRound(30.0 * ratio)) > 100);
    for (const double x : {10.5, 60.5, 150.5})
        QVERIFY(std::abs(inkIn(image, qRound(x * ratio)) - ratio) < 0.2);
}

void tst_GraphicCurve::nothingOutsideTheArea()
{
    QImage image(200, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    drawSeries(painter, QRectF(50, 20, 100, 60), seriesOf(noise(50000, 200.0, 9)), {0.0, 1.0, 0.0}, {0.0, -1.0, 100.0},
               QPen(Qt::black, 3.0));
    QCOMPARE(painter.worldTransform(), QTransform());
    QVERIFY(!painter.hasClipping());
    painter.end();
    for (int x = 0; x < 200; ++x) {
        const bool isInside = x >= 50 && x < 150;
        QVERIFY(isInside ? inkIn(image, x) > 50.0 : inkIn(image, x) == 0.0);
        QCOMPARE(darkness(image, x, 19), 0);
        QCOMPARE(darkness(image, x, 80), 0);
    }
}

void tst_GraphicCurve::paperHasLinesOnly()
{
    QPicture picture;
    {
        QPainter painter(&picture);
        QVector<QPointF> points = noise(100000, 200.0, 4);
        points[50000].setY(99.0);
        drawSeries(painter, QRectF(0, 0, 200, 100), seriesOf(points), {0.0, 1.0, 0.0}, {0.0, -1.0, 100.0},
                   QPen(Qt::black, 1.0));
    }
    QVERIFY(picture.size() < 100000);
    QImage image(200, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.drawPicture(0, 0, picture);
    painter.end();
    QVERIFY(darkness(image, 100, 2) + darkness(image, 99, 2) > 100);
    for (int x = 2; x < 198; x += 5)
        QVERIFY(inkIn(image, x) > 30.0);
}

KEL_TEST_MAIN(tst_GraphicCurve)
#include "tst_graphiccurve.moc"
