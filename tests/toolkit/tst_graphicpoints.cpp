#include "testmain.h"

#include <QSignalSpy>
#include <graphic.h>

#include <cmath>

/// The curves of a plot and their points: what is kept, fitted and held.
class tst_GraphicPoints : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void curvesCount_data();
    void curvesCount();
    void resizedCurvesKeepTheirPoints();
    void missingCurves();
    void points();
    void pointsAreChosen_data();
    void pointsAreChosen();
    void historySetting_data();
    void historySetting();
    void historyOfEachCurve();
    void clearForgetsPointsOnly();
    void fitFollowsThePoints_data();
    void fitFollowsThePoints();
    void hiddenCurvesDoNotFit();
    void nothingToFitKeepsTheRange();
    void pauseHoldsThePoints();
    void pauseAndClear();
    void pauseAndHistory();
    void pauseIsAnnounced();
};

static const double Infinity = std::numeric_limits<double>::infinity();
static const double Nan = std::numeric_limits<double>::quiet_NaN();
using Points = QVector<QPointF>;
using Range = QPair<double, double>;

static Points line(int count)
{
    Points points;
    for (int i = 0; i < count; ++i)
        points.append(QPointF(i, i));
    return points;
}

void tst_GraphicPoints::curvesCount_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("count");

    QTest::newRow("some") << 3 << 3;
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("below 0 is none") << -5 << 0;
}

void tst_GraphicPoints::curvesCount()
{
    QFETCH(int, given);
    QFETCH(int, count);
    for (const bool resize : {false, true}) {
        Graphic plot;
        plot.setGraphicsCount(1, true);
        plot.setGraphicsCount(given, resize);
        QCOMPARE(plot.graphicsCount(), count);
        for (int i = 0; i < count; ++i) {
            QVERIFY(plot.graphic(i).name.isEmpty());
            QVERIFY(plot.graphic(i).isVisible);
            QVERIFY(!plot.graphic(i).color.isValid());
        }
    }
}

void tst_GraphicPoints::resizedCurvesKeepTheirPoints()
{
    Graphic plot;
    plot.setGraphicsCount(2, true);
    plot.graphic(0).name = QStringLiteral("a");
    plot.graphic(1).name = QStringLiteral("b");
    plot.addPoint(1.0, 2.0, 0);
    plot.addPoint(3.0, 4.0, 1);

    plot.setGraphicsCount(3, true);
    QCOMPARE(plot.graphic(1).name, QStringLiteral("b"));
    QCOMPARE(plot.graphicData(1), Points({{3.0, 4.0}}));
    QCOMPARE(plot.pointsCount(2), 0);

    plot.setGraphicsCount(1, true);
    plot.setGraphicsCount(2, true);
    QCOMPARE(plot.graphicData(0), Points({{1.0, 2.0}}));
    QVERIFY(plot.graphic(1).name.isEmpty());
    QCOMPARE(plot.pointsCount(1), 0);

    plot.setGraphicsCount(2, false);
    QVERIFY(plot.graphic(0).name.isEmpty());
    QCOMPARE(plot.pointsCount(0), 0);
}

void tst_GraphicPoints::missingCurves()
{
    Graphic plot;
    plot.setGraphicsCount(1, true);
    for (const int i : {-1, 1, 100}) {
        plot.addPoint(1.0, 1.0, i);
        plot.setGraphicData(line(3), i);
        plot.graphic(i).name = QStringLiteral("nobody");
        QVERIFY(plot.graphic(i).name.isEmpty());
        QVERIFY(plot.graphicData(i).isEmpty());
        QCOMPARE(plot.pointsCount(i), 0);
    }
    QCOMPARE(plot.pointsCount(0), 0);
    QVERIFY(plot.graphic(0).name.isEmpty());
}

void tst_GraphicPoints::points()
{
    Graphic plot;
    plot.setGraphicsCount(2, true);
    plot.addPoint(1.0, 2.0);
    plot.addPoint(2.0, 3.0, 1);
    QCOMPARE(plot.graphicData(0), Points({{1.0, 2.0}}));
    QCOMPARE(plot.graphicData(1), Points({{2.0, 3.0}}));

    plot.setGraphicData(line(4), 1);
    QCOMPARE(plot.graphicData(1), line(4));
    QCOMPARE(plot.graphicData(0), Points({{1.0, 2.0}}));
    plot.setGraphicData({}, 1);
    QCOMPARE(plot.pointsCount(1), 0);
}

