#include "testmain.h"

#include <QDateTime>
#include <flowlayout.h>
#include <graphicaxis.h>
#include <graphiccolors.h>
#include <graphiccursor.h>

#include <array>
#include <cmath>

/// What a plot computes beside its curves: ranges, labels, colours and places.
class tst_GraphicAxis : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawable_data();
    void drawable();
    void zoomed_data();
    void zoomed();
    void moved();
    void round_data();
    void round();
    void decimals_data();
    void decimals();
    void numbers_data();
    void numbers();
    void times_data();
    void times();
    void readAndWritten_data();
    void readAndWritten();
    void notWritten_data();
    void notWritten();
    void coloursDiffer_data();
    void coloursDiffer();
    void stylesTellRepeatedColoursApart();
    void fadedIsBetween();
    void flowPlaces_data();
    void flowPlaces();
    void boxStaysInside_data();
    void boxStaysInside();
};

static const double Infinity = std::numeric_limits<double>::infinity();

void tst_GraphicAxis::drawable_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");

    QTest::newRow("in order") << 1.0 << 2.0 << 1.0 << 2.0;
    QTest::newRow("exchanged") << 2.0 << 1.0 << 1.0 << 2.0;
    QTest::newRow("narrow") << 1.0 << 1.0 + 1e-6 << 1.0 << 1.0 + 1e-6;
    QTest::newRow("too large") << -1e308 << 1e308 << -1e300 << 1e300;
}

void tst_GraphicAxis::drawable()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(double, from);
    QFETCH(double, to);
    QCOMPARE(drawableRange(a, b).from, from);
    QCOMPARE(drawableRange(a, b).to, to);
    for (const double value : {0.0, 1.0, -5.0, 1e200, 1e-300, 1.7e9}) {
        const GraphicRange widened = drawableRange(value, value);
        QVERIFY(widened.from < value || value < widened.to);
        QVERIFY(widened.width() > 0.0);
        QVERIFY(std::isfinite(1.0 / widened.width()));
    }
}

void tst_GraphicAxis::zoomed_data()
{
    QTest::addColumn<double>("fixed");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");

    QTest::newRow("into the middle") << 5.0 << 0.5 << 2.5 << 7.5;
    QTest::newRow("into the left end") << 0.0 << 0.5 << 0.0 << 5.0;
    QTest::newRow("into the right end") << 10.0 << 0.1 << 9.0 << 10.0;
    QTest::newRow("out") << 5.0 << 2.0 << -5.0 << 15.0;
    QTest::newRow("about a point outside") << 20.0 << 0.5 << 10.0 << 15.0;
}

void tst_GraphicAxis::zoomed()
{
    QFETCH(double, fixed);
    QFETCH(double, factor);
    QFETCH(double, from);
    QFETCH(double, to);
    const GraphicRange range = zoomedRange({0.0, 10.0}, fixed, factor);
    QCOMPARE(range.from, from);
    QCOMPARE(range.to, to);

    GraphicRange deep{0.0, 10.0};
    GraphicRange far{0.0, 10.0};
    for (int i = 0; i < 5000; ++i) {
        deep = zoomedRange(deep, 3.0, 0.8);
        far = zoomedRange(far, 3.0, 1.25);
    }
    QVERIFY(deep.from < deep.to && deep.from > 2.9 && deep.to < 3.1);
    QVERIFY(std::isfinite(far.from) && std::isfinite(far.to) && std::isfinite(far.width()));
}

void tst_GraphicAxis::moved()
{
    QCOMPARE(movedRange({1.0, 2.0}, 5.0).from, 6.0);
    QCOMPARE(movedRange({1.0, 2.0}, -5.0).to, -3.0);
    QVERIFY(movedRange({1.0, 2.0}, 1e305) == (GraphicRange{1.0, 2.0}));
}

void tst_GraphicAxis::round_data()
{
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("most");
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");

    QTest::newRow("a little space") << 0.0 << 10.0 << -2.0 << 12.0;
    QTest::newRow("to round numbers") << 10.3 << 84.9 << 0.0 << 90.0;
    QTest::newRow("small numbers") << 0.0012 << 0.0078 << 0.001 << 0.008;
    QTest::newRow("all 0") << 0.0 << 0.0 << -1.0 << 1.0;
    QTest::newRow("all the same") << 50.0 << 50.0 << 45.0 << 55.0;
    QTest::newRow("all the same below 0") << -50.0 << -50.0 << -55.0 << -45.0;
}

