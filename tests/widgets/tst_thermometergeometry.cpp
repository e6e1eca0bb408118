#include "testmain.h"

#include <cfloat>
#include <kelthermometergeometry.h>

/// Where a thermometer's parts are, and which value and colour belong to which place.
class tst_ThermometerGeometry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lengths_data();
    void lengths();
    void roomForAScale_data();
    void roomForAScale();
    void outlineIsOneFigure_data();
    void outlineIsOneFigure();
    void shares_data();
    void shares();
    void liquidHeights_data();
    void liquidHeights();
    void liquidHeightIsSinglePrecision();
    void areasAreWholePixels_data();
    void areasAreWholePixels();
    void numbers_data();
    void numbers();
    void numberIsSinglePrecision();
    void colors_data();
    void colors();
    void ticks_data();
    void ticks();
    void labelsAsHighAsTheirStep();
    void tickPlaces();
    void ticksNeverOutnumberPixels_data();
    void ticksNeverOutnumberPixels();
};

void tst_ThermometerGeometry::lengths_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<float>("bulbRadius");
    QTest::newRow("as it comes") << QSize(120, 300) << 120 / 4.5f;
    QTest::newRow("square") << QSize(60, 60) << 10.0f;
    QTest::newRow("five times as high as wide") << QSize(50, 250) << 25.0f;
    QTest::newRow("slimmer still") << QSize(50, 2000) << 25.0f;
    QTest::newRow("as wide as can be") << QSize(100000, 70) << 10.0f;
    QTest::newRow("smallest hint") << QSize(30, 60) << 6.0f;
}

void tst_ThermometerGeometry::lengths()
{
    QFETCH(QSize, size);
    QFETCH(float, bulbRadius);

    const ThermometerGeometry geometry = layoutThermometer(size);
    QVERIFY(qAbs(geometry.bulbRadius - bulbRadius) < 0.002f);
    QCOMPARE(geometry.tubeHalfWidth, geometry.bulbRadius / 2);
    QCOMPARE(geometry.scaleLength, float(size.height()) - 2.5f * geometry.bulbRadius);
    QCOMPARE(geometry.origin(), QPointF(size.width() / 2.0, qreal(float(size.height()) - geometry.bulbRadius)));
}

void tst_ThermometerGeometry::roomForAScale_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("has");
    QTest::newRow("7 pixels high") << QSize(100, 7) << false; // 4.5 pixels
    QTest::newRow("8 pixels high") << QSize(100, 8) << true;
    QTest::newRow("a pixel") << QSize(1, 1) << false;
    QTest::newRow("nothing") << QSize(0, 0) << false;
    QTest::newRow("no width") << QSize(0, 100) << false;
    QTest::newRow("no height") << QSize(100, 0) << false;
    QTest::newRow("negative") << QSize(-5, 100) << false;
    QTest::newRow("a line") << QSize(1, 100) << true;
}

void tst_ThermometerGeometry::roomForAScale()
{
    QFETCH(QSize, size);
    QFETCH(bool, has);
    QCOMPARE(layoutThermometer(size).hasScale(), has);

    ThermometerGeometry edge;
    edge.scaleLength = 5.0f;
    QVERIFY(!edge.hasScale()); // five pixels are none
}

void tst_ThermometerGeometry::outlineIsOneFigure_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(60, 150), QSize(120, 300), QSize(240, 600), QSize(50, 400), QSize(300, 200)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size;
}

void tst_ThermometerGeometry::outlineIsOneFigure()
{
    QFETCH(QSize, size);

    const ThermometerGeometry geometry = layoutThermometer(size);
    const QPainterPath outline = thermometerOutline(geometry).translated(geometry.origin());
    const QRectF bounds = outline.boundingRect();
    QVERIFY(qAbs(bounds.top() - 3.0) < 0.01);
    QVERIFY(qAbs(bounds.bottom() - (size.height() - 3.0)) < 0.01);
    QVERIFY(qAbs(bounds.width() - 2.0 * (qreal(geometry.bulbRadius) - 3.0)) < 0.01);
    QCOMPARE(outline.toSubpathPolygons().size(), 1);
    const QPointF middle(size.width() / 2.0, size.height() / 2.0);
    QVERIFY(outline.contains(middle));
    QVERIFY(outline.contains(middle + QPointF(qreal(geometry.tubeHalfWidth) - 0.1, 0.0)));
    QVERIFY(!outline.contains(middle + QPointF(qreal(geometry.tubeHalfWidth) + 0.1, 0.0)));
}

