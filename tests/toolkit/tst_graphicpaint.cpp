#include "testmain.h"

#include "../support/plotbench.h"

#include <QPaintEvent>
#include <QPainter>
#include <QSignalSpy>

#include <cmath>
#include <random>

/// What a plot shows, probed in pixels, and when it paints.
class tst_GraphicPaint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void curveIsWhereItsPointsAre();
    void peakAmongAMillion();
    void coloursAreTheirOwn_data();
    void coloursAreTheirOwn();
    void widthOfCurves_data();
    void widthOfCurves();
    void breaksAreSeen();
    void gridComesAndGoes();
    void legendShowsColours();
    void hiddenCurveIsNotDrawn();
    void pausedPictureStandsStill();
    void clearForgetsAPausedPicture();
    void disabledIsPale();
    void paletteIsFollowed();
    void curvesFollowThePalette();
    void userPaintsOverTheCurves();
    void userPaintsWithAFreshPainter();
    void manyPointsCostOneRepaint();
    void pointsAreSeenWithoutAnUpdate();
    void updateAlwaysPaints();
    void newPointsPaintTheirPlaceOnly();
    void updateNowPaintsAtOnce();
    void changedCurveIsRepainted();
    void newPointsAloneMakeTheSamePicture_data();
    void newPointsAloneMakeTheSamePicture();
    void hiddenPlotPaintsNothing();
    void otherTimersDoNotMatter();
    void axesAgreeWithTheCanvas();
    void precisionStepIsSeen();
    void timeAxisIsSeen();
    void titlesAndUnits();
};

static QImage canvasOf(Graphic &plot)
{
    return plot.canvas()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

static bool isLike(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) < 60 && qAbs(a.green() - b.green()) < 60 && qAbs(a.blue() - b.blue()) < 60;
}

/// How many pixels of \a image are like \a color.
static int count(const QImage &image, const QColor &color)
{
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            found += isLike(image.pixelColor(x, y), color) ? 1 : 0;
    }
    return found;
}

static bool isNear(const QImage &image, const QPointF &at, const QColor &color)
{
    const QPoint middle = at.toPoint();
    return count(image.copy(QRect(middle - QPoint(1, 1), QSize(3, 3))), color) > 0;
}

void tst_GraphicPaint::curveIsWhereItsPointsAre()
{
    PlotBench bench;
    bench.plot.graphic(0).color = Qt::red;
    bench.plot.setCurveWidth(2.0);
    const QImage image = canvasOf(bench.plot);
    for (const double value : {5.0, 40.0, 77.0, 95.0}) {
        QVERIFY(isNear(image, bench.at(value, value), Qt::red));
        QVERIFY(!isNear(image, bench.at(value, value + 4.0), Qt::red));
    }
}

void tst_GraphicPaint::peakAmongAMillion()
{
    PlotBench bench;
    bench.plot.graphic(0).color = Qt::red;
    bench.plot.clear();
    for (int i = 0; i < 1000000; ++i)
        bench.plot.addPoint(i * 1e-4, i == 654321 ? 90.0 : 10.0 + std::sin(i * 0.01));
    const QImage image = canvasOf(bench.plot);
    QVERIFY(isNear(image, bench.at(65.4321, 90.0), Qt::red));
    QVERIFY(isNear(image, bench.at(65.4321, 50.0), Qt::red));
    QVERIFY(!isNear(image, bench.at(64.0, 50.0), Qt::red));
    QVERIFY(isNear(image, bench.at(20.0, 10.0), Qt::red));
}

void tst_GraphicPaint::coloursAreTheirOwn_data()
{
    QTest::addColumn<QColor>("base");

    QTest::newRow("on white") << QColor(Qt::white);
    QTest::newRow("on black") << QColor(Qt::black);
}

void tst_GraphicPaint::coloursAreTheirOwn()
{
    QFETCH(QColor, base);
    PlotBench bench;
    QPalette palette;
    palette.setColor(QPalette::Base, base);
    bench.plot.setPalette(palette);
    bench.plot.setCurveWidth(6.0);
    bench.plot.setGraphicsCount(3, true);
    for (int i = 0; i < 3; ++i)
        bench.plot.setGraphicData({{0.0, 20.0 + 30.0 * i}, {100.0, 20.0 + 30.0 * i}}, i);
    const QImage image = canvasOf(bench.plot);
    QVector<QColor> colors;
    for (int i = 0; i < 3; ++i)
        colors << image.pixelColor(bench.at(53.0, 20.0 + 30.0 * i).toPoint());
    QVERIFY(!isLike(colors[0], colors[1]) && !isLike(colors[0], colors[2]) && !isLike(colors[1], colors[2]));
    for (const QColor &color : qAsConst(colors))
        QVERIFY(!isLike(color, base));
    QCOMPARE(image.pixelColor(bench.at(53.0, 35.0).toPoint()), base);
}