void tst_GraphicAxis::round()
{
    QFETCH(double, least);
    QFETCH(double, most);
    QFETCH(double, from);
    QFETCH(double, to);
    const GraphicRange range = roundRange(least, most);
    QVERIFY2(std::abs(range.from - from) < 1e-9 && std::abs(range.to - to) < 1e-9,
             qPrintable(QStringLiteral("%1 … %2").arg(range.from).arg(range.to)));
    const GraphicRange huge = roundRange(-1e308, 1e308);
    QVERIFY(std::isfinite(huge.from) && std::isfinite(huge.to));
}

void tst_GraphicAxis::decimals_data()
{
    QTest::addColumn<double>("step");
    QTest::addColumn<int>("precisionStep");
    QTest::addColumn<int>("decimals");

    QTest::newRow("whole") << 5.0 << 1 << 0;
    QTest::newRow("one") << 0.5 << 1 << 1;
    QTest::newRow("two") << 0.25 << 1 << 2;
    QTest::newRow("as a sum of steps") << 0.1 + 0.2 << 1 << 1;
    QTest::newRow("up to a multiple") << 0.25 << 3 << 3;
    QTest::newRow("a multiple already") << 0.25 << 2 << 2;
    QTest::newRow("none is a multiple") << 5.0 << 4 << 0;
    QTest::newRow("without a step") << 0.25 << 0 << 2;
    QTest::newRow("very small") << 1e-30 << 1 << 15;
}

void tst_GraphicAxis::decimals()
{
    QFETCH(double, step);
    QFETCH(int, precisionStep);
    QFETCH(int, decimals);
    QCOMPARE(labelDecimals(step, precisionStep), decimals);
}

void tst_GraphicAxis::numbers_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("step");
    QTest::addColumn<double>("largest");
    QTest::addColumn<int>("precisionStep");
    QTest::addColumn<QString>("text");

    QTest::newRow("as short as it can be") << 1.0 << 0.5 << 2.0 << 0 << "1";
    QTest::newRow("with what it needs") << 1.5 << 0.5 << 2.0 << 0 << "1.5";
    QTest::newRow("all the same decimals") << 1.0 << 0.5 << 2.0 << 1 << "1.0";
    QTest::newRow("decimals by threes") << 1.5 << 0.5 << 2.0 << 3 << "1.500";
    QTest::newRow("zeros before the point stay") << 100.0 << 50.0 << 100.0 << 0 << "100";
    QTest::newRow("almost 0 is 0") << 1e-17 << 0.5 << 2.0 << 0 << "0";
    QTest::newRow("no minus at 0") << -1e-17 << 0.5 << 2.0 << 1 << "0.0";
    QTest::newRow("digits deep in a zoom") << 700.0001 << 0.0001 << 700.0 << 0 << "700.0001";
    QTest::newRow("large") << 2e12 << 1e12 << 4e12 << 0 << "2e+12";
    QTest::newRow("small") << 2e-9 << 1e-9 << 4e-9 << 0 << "2e-09";
}

void tst_GraphicAxis::numbers()
{
    QFETCH(double, value);
    QFETCH(double, step);
    QFETCH(double, largest);
    QFETCH(int, precisionStep);
    QFETCH(QString, text);
    QLocale::setDefault(QLocale::c());
    QCOMPARE(numberLabel(value, step, largest, precisionStep), text);
}

void tst_GraphicAxis::times_data()
{
    QTest::addColumn<double>("step");
    QTest::addColumn<QString>("text");

    QTest::newRow("below a second") << 0.5 << "07:08:09.250";
    QTest::newRow("seconds") << 1.0 << "07:08:09";
    QTest::newRow("below a minute") << 30.0 << "07:08:09";
    QTest::newRow("minutes") << 60.0 << "07:08";
    QTest::newRow("hours") << 7200.0 << "07:08";
    QTest::newRow("days") << 86400.0 << "2026-03-04";
}