void tst_ThermometerGeometry::shares_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    QTest::addColumn<double>("share");
    QTest::newRow("middle") << 0.0 << -50.0 << 50.0 << 0.5;
    QTest::newRow("bottom") << -50.0 << -50.0 << 50.0 << 0.0;
    QTest::newRow("top") << 50.0 << -50.0 << 50.0 << 1.0;
    QTest::newRow("below") << -100.0 << -50.0 << 50.0 << -0.5;
    QTest::newRow("above") << 100.0 << -50.0 << 50.0 << 1.5;
    QTest::newRow("crossed") << 25.0 << 50.0 << -50.0 << 0.25;
    QTest::newRow("equal, below") << 4.0 << 5.0 << 5.0 << 0.0;
    QTest::newRow("equal, at") << 5.0 << 5.0 << 5.0 << 0.5;
    QTest::newRow("equal, above") << 6.0 << 5.0 << 5.0 << 1.0;
    QTest::newRow("widest") << 0.0 << -DBL_MAX << DBL_MAX << 0.5;
    QTest::newRow("widest, top") << DBL_MAX << -DBL_MAX << DBL_MAX << 1.0;
    QTest::newRow("far below") << -DBL_MAX << DBL_MAX / 2 << DBL_MAX << -3.0;
}

void tst_ThermometerGeometry::shares()
{
    QFETCH(double, number);
    QFETCH(double, bottom);
    QFETCH(double, top);
    QFETCH(double, share);
    QCOMPARE(shareOf(number, {bottom, top}), share);
}

void tst_ThermometerGeometry::liquidHeights_data()
{
    QTest::addColumn<double>("share");
    QTest::addColumn<float>("part");
    QTest::newRow("below") << -0.1 << 0.0f;
    QTest::newRow("bottom") << 0.0 << 0.0f;
    QTest::newRow("single precision") << 0.1 << 0.1f;
    QTest::newRow("top") << 1.0 << 1.0f;
    QTest::newRow("above") << 7.0 << 1.0f;
}

void tst_ThermometerGeometry::liquidHeights()
{
    QFETCH(double, share);
    QFETCH(float, part);
    const ThermometerGeometry geometry = layoutThermometer(QSize(120, 300));
    QVERIFY(liquidHeight(geometry, share) == part * geometry.scaleLength); // to the bit
}

void tst_ThermometerGeometry::liquidHeightIsSinglePrecision()
{
    const ThermometerGeometry geometry = layoutThermometer(QSize(120, 300));
    int different = 0;
    for (int i = 1; i < 1000; ++i) {
        const double share = i / 1000.0;
        const float expected = float(share) * geometry.scaleLength;
        QVERIFY(liquidHeight(geometry, share) == expected); // to the bit
        different += expected == float(share * double(geometry.scaleLength)) ? 0 : 1;
    }
    QVERIFY(different > 100);
}

void tst_ThermometerGeometry::areasAreWholePixels_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<float>("height");
    QTest::addColumn<QRect>("liquid");
    // A radius of 26.67: from 26 below the origin 53.3 + f upwards.
    QTest::newRow("empty") << QSize(120, 300) << 0.0f << QRect(-26, 26 - 53, 53, 53);
    QTest::newRow("truncated") << QSize(120, 300) << 100.6f << QRect(-26, 26 - 153, 53, 153);
    QTest::newRow("next pixel") << QSize(120, 300) << 100.7f << QRect(-26, 26 - 154, 53, 154);
    QTest::newRow("small") << QSize(30, 60) << 10.0f << QRect(-6, 6 - 22, 12, 22);
}

void tst_ThermometerGeometry::areasAreWholePixels()
{
    QFETCH(QSize, size);
    QFETCH(float, height);
    QFETCH(QRect, liquid);

    const ThermometerGeometry geometry = layoutThermometer(size);
    QCOMPARE(liquidArea(geometry, height), liquid);
    const QRect empty = emptyArea(geometry, liquid);
    QCOMPARE(empty, QRect(liquid.left(), liquid.top() - size.height(), liquid.width(), size.height()));
}