void tst_GraphicPaint::widthOfCurves_data()
{
    QTest::addColumn<int>("points");

    QTest::newRow("few points") << 2;
    QTest::newRow("many points") << 100000;
}

void tst_GraphicPaint::widthOfCurves()
{
    QFETCH(int, points);
    PlotBench bench;
    bench.plot.graphic(0).color = Qt::red;
    bench.plot.setGridVisible(false);
    bench.plot.clear();
    for (int i = 0; i < points; ++i)
        bench.plot.addPoint(100.0 * i / (points - 1), 50.0);
    for (const int width : {2, 8}) {
        bench.plot.setCurveWidth(width);
        const QImage image = canvasOf(bench.plot);
        double ink = 0.0;
        for (int y = 0; y < image.height(); ++y) {
            const QColor color = image.pixelColor(image.width() / 3, y);
            if (color.red() > 200)
                ink += 1.0 - color.green() / 255.0;
        }
        QVERIFY2(std::abs(ink - width) < 0.8, qPrintable(QString::number(ink)));
    }
}

void tst_GraphicPaint::breaksAreSeen()
{
    PlotBench bench;
    bench.plot.graphic(0).color = Qt::red;
    bench.plot.setCurveWidth(3.0); // the middle may lie between two rows of pixels
    bench.plot.setGraphicData({{0, 50}, {40, 50}, {50, std::nan("")}, {60, 50}, {100, 50}});
    const QImage image = canvasOf(bench.plot);
    QVERIFY(isNear(image, bench.at(30.0, 50.0), Qt::red));
    QVERIFY(!isNear(image, bench.at(50.0, 50.0), Qt::red));
    QVERIFY(isNear(image, bench.at(70.0, 50.0), Qt::red));
}

void tst_GraphicPaint::gridComesAndGoes()
{
    PlotBench bench;
    bench.plot.clear();
    const QColor base = bench.plot.palette().color(QPalette::Base);
    const auto marks = [&bench, base] {
        const QImage image = canvasOf(bench.plot);
        int found = 0;
        for (int x = 2; x < image.width() - 2; ++x)
            found += image.pixelColor(x, 3) != base ? 1 : 0;
        return found;
    };
    QVERIFY(marks() >= 1);
    bench.plot.setGridVisible(false);
    QCOMPARE(marks(), 0);
    bench.plot.setGridVisible(true);
    QVERIFY(marks() >= 1);
}

void tst_GraphicPaint::legendShowsColours()
{
    PlotBench bench;
    auto *legend = bench.plot.findChild<QWidget *>(QStringLiteral("legend"));
    bench.plot.graphic(0).color = Qt::red;
    bench.plot.updateLegend(true);
    QVERIFY(count(legend->grab().toImage(), Qt::red) > 10);
    bench.plot.graphic(0).color = Qt::green;
    bench.plot.updateLegend(true);
    QCOMPARE(count(legend->grab().toImage(), Qt::red), 0);
    QVERIFY(count(legend->grab().toImage(), Qt::green) > 10);
}

void tst_GraphicPaint::hiddenCurveIsNotDrawn()
{
    PlotBench bench;
    bench.plot.graphic(0).color = Qt::red;
    bench.plot.update(false);
    QVERIFY(count(canvasOf(bench.plot), Qt::red) > 50);
    bench.plot.graphic(0).isVisible = false;
    bench.plot.update(false);
    QCOMPARE(count(canvasOf(bench.plot), Qt::red), 0);
}

void tst_GraphicPaint::pausedPictureStandsStill()
{
    PlotBench bench;
    bench.plot.fit();
    bench.plot.setPaused(true);
    const QImage before = canvasOf(bench.plot);
    for (int i = 0; i < 1000; ++i)
        bench.plot.addPoint(100.0 + i, -50.0);
    QCOMPARE(canvasOf(bench.plot), before);
    bench.wheel(bench.at(50, 50), 120); // it can still be looked at closely
    QVERIFY(canvasOf(bench.plot) != before);
    bench.plot.fit();
    QCOMPARE(canvasOf(bench.plot), before);
    bench.plot.setPaused(false);
    QVERIFY(canvasOf(bench.plot) != before);
}