void tst_GraphicPoints::pointsAreChosen_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<int>("count");

    QTest::newRow("finite") << 1.0 << 1.0 << 2;
    QTest::newRow("x not a number") << Nan << 1.0 << 1;
    QTest::newRow("x infinite") << Infinity << 1.0 << 1;
    QTest::newRow("y not a number breaks the curve") << 1.0 << Nan << 2;
    QTest::newRow("y infinite breaks the curve") << 1.0 << -Infinity << 2;
}

void tst_GraphicPoints::pointsAreChosen()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(int, count);
    Graphic plot;
    plot.setGraphicsCount(2, true);
    plot.addPoint(0.0, 0.0, 0);
    plot.addPoint(x, y, 0);
    plot.setGraphicData({{0.0, 0.0}, {x, y}}, 1);
    QCOMPARE(plot.pointsCount(0), count);
    QCOMPARE(plot.pointsCount(1), count);
    QVERIFY(count == 1 || std::isfinite(y) || std::isnan(plot.graphicData(0).last().y()));
}

void tst_GraphicPoints::historySetting_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("stored");
    QTest::addColumn<int>("left");

    QTest::newRow("without limit") << -1.0 << -1.0 << 10;
    QTest::newRow("some") << 3.0 << 3.0 << 4;
    QTest::newRow("only the newest") << 0.0 << 0.0 << 1;
    QTest::newRow("not a number is ignored") << Nan << 5.0 << 6;
}

void tst_GraphicPoints::historySetting()
{
    QFETCH(double, given);
    QFETCH(double, stored);
    QFETCH(int, left);
    Graphic before;
    before.setGraphicsCount(1, true);
    before.setHistorySize(std::isnan(given) ? 5.0 : -1.0);
    before.setHistorySize(given);
    for (const QPointF &point : line(10))
        before.addPoint(point.x(), point.y());
    Graphic after;
    after.setGraphicsCount(1, true);
    after.setGraphicData(line(10));
    after.setHistorySize(std::isnan(given) ? 5.0 : -1.0);
    after.setHistorySize(given);
    for (const Graphic *plot : {&before, &after}) {
        QCOMPARE(plot->historySize(), stored);
        QCOMPARE(plot->pointsCount(0), left);
        QCOMPARE(plot->graphicData(0), line(10).mid(10 - left));
    }
}

void tst_GraphicPoints::historyOfEachCurve()
{
    Graphic plot;
    plot.setHistorySize(5.0);
    plot.setGraphicsCount(2, true);
    plot.addPoint(0.0, 0.0, 0);
    plot.addPoint(100.0, 0.0, 1); // another curve's newest point makes nothing old
    QCOMPARE(plot.pointsCount(0), 1);
    plot.addPoint(5.5, 0.0, 0);
    QCOMPARE(plot.pointsCount(0), 1);
    plot.setGraphicsCount(3, false);
    plot.setGraphicData(line(10), 2);
    QCOMPARE(plot.pointsCount(2), 6);
}

void tst_GraphicPoints::clearForgetsPointsOnly()
{
    Graphic plot;
    plot.setGraphicsCount(2, true);
    plot.graphic(1).name = QStringLiteral("b");
    plot.setHistorySize(7.0);
    plot.setGraphicData(line(5), 0);
    plot.setGraphicData(line(5), 1);
    plot.clear();
    QCOMPARE(plot.graphicsCount(), 2);
    QCOMPARE(plot.pointsCount(0), 0);
    QCOMPARE(plot.pointsCount(1), 0);
    QCOMPARE(plot.graphic(1).name, QStringLiteral("b"));
    QCOMPARE(plot.historySize(), 7.0);
    QVERIFY(plot.isFitted());
}

void tst_GraphicPoints::fitFollowsThePoints_data()
{
    QTest::addColumn<Points>("points");
    QTest::addColumn<Range>("x");
    QTest::addColumn<Range>("y");

    QTest::newRow("x exactly, y rounded") << Points({{1, 10.3}, {5, 84.9}}) << Range(1, 5) << Range(0, 90);
    QTest::newRow("breaks do not count") << Points({{-3, Nan}, {1, 10.3}, {5, 84.9}, {9, Nan}}) << Range(1, 5)
                                         << Range(0, 90);
    QTest::newRow("one point") << Points({{10, 50}}) << Range(9, 11) << Range(45, 55);
    QTest::newRow("a level line") << Points({{0, 50}, {8, 50}}) << Range(0, 8) << Range(45, 55);
}