void tst_ThermometerGeometry::numbers_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("y");
    QTest::addColumn<double>("number");
    QTest::newRow("top") << QSize(60, 60) << 5 << 50.0; // a radius of 10, a scale of 35
    QTest::newRow("bottom") << QSize(60, 60) << 40 << -50.0;
    QTest::newRow("above") << QSize(60, 60) << -30 << 150.0;
    QTest::newRow("below") << QSize(60, 60) << 75 << -150.0;
    QTest::newRow("slim") << QSize(50, 250) << 106 << 0.0 - 50.0 / 18.75 + 3.0; // within half a pixel of zero
}

void tst_ThermometerGeometry::numbers()
{
    QFETCH(QSize, size);
    QFETCH(int, y);
    QFETCH(double, number);
    QVERIFY(qAbs(numberAt(layoutThermometer(size), {-50.0, 50.0}, y) - number) < 0.4);
}

void tst_ThermometerGeometry::numberIsSinglePrecision()
{
    const ThermometerGeometry geometry = layoutThermometer(QSize(120, 300));
    int different = 0;
    for (int y = 14; y < 247; ++y) {
        const double down = (y - double(geometry.bulbRadius) / 2) / double(geometry.scaleLength);
        const double expected = double(float(1 - down)) * 100.0 - 50.0;
        QVERIFY(numberAt(geometry, {-50.0, 50.0}, y) == expected); // to the bit
        const double exact = (1.0 - (y - 120 / 9.0) / (300 - 2.5 * 120 / 4.5)) * 100.0 - 50.0;
        different += expected == exact ? 0 : 1;
    }
    QVERIFY(different > 200);
    QCOMPARE(numberAt(geometry, {-DBL_MAX, DBL_MAX}, 130), 0.0);
}

void tst_ThermometerGeometry::colors_data()
{
    QTest::addColumn<double>("share");
    QTest::addColumn<int>("hue");
    QTest::addColumn<int>("saturation");
    QTest::addColumn<int>("value");
    QTest::newRow("far below") << -9.0 << 200 << 255 << 254;
    QTest::newRow("cold end") << 0.0 << 200 << 255 << 254;
    QTest::newRow("half cold") << 0.25 << 200 << 204 << 198;
    QTest::newRow("just cold") << std::nextafter(0.5, 0.0) << 200 << 0 << 127;
    QTest::newRow("middle") << 0.5 << 20 << 0 << 127;
    QTest::newRow("half warm") << 0.75 << 20 << 127 << 164;
    QTest::newRow("warm end") << 1.0 << 20 << 255 << 255;
    QTest::newRow("far above") << 9.0 << 20 << 255 << 255;
}

void tst_ThermometerGeometry::colors()
{
    QFETCH(double, share);
    QFETCH(int, hue);
    QFETCH(int, saturation);
    QFETCH(int, value);

    const QColor color = liquidColor(share);
    QCOMPARE(color.spec(), QColor::Hsv);
    QCOMPARE(color.alpha(), 255);
    QCOMPARE(color.hsvSaturation(), saturation);
    QCOMPARE(color.value(), value);
    QCOMPARE(color.hsvHue(), hue);
}

/// The ticks as a text: a letter for each, and its label.
static QString written(const QVector<ThermometerTick> &ticks)
{
    QString text;
    for (const ThermometerTick &tick : ticks)
        text += QLatin1Char("smL"[int(tick.length)]) + tick.label;
    return text;
}