void tst_GraphicPaint::clearForgetsAPausedPicture()
{
    PlotBench bench;
    bench.plot.graphic(0).color = Qt::red;
    bench.plot.setCurveWidth(3.0);
    bench.plot.setPaused(true);
    QVERIFY(count(canvasOf(bench.plot), Qt::red) > 50);
    bench.plot.clear();
    QCOMPARE(count(canvasOf(bench.plot), Qt::red), 0);
}

void tst_GraphicPaint::disabledIsPale()
{
    PlotBench bench;
    bench.plot.graphic(0).color = Qt::black;
    bench.plot.update(false);
    QVERIFY(count(canvasOf(bench.plot), Qt::black) > 50);
    bench.plot.setEnabled(false);
    QCOMPARE(count(canvasOf(bench.plot), Qt::black), 0);
    bench.plot.setEnabled(true);
    QVERIFY(count(canvasOf(bench.plot), Qt::black) > 50);
}

void tst_GraphicPaint::paletteIsFollowed()
{
    PlotBench bench;
    const QImage before = canvasOf(bench.plot);
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(20, 30, 40));
    palette.setColor(QPalette::Text, Qt::white);
    bench.plot.setPalette(palette);
    const QImage after = canvasOf(bench.plot);
    QCOMPARE(after.pixelColor(bench.at(73.0, 7.0).toPoint()), QColor(20, 30, 40));
    QVERIFY(before != after);
}

void tst_GraphicPaint::curvesFollowThePalette()
{
    const PlotBench reference;
    PlotBench changed;
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::Text, Qt::white);
    PlotBench fresh;
    fresh.plot.setPalette(dark);
    fresh.plot.updateLegend(true);
    changed.plot.setPalette(dark);
    const auto legendOf = [](const PlotBench &bench) {
        return bench.plot.findChild<QWidget *>(QStringLiteral("legend"))->grab().toImage();
    };
    QVERIFY(legendOf(reference) != legendOf(fresh));
    QCOMPARE(legendOf(changed), legendOf(fresh));
    QCOMPARE(canvasOf(changed.plot), canvasOf(fresh.plot));
}

void tst_GraphicPaint::userPaintsOverTheCurves()
{
    PlotBench bench;
    bench.plot.graphic(0).color = Qt::red;
    bench.plot.setCurveWidth(2.0);
    const QPoint middle = bench.at(50, 50).toPoint();
    QObject::connect(&bench.plot, &Graphic::graphicPaintEvent, &bench.plot, [middle](QPainter *painter) {
        painter->fillRect(QRect(middle - QPoint(10, 10), QSize(20, 20)), Qt::blue);
    });
    const QImage image = canvasOf(bench.plot);
    QCOMPARE(image.pixelColor(middle), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(middle + QPoint(9, 9)), QColor(Qt::blue));
    QVERIFY(isNear(image, bench.at(70, 70), Qt::red));
}

void tst_GraphicPaint::userPaintsWithAFreshPainter()
{
    PlotBench bench;
    bench.plot.setCursorVisible(true);
    QVector<QTransform> transforms;
    QVector<double> opacities;
    QObject::connect(&bench.plot, &Graphic::graphicPaintEvent, &bench.plot, [&](QPainter *painter) {
        transforms << painter->worldTransform();
        opacities << painter->opacity();
        painter->translate(50, 50);
        painter->setOpacity(0.5);
    });
    canvasOf(bench.plot);
    canvasOf(bench.plot);
    QCOMPARE(transforms, QVector<QTransform>(2));
    QCOMPARE(opacities, QVector<double>({1.0, 1.0}));
}

namespace
{

/// Counts the pictures that a plot paints.
class Pictures
{
public:
    explicit Pictures(Graphic &plot)
        : m_spy(&plot, &Graphic::graphicPaintEvent)
    {
        // What was scheduled before is not counted.
        QTest::qWait(60);
        m_spy.clear();
    }
    int count() const { return m_spy.count(); }

private:
    QSignalSpy m_spy;
};

/// Collects what a widget is told to paint.
class PaintedRegion : public QObject
{
public:
    explicit PaintedRegion(QWidget *widget) { widget->installEventFilter(this); }

    QRegion all;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            all |= static_cast<QPaintEvent *>(event)->region();
        return false;
    }
};

} // namespace

void tst_GraphicPaint::manyPointsCostOneRepaint()
{
    PlotBench bench;
    QVERIFY(QTest::qWaitForWindowExposed(&bench.plot));
    const Pictures pictures(bench.plot);
    for (int i = 0; i < 10000; ++i)
        bench.plot.addPoint(i, i);
    for (int i = 0; i < 100; ++i)
        bench.plot.update(false);
    QCOMPARE(pictures.count(), 0);
    QTRY_COMPARE(pictures.count(), 1);
    QTest::qWait(60);
    QCOMPARE(pictures.count(), 1);
}