void tst_GraphicAxis::times()
{
    QFETCH(double, step);
    QFETCH(QString, text);
    const QDateTime time(QDate(2026, 3, 4), QTime(7, 8, 9, 250));
    const double seconds = static_cast<double>(time.toMSecsSinceEpoch()) / 1000.0;
    QCOMPARE(timeLabel(seconds, step), text);
    for (const double never : {1e300, -1e300, Infinity}) // no calendar has it; it must not fail
        timeLabel(never, step);
}

void tst_GraphicAxis::readAndWritten_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<bool>("isTime");
    QTest::addColumn<QString>("text");

    const double time = static_cast<double>(QDateTime(QDate(2026, 3, 4), QTime(7, 8, 9)).toSecsSinceEpoch());
    QTest::newRow("digits of the range") << 12.3456 << 0.0 << 90.0 << false << "12.35";
    QTest::newRow("a narrow range has more") << 12.3456 << 12.0 << 12.5 << false << "12.3456";
    QTest::newRow("no needless zeros") << 10.0 << 0.0 << 90.0 << false << "10";
    QTest::newRow("time") << time << time - 3600 << time + 3600 << true << "2026-03-04 07:08:09";
    QTest::newRow("time, closely") << time + 0.25 << time << time + 1 << true << "2026-03-04 07:08:09.250";
}

void tst_GraphicAxis::readAndWritten()
{
    QFETCH(double, value);
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(bool, isTime);
    QFETCH(QString, text);
    QLocale::setDefault(QLocale::c());
    QCOMPARE(readValue(value, {from, to}, isTime), text);
    QVERIFY(std::abs(writtenValue(QLatin1Char(' ') + text + QLatin1Char(' '), isTime) - value) <= (to - from) / 1000.0);
}

void tst_GraphicAxis::notWritten_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isTime");

    for (const char *text : {"", "abc", "1 2", "nan", "inf", "1e999"})
        QTest::addRow("number \"%s\"", text) << text << false;
    for (const char *text : {"", "yesterday", "2026-13-01 00:00:00"})
        QTest::addRow("time \"%s\"", text) << text << true;
}

void tst_GraphicAxis::notWritten()
{
    QFETCH(QString, text);
    QFETCH(bool, isTime);
    QVERIFY(std::isnan(writtenValue(text, isTime)));
}