void tst_ThermometerGeometry::ticks_data()
{
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    QTest::addColumn<QString>("text");
    // On a scale of 35 pixels, with labels 6 pixels high.
    QTest::newRow("from ten to ten") << 0.0 << 10.0 << "L0ssssmssssL10";
    QTest::newRow("below zero") << -12.0 << -3.0 << "ssL-10ssssmss";
    QTest::newRow("truncated, not rounded") << -5.9 << 4.9 << "mssssL0ssss";
    QTest::newRow("single number") << 7.0 << 7.0 << "s";
    QTest::newRow("single ten") << -10.0 << -10.0 << "L-10";
    QTest::newRow("between numbers") << 3.2 << 3.8 << "s";
    QTest::newRow("crossed") << 10.0 << 0.0 << "";
    QTest::newRow("crossed within a number") << 0.9 << 0.2 << "L0";
    QTest::newRow("every pixel") << 0.0 << 35.0 << "L0ssssmssssL10ssssmssssL20ssssmssssL30ssssm";
    QTest::newRow("ones would share pixels") << 0.0 << 36.0 << "L0mL10mL20mL30m";
    QTest::newRow("labels that just fit") << 0.0 << 58.0 << "L0mL10mL20mL30mL40mL50m";
    QTest::newRow("labels that would touch") << 0.0 << 59.0 << "L0mLmL20mLmL40mLm";
    QTest::newRow("room between labels") << -50.0 << 50.0 << "LmL-40mLmL-20mLmL0mLmL20mLmL40mL";
    QTest::newRow("fives would, too") << 0.0 << 180.0 << "L0LLLLL50LLLLL100LLLLL150LLL";
    QTest::newRow("tens would, too") << 0.0 << 1000.0 << "L0L200L400L600L800L1000";
    QTest::newRow("a million") << -5e5 << 5e5 << "L-400000L-200000L0L200000L400000";
    QTest::newRow("the largest with all digits")
        << 0.0 << 1e15 << "L0L200000000000000L400000000000000L600000000000000L800000000000000L1000000000000000";
    QTest::newRow("very large") << 0.0 << 1e20 << "L0L2e+19L4e+19L6e+19L8e+19L1e+20";
}

void tst_ThermometerGeometry::ticks()
{
    QFETCH(double, bottom);
    QFETCH(double, top);
    QFETCH(QString, text);
    QCOMPARE(written(thermometerTicks(layoutThermometer(QSize(60, 60)), {bottom, top}, 6)), text);
}

void tst_ThermometerGeometry::labelsAsHighAsTheirStep()
{
    // Ten numbers are five pixels.
    const ThermometerGeometry geometry = layoutThermometer(QSize(60, 60));
    QCOMPARE(written(thermometerTicks(geometry, {0.0, 70.0}, 5)), QStringLiteral("L0mL10mL20mL30mL40mL50mL60mL70"));
    QCOMPARE(written(thermometerTicks(geometry, {0.0, 70.0}, 6)), QStringLiteral("L0mLmL20mLmL40mLmL60mL"));
}

void tst_ThermometerGeometry::tickPlaces()
{
    const ThermometerGeometry geometry = layoutThermometer(QSize(60, 60));
    const QVector<ThermometerTick> ticks = thermometerTicks(geometry, {-2.5, 7.5}, 6);
    QCOMPARE(ticks.size(), 10);
    for (int i = 0; i < ticks.size(); ++i)
        QCOMPARE(ticks.at(i).y, -((i - 2 + 2.5) / 10.0) * 35.0);

    const QVector<ThermometerTick> single = thermometerTicks(geometry, {20.0, 20.0}, 6);
    QCOMPARE(single.size(), 1);
    QCOMPARE(single.first().y, -17.5); // in the middle, where the liquid ends as well
}

void tst_ThermometerGeometry::ticksNeverOutnumberPixels_data()
{
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    for (double range = 1.0; range < 1e308; range *= 73.0) {
        QTest::addRow("from 0 to %g", range) << 0.0 << range;
        QTest::addRow("from %g to %g", -range, range) << -range << range;
        QTest::addRow("%g from 1e16", range) << 1e16 << 1e16 + range;
    }
    QTest::newRow("widest") << -DBL_MAX << DBL_MAX;
    QTest::newRow("smallest") << 0.0 << DBL_TRUE_MIN;
    QTest::newRow("smallest at the end") << std::nextafter(DBL_MAX, 0.0) << DBL_MAX;
}

void tst_ThermometerGeometry::ticksNeverOutnumberPixels()
{
    QFETCH(double, bottom);
    QFETCH(double, top);

    for (const QSize size : {QSize(30, 60), QSize(120, 300), QSize(2000, 4000)}) {
        const ThermometerGeometry geometry = layoutThermometer(size);
        for (const int labelHeight : {0, 1, 9}) {
            const QVector<ThermometerTick> ticks = thermometerTicks(geometry, {bottom, top}, labelHeight);
            QVERIFY(ticks.size() <= int(geometry.scaleLength) + 3);
            QVERIFY(!ticks.isEmpty());
            for (const ThermometerTick &tick : ticks)
                QVERIFY(std::isfinite(tick.y));
        }
    }
}

KEL_TEST_MAIN(tst_ThermometerGeometry)
#include "tst_thermometergeometry.moc"