void tst_GraphicPaint::pointsAreSeenWithoutAnUpdate()
{
    PlotBench bench;
    QVERIFY(QTest::qWaitForWindowExposed(&bench.plot));
    const Pictures pictures(bench.plot);
    bench.plot.addPoint(1.0, 1.0);
    QTRY_COMPARE(pictures.count(), 1);
}

void tst_GraphicPaint::updateAlwaysPaints()
{
    PlotBench bench;
    QVERIFY(QTest::qWaitForWindowExposed(&bench.plot));
    const Pictures pictures(bench.plot);
    bench.plot.update(false); // nothing has changed, but its user may paint something else now
    QTRY_COMPARE(pictures.count(), 1);
    bench.plot.update(false);
    QTRY_COMPARE(pictures.count(), 2);
}

void tst_GraphicPaint::newPointsPaintTheirPlaceOnly()
{
    PlotBench bench;
    QVERIFY(QTest::qWaitForWindowExposed(&bench.plot));
    QTest::qWait(60);
    PaintedRegion region(bench.plot.canvas());
    bench.plot.addPoint(99.0, 50.0); // after one at 100
    QTRY_VERIFY(!region.all.isEmpty());
    QVERIFY(region.all.boundingRect().width() < 60);
    QVERIFY(region.all.boundingRect().contains(bench.at(99.0, 50.0).toPoint()));

    region.all = QRegion();
    bench.plot.setCursorVisible(true);
    QTRY_COMPARE(region.all.boundingRect(), bench.plot.canvas()->rect());
    region.all = QRegion();
    bench.plot.addPoint(98.0, 50.0); // what the cursor reads may be anywhere
    QTRY_COMPARE(region.all.boundingRect(), bench.plot.canvas()->rect());
}

void tst_GraphicPaint::updateNowPaintsAtOnce()
{
    PlotBench bench;
    QVERIFY(QTest::qWaitForWindowExposed(&bench.plot));
    const Pictures pictures(bench.plot);
    bench.plot.update(true);
    QCOMPARE(pictures.count(), 1);
    QTest::qWait(60);
    QCOMPARE(pictures.count(), 1);
}

void tst_GraphicPaint::changedCurveIsRepainted()
{
    PlotBench bench;
    bench.plot.graphic(0).color = Qt::red;
    bench.plot.update(true);
    bench.plot.graphic(0).color = Qt::blue;
    bench.plot.update(false);
    QCOMPARE(count(canvasOf(bench.plot), Qt::red), 0);
    QVERIFY(count(canvasOf(bench.plot), Qt::blue) > 50);
}

void tst_GraphicPaint::newPointsAloneMakeTheSamePicture_data()
{
    QTest::addColumn<QVector<QPointF>>("points");
    QTest::addColumn<int>("tick"); // points in each picture
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("history");

    std::mt19937 random(3);
    std::uniform_real_distribution<double> anywhere(5.0, 95.0);
    QVector<QPointF> dense;
    QVector<QPointF> sparse;
    QVector<QPointF> turning;
    for (int i = 0; i < 20000; ++i)
        dense << QPointF(i / 200.0, i % 1000 < 10 ? std::nan("") : anywhere(random));
    for (int i = 0; i < 60; ++i)
        sparse << QPointF(i * 1.7, i % 7 == 3 ? std::nan("") : anywhere(random));
    for (int i = 0; i < 300; ++i)
        turning << QPointF(50.0 + 40.0 * std::cos(i * 0.1), anywhere(random));
    QTest::newRow("dense") << dense << 171 << 1.5 << -1.0;
    QTest::newRow("dense and wide") << dense << 400 << 7.0 << -1.0;
    QTest::newRow("one by one") << sparse << 1 << 1.0 << -1.0;
    QTest::newRow("one by one and wide") << sparse << 1 << 9.0 << -1.0;
    QTest::newRow("back and forth") << turning << 3 << 1.5 << -1.0;
    QTest::newRow("old ones go") << dense << 171 << 1.5 << 20.0;
}