void tst_GraphicPoints::fitFollowsThePoints()
{
    QFETCH(Points, points);
    QFETCH(Range, x);
    QFETCH(Range, y);
    Graphic plot;
    plot.setGraphicsCount(1, true);
    for (const QPointF &point : qAsConst(points))
        plot.addPoint(point.x(), point.y());
    QCOMPARE(plot.visibleRange(Graphic::XAxis), x);
    QCOMPARE(plot.visibleRange(Graphic::YAxis), y);

    plot.addPoint(1000.0, 50.0);
    QCOMPARE(plot.visibleRange(Graphic::XAxis).second, 1000.0);
    plot.setVisibleRange(Graphic::XAxis, 0.0, 1.0);
    plot.addPoint(2000.0, 50.0);
    QCOMPARE(plot.visibleRange(Graphic::XAxis), Range(0.0, 1.0));
    plot.fit();
    QCOMPARE(plot.visibleRange(Graphic::XAxis).second, 2000.0);
}

void tst_GraphicPoints::hiddenCurvesDoNotFit()
{
    Graphic plot;
    plot.setGraphicsCount(2, true);
    plot.setGraphicData({{0, 0}, {10, 1}}, 0);
    plot.setGraphicData({{0, 0}, {1000, 1}}, 1);
    QCOMPARE(plot.visibleRange(Graphic::XAxis), Range(0.0, 1000.0));
    plot.graphic(1).isVisible = false;
    plot.update(false);
    QCOMPARE(plot.visibleRange(Graphic::XAxis), Range(0.0, 10.0));
}

void tst_GraphicPoints::nothingToFitKeepsTheRange()
{
    Graphic plot;
    plot.setGraphicsCount(1, true);
    const Range before = plot.visibleRange(Graphic::XAxis);
    QVERIFY(before.first < before.second);
    plot.setGraphicData({{0, 0}, {10, 1}}, 0);
    QCOMPARE(plot.visibleRange(Graphic::XAxis), Range(0.0, 10.0));
    plot.clear();
    QCOMPARE(plot.visibleRange(Graphic::XAxis), Range(0.0, 10.0));
}

void tst_GraphicPoints::pauseHoldsThePoints()
{
    Graphic plot;
    plot.setGraphicsCount(1, true);
    plot.setGraphicData(line(10), 0);
    plot.setPaused(true);
    plot.addPoint(100.0, 100.0);
    QCOMPARE(plot.pointsCount(0), 11);
    QCOMPARE(plot.visibleRange(Graphic::XAxis), Range(0.0, 9.0));
    plot.setPaused(false);
    QCOMPARE(plot.visibleRange(Graphic::XAxis), Range(0.0, 100.0));
}

void tst_GraphicPoints::pauseAndClear()
{
    Graphic plot;
    plot.setGraphicsCount(1, true);
    plot.setGraphicData(line(10), 0);
    plot.setPaused(true);
    plot.clear();
    plot.addPoint(100.0, 100.0);
    QVERIFY(plot.isPaused());
    QCOMPARE(plot.visibleRange(Graphic::XAxis), Range(0.0, 9.0)); // nothing is shown, so nothing fits
    plot.setPaused(false);
    QCOMPARE(plot.pointsCount(0), 1);
}

void tst_GraphicPoints::pauseAndHistory()
{
    Graphic plot;
    plot.setGraphicsCount(1, true);
    plot.setHistorySize(5.0);
    plot.setGraphicData(line(10), 0);
    plot.setPaused(true);
    for (int i = 10; i < 3000; ++i)
        plot.addPoint(i, i);
    QCOMPARE(plot.pointsCount(0), 6); // what is kept obeys the history also then
    QCOMPARE(plot.visibleRange(Graphic::XAxis), Range(4.0, 9.0));
    plot.setGraphicsCount(2, true);
    QCOMPARE(plot.visibleRange(Graphic::XAxis), Range(4.0, 9.0));
    plot.setPaused(false);
    QCOMPARE(plot.visibleRange(Graphic::XAxis), Range(2994.0, 2999.0));
}

void tst_GraphicPoints::pauseIsAnnounced()
{
    Graphic plot;
    QSignalSpy spy(&plot, &Graphic::pausedChanged);
    plot.setPaused(false);
    QCOMPARE(spy.count(), 0);
    plot.setPaused(true);
    plot.setPaused(true);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.last().first().toBool(), true);
}

KEL_TEST_MAIN(tst_GraphicPoints)
#include "tst_graphicpoints.moc"