namespace
{

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

/// What is left of light for eyes of each kind.
const std::array<std::pair<const char *, Matrix>, 4> Sights = {{
    {"full", {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
    {"no red", {{{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}}},
    {"no green", {{{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}}},
    {"no blue", {{{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}}},
}};

double linear(double share)
{
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

Triple lightOf(const QColor &color)
{
    return {linear(color.redF()), linear(color.greenF()), linear(color.blueF())};
}

double brightness(const QColor &color)
{
    const Triple light = lightOf(color);
    return 0.2126 * light[0] + 0.7152 * light[1] + 0.0722 * light[2];
}

double contrast(const QColor &a, const QColor &b)
{
    return (std::max(brightness(a), brightness(b)) + 0.05) / (std::min(brightness(a), brightness(b)) + 0.05);
}

/// A colour where distances are as people see them.
Triple seen(const QColor &color, const Matrix &sight)
{
    const Triple light = lightOf(color);
    Triple left{};
    for (std::size_t i = 0; i < 3; ++i)
        left[i] = std::clamp(sight[i][0] * light[0] + sight[i][1] * light[1] + sight[i][2] * light[2], 0.0, 1.0);
    const auto root = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116.0; };
    const double x = root((0.4124 * left[0] + 0.3576 * left[1] + 0.1805 * left[2]) / 0.9505);
    const double y = root(0.2126 * left[0] + 0.7152 * left[1] + 0.0722 * left[2]);
    const double z = root((0.0193 * left[0] + 0.1192 * left[1] + 0.9505 * left[2]) / 1.089);
    return {116.0 * y - 16.0, 500.0 * (x - y), 200.0 * (y - z)};
}

} // namespace

void tst_GraphicAxis::coloursDiffer_data()
{
    QTest::addColumn<QColor>("base");

    QTest::newRow("white") << QColor(Qt::white);
    QTest::newRow("light grey") << QColor(239, 240, 241);
    QTest::newRow("dark grey") << QColor(53, 53, 53);
    QTest::newRow("almost black") << QColor(35, 38, 41);
    QTest::newRow("black") << QColor(Qt::black);
}

void tst_GraphicAxis::coloursDiffer()
{
    QFETCH(QColor, base);
    QPalette palette;
    palette.setColor(QPalette::Base, base);
    for (int i = 0; i < GraphicColorsCount; ++i) {
        const QColor color = curveColor(i, palette);
        QVERIFY2(contrast(color, base) >= 3.0, qPrintable(color.name()));
        QCOMPARE(curveColor(i + GraphicColorsCount, palette), color);
        for (int j = 0; j < i; ++j) {
            for (const auto &sight : Sights) {
                const Triple a = seen(color, sight.second);
                const Triple b = seen(curveColor(j, palette), sight.second);
                const double distance = std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
                QVERIFY2(distance >= 20.0, qPrintable(QStringLiteral("%1 %2 %3").arg(i).arg(j).arg(sight.first)));
            }
        }
    }
}

void tst_GraphicAxis::stylesTellRepeatedColoursApart()
{
    QCOMPARE(curveStyle(0), Qt::SolidLine);
    QCOMPARE(curveStyle(GraphicColorsCount - 1), Qt::SolidLine);
    QVERIFY(curveStyle(GraphicColorsCount) != Qt::SolidLine);
    QVERIFY(curveStyle(2 * GraphicColorsCount) != curveStyle(GraphicColorsCount));
}

void tst_GraphicAxis::fadedIsBetween()
{
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::white);
    const QColor faded = fadedColor(Qt::black, palette);
    QVERIFY(faded.red() > 80 && faded.red() < 200);
    QCOMPARE(fadedColor(Qt::white, palette), QColor(Qt::white));
}

void tst_GraphicAxis::flowPlaces_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QVector<QRect>>("places");

    using Rects = QVector<QRect>;
    QTest::newRow("all in a row") << 100 << Rects({{0, 0, 30, 10}, {35, 0, 30, 20}, {70, 0, 30, 10}});
    QTest::newRow("one too many") << 99 << Rects({{0, 0, 30, 10}, {35, 0, 30, 20}, {0, 25, 30, 10}});
    QTest::newRow("one each") << 40 << Rects({{0, 0, 30, 10}, {0, 15, 30, 20}, {0, 40, 30, 10}});
    QTest::newRow("narrower than one") << 20 << Rects({{0, 0, 20, 10}, {0, 15, 20, 20}, {0, 40, 20, 10}});
}

void tst_GraphicAxis::flowPlaces()
{
    QFETCH(int, width);
    QFETCH(QVector<QRect>, places);
    QCOMPARE(flow({QSize(30, 10), QSize(30, 20), QSize(30, 10)}, width, 5), places);
}

void tst_GraphicAxis::boxStaysInside_data()
{
    QTest::addColumn<QPointF>("pointer");
    QTest::addColumn<QPointF>("corner");

    QTest::newRow("right below the pointer") << QPointF(10, 10) << QPointF(15, 15);
    QTest::newRow("left at the right end") << QPointF(95, 10) << QPointF(60, 15);
    QTest::newRow("above at the lower end") << QPointF(10, 95) << QPointF(15, 70);
    QTest::newRow("in the far corner") << QPointF(95, 95) << QPointF(60, 70);
}

void tst_GraphicAxis::boxStaysInside()
{
    QFETCH(QPointF, pointer);
    QFETCH(QPointF, corner);
    const QRectF area(0, 0, 100, 100);
    const QRectF box = boxBeside(pointer, QSizeF(30, 20), area, 5.0);
    QCOMPARE(box.topLeft(), corner);
    QVERIFY(area.contains(box));
    QCOMPARE(boxBeside(pointer, QSizeF(300, 200), area, 5.0).topLeft(), QPointF(0, 0));
}

KEL_TEST_MAIN(tst_GraphicAxis)
#include "tst_graphicaxis.moc"