void tst_GraphicPaint::newPointsAloneMakeTheSamePicture()
{
    QFETCH(QVector<QPointF>, points);
    QFETCH(int, tick);
    QFETCH(double, width);
    QFETCH(double, history);
    PlotBench growing;
    PlotBench whole;
    for (PlotBench *bench : {&growing, &whole}) {
        bench->plot.setCurveWidth(width);
        bench->plot.graphic(0).color = Qt::black;
        bench->plot.clear();
        bench->plot.setHistorySize(history);
    }
    for (int i = 0; i < points.size(); ++i) {
        growing.plot.addPoint(points.at(i).x(), points.at(i).y());
        if (i % tick == 0)
            canvasOf(growing.plot);
    }
    whole.plot.setGraphicData(points);
    const QImage a = canvasOf(growing.plot);
    const QImage b = canvasOf(whole.plot);
    QCOMPARE(a.size(), b.size());
    int largest = 0; // a line's smooth edges depend a little on how it is cut into pieces
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            largest = std::max(largest, qAbs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))));
    }
    QVERIFY2(largest < 160, qPrintable(QString::number(largest)));
}

void tst_GraphicPaint::hiddenPlotPaintsNothing()
{
    PlotBench bench;
    QVERIFY(QTest::qWaitForWindowExposed(&bench.plot));
    bench.plot.hide();
    const Pictures pictures(bench.plot);
    bench.plot.addPoint(1.0, 1.0);
    bench.plot.update(false);
    bench.plot.update(true);
    QTest::qWait(60);
    QCOMPARE(pictures.count(), 0);
    bench.plot.show();
    QTRY_VERIFY(pictures.count() > 0);
}

void tst_GraphicPaint::otherTimersDoNotMatter()
{
    PlotBench bench;
    QVERIFY(QTest::qWaitForWindowExposed(&bench.plot));
    const Pictures pictures(bench.plot);
    const int timer = bench.plot.startTimer(1);
    QTest::qWait(60);
    bench.plot.killTimer(timer);
    QCOMPARE(pictures.count(), 0);
}

void tst_GraphicPaint::axesAgreeWithTheCanvas()
{
    // All at once, never shown before: labels, canvas and curve belong to the same range.
    Graphic atOnce;
    Graphic slowly;
    for (Graphic *plot : {&atOnce, &slowly}) {
        plot->resize(500, 300);
        plot->setGraphicsCount(1, true);
    }
    slowly.grab();
    slowly.setGraphicData({{-3000.0, -5e5}, {7000.0, 5e5}});
    for (int i = 0; i < 3; ++i)
        slowly.grab();
    atOnce.setGraphicData({{-3000.0, -5e5}, {7000.0, 5e5}});
    QCOMPARE(atOnce.grab().toImage(), slowly.grab().toImage());
}

void tst_GraphicPaint::precisionStepIsSeen()
{
    PlotBench bench;
    bench.plot.setVisibleRange(Graphic::YAxis, 0.0, 2.0);
    const QImage shortest = bench.plot.grab().toImage();
    bench.plot.setAxisLabelPrecisionStep(3);
    QVERIFY(bench.plot.grab().toImage() != shortest);
    bench.plot.setAxisLabelPrecisionStep(0);
    QCOMPARE(bench.plot.grab().toImage(), shortest);
}

void tst_GraphicPaint::timeAxisIsSeen()
{
    PlotBench bench;
    const QImage numbers = bench.plot.grab().toImage();
    const QSize before = bench.plot.canvas()->size();
    bench.plot.setTimeAxis(true);
    QVERIFY(bench.plot.grab().toImage() != numbers);
    QVERIFY(bench.plot.canvas()->height() < before.height()); // the date has a line of its own
}

void tst_GraphicPaint::titlesAndUnits()
{
    PlotBench bench;
    const QSize before = bench.plot.canvas()->size();
    bench.plot.setAxisTitle(Graphic::YAxis, QStringLiteral("Pressure"));
    bench.plot.grab();
    QVERIFY(bench.plot.canvas()->width() < before.width());
    bench.plot.setAxisUnit(Graphic::XAxis, QStringLiteral("m"));
    bench.plot.grab();
    QVERIFY(bench.plot.canvas()->height() < before.height());
    bench.plot.setAxisTitle(Graphic::YAxis, QString());
    bench.plot.setAxisUnit(Graphic::XAxis, QString());
    bench.plot.grab();
    QCOMPARE(bench.plot.canvas()->size(), before);
    // A title that has no room is left out rather than cut off.
    bench.plot.setAxisTitle(Graphic::YAxis, QString(500, 'm'));
    bench.plot.grab();
    QCOMPARE(bench.plot.canvas()->size(), before);
}

KEL_TEST_MAIN(tst_GraphicPaint)
#include "tst_graphicpaint.moc"
