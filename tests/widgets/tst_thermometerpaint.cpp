#include "testmain.h"
#include "thermometerbench.h"

#include <QElapsedTimer>
#include <cfloat>

/// What a thermometer paints.
class tst_ThermometerPaint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameAsStepByStep_data();
    void sameAsStepByStep();
    void liquidEndsAtTheLevel_data();
    void liquidEndsAtTheLevel();
    void figureFillsTheHeight_data();
    void figureFillsTheHeight();
    void tooShortShowsTheOutlineOnly();
    void equalScaleBounds();
    void wideScalesPaintAtOnce_data();
    void wideScalesPaintAtOnce();
    void denseScalesThinOut();
    void keptPicturesFollow_data();
    void keptPicturesFollow();
    void labelsFollowTheApplicationFont();
    void changesRepaint_data();
    void changesRepaint();
};

void tst_ThermometerPaint::sameAsStepByStep_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    QTest::addColumn<double>("level");

    const QVector<QPair<QSize, double>> sizes = {
        {{30, 60}, 20.0},  {{60, 150}, 50.0},  {{120, 300}, 50.0}, {{157, 391}, 50.0}, {{300, 700}, 50.0},
        {{80, 500}, 50.0}, {{500, 120}, 30.0}, {{40, 40}, 10.0},   {{12, 30}, 10.0},   {{15, 20}, 5.0},
        {{100, 7}, 50.0},  {{4, 6}, 50.0},     {{3, 7}, 2.0},      {{1, 1}, 50.0},     {{1, 90}, 30.0}};
    for (const auto &size : sizes) {
        for (const double share : {-1.2, -1.0, -0.99, -0.24, 0.0, 0.62, 0.99, 1.0, 1.4}) {
            QTest::addRow("%d x %d at %g", size.first.width(), size.first.height(), share * size.second)
                << size.first << -size.second << size.second << share * size.second;
        }
    }
    QTest::newRow("scale of broken numbers") << QSize(120, 300) << -20.7 << 19.3 << 3.0;
    QTest::newRow("scale above zero") << QSize(120, 300) << 3.5 << 42.25 << 20.0;
    QTest::newRow("scale below zero") << QSize(120, 300) << -100.0 << -60.0 << -70.0;
    QTest::newRow("crossed scale") << QSize(120, 300) << 20.0 << -20.0 << 20.0;
    for (const double level : {0.0, 50.0, 100.0})
        QTest::addRow("labels wider than the bulb at %g", level) << QSize(120, 300) << 1e7 << 1e7 + 100 << 1e7 + level;
    QTest::newRow("wide scale") << QSize(120, 300) << -100.0 << 100.0 << 20.0;
}

void tst_ThermometerPaint::sameAsStepByStep()
{
    QFETCH(QSize, size);
    QFETCH(double, bottom);
    QFETCH(double, top);
    QFETCH(double, level);

    StepByStep reference;
    reference.size = size;
    reference.gradMinimum = bottom;
    reference.gradMaximum = top;
    reference.level = double(float(level));
    KelThermometer thermometer;
    reference.applyTo(thermometer);
    settle(thermometer, level + 7.0);
    rendered(thermometer); // so that the frame to look at comes from the kept pictures
    settle(thermometer, level);

    for (const QImage::Format format : {QImage::Format_ARGB32_Premultiplied, QImage::Format_RGB32}) {
        for (const QColor &background : {QColor(Qt::white), QColor(30, 60, 90)})
            QCOMPARE(reference.difference(thermometer, background, format), QString());
    }
}

void tst_ThermometerPaint::liquidEndsAtTheLevel_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("level");
    for (const QSize size : {QSize(60, 150), QSize(120, 300), QSize(240, 600)}) {
        for (const double level : {-40.0, -17.0, 0.0, 26.0, 43.0})
            QTest::addRow("%d x %d at %g", size.width(), size.height(), level) << size << level;
    }
}

void tst_ThermometerPaint::liquidEndsAtTheLevel()
{
    QFETCH(QSize, size);
    QFETCH(double, level);

    KelThermometer thermometer;
    thermometer.resize(size);
    settle(thermometer, level);
    const QImage image = rendered(thermometer, Qt::green);
    const double radius = size.width() / 4.5; // at this shape
    const double length = size.height() - 2.5 * radius;
    const double y = radius / 2 + (50 - level) / 100 * length;
    const int x = int(size.width() / 2.0 + 0.8 * radius / 2); // where neither lines nor digits are
    StepByStep reference;
    reference.level = level;
    QCOMPARE(QColor(image.pixel(x, int(y) + 2)).rgb(), reference.color().rgb());
    QVERIFY(QColor(image.pixel(x, int(y) - 2)).green() > 240); // green shines through the glass
    const QColor left = image.pixel(int(size.width() / 2.0 - 0.85 * radius / 2), int(y) - 2);
    QVERIFY(left.red() > QColor(image.pixel(x, int(y) - 2)).red()); // which is whiter on its left
}

void tst_ThermometerPaint::figureFillsTheHeight_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(30, 60), QSize(120, 300), QSize(400, 900), QSize(300, 100), QSize(50, 400)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size;
}

void tst_ThermometerPaint::figureFillsTheHeight()
{
    QFETCH(QSize, size);

    KelThermometer thermometer;
    thermometer.resize(size);
    const QImage image = rendered(thermometer);
    const int x = size.width() / 2;
    const auto isInk = [&image, x](int y) { return qGray(image.pixel(x, y)) < 200; };
    const int half = qMax(1, int(std::ceil(qMax(size.width(), size.height()) / 500.0)));
    QVERIFY(isInk(3) || isInk(2));
    QVERIFY(isInk(size.height() - 3) || isInk(size.height() - 4));
    for (int y = 0; y < 2 - half / 2; ++y)
        QVERIFY(!isInk(y) && !isInk(size.height() - 1 - y));
}

void tst_ThermometerPaint::tooShortShowsTheOutlineOnly()
{
    KelThermometer thermometer;
    thermometer.resize(100, 7); // its scale would be 4.5 pixels long
    for (const double level : {-50.0, 50.0}) {
        settle(thermometer, level);
        const QImage image = rendered(thermometer);
        bool isInked = false;
        for (int y = 0; y < 7; ++y) {
            for (int x = 0; x < 100; ++x) {
                const QColor color = image.pixel(x, y);
                QCOMPARE(color.saturation(), 0); // no liquid
                isInked = isInked || color.value() < 128;
            }
        }
        QVERIFY(isInked);
    }
}

void tst_ThermometerPaint::equalScaleBounds()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    thermometer.setGradMinimum(20.0);
    thermometer.setGradMaximum(20.0);
    QCOMPARE(thermometer.value(), 20.0);

    const QRgb background = QColor(Qt::green).rgb();
    const double middle = 13.3 + 233.3 / 2;
    const int x = 70;
    settle(thermometer, 20.0); // the only number of the scale stands in its middle
    QImage image = rendered(thermometer, background);
    QVERIFY(QColor(image.pixel(x, int(middle) + 3)).green() < 200);
    QVERIFY(QColor(image.pixel(x, int(middle) - 3)).green() > 240);
    settle(thermometer, 19.0);
    image = rendered(thermometer, background);
    QVERIFY(QColor(image.pixel(x, 240)).green() > 240);
    settle(thermometer, 21.0);
    image = rendered(thermometer, background);
    QVERIFY(QColor(image.pixel(x, 20)).green() < 200);
}

void tst_ThermometerPaint::wideScalesPaintAtOnce_data()
{
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    QTest::newRow("a thousand million") << 0.0 << 1e9;
    QTest::newRow("beyond int") << -1e12 << 1e12;
    QTest::newRow("1e300") << -1e300 << 1e300;
    QTest::newRow("all there is") << -DBL_MAX << DBL_MAX;
    QTest::newRow("no ones up there") << 1e17 << 1e17 + 100;
    QTest::newRow("hardly a range") << 0.1 << std::nextafter(0.1, 1.0);
    QTest::newRow("hardly a range far up") << DBL_MAX / 2 << std::nextafter(DBL_MAX / 2, DBL_MAX);
    QTest::newRow("smallest range") << 0.0 << DBL_TRUE_MIN;
    QTest::newRow("crossed, very wide") << 1e300 << -1e300;
}

void tst_ThermometerPaint::wideScalesPaintAtOnce()
{
    QFETCH(double, bottom);
    QFETCH(double, top);

    KelThermometer thermometer;
    thermometer.setGradMaximum(top);
    thermometer.setGradMinimum(bottom);
    for (const QSize size : {QSize(30, 60), QSize(120, 300), QSize(500, 2000)}) {
        thermometer.resize(size);
        QElapsedTimer timer;
        timer.start();
        const QImage image = rendered(thermometer);
        QVERIFY(timer.elapsed() < 5000); // line by line it would take minutes
        QVERIFY(qGray(image.pixel(size.width() / 2, 3)) < 200 || qGray(image.pixel(size.width() / 2, 2)) < 200);
    }
    thermometer.setValue(top);
    settle(thermometer, top);
    rendered(thermometer);
}

void tst_ThermometerPaint::denseScalesThinOut()
{
    // How many lines reach this share of the way from the axis to the left edge.
    const auto lines = [](double top, double share) {
        KelThermometer thermometer;
        thermometer.resize(300, 1000);
        thermometer.setGradMinimum(0.0);
        thermometer.setGradMaximum(top);
        settle(thermometer, 0.0);
        const QImage image = rendered(thermometer);
        const double radius = 300 / (7 - 1000 / 300.0);
        const int x = int(150 - share * radius / 2);
        int count = 0;
        bool before = true;
        for (int y = int(radius / 2) + 5; y < 1000 - 2.2 * radius; ++y) {
            const bool isInk = qGray(image.pixel(x, y)) < 225;
            count += isInk && !before ? 1 : 0;
            before = isInk;
        }
        return count;
    };
    QVERIFY(qAbs(lines(200.0, 0.9) - 194) <= 3);  // 3 percent of the scale are not looked at
    QVERIFY(qAbs(lines(1000.0, 0.9) - 194) <= 3); // the ones are gone, of the fives there are 200
    QVERIFY(qAbs(lines(1000.0, 0.35) - 97) <= 3); // and of the tens 100
    QVERIFY(qAbs(lines(2000.0, 0.35) - 194) <= 6);
    const int far = lines(1e9, 0.35);
    QVERIFY(far >= 5 && far <= 100);
}

void tst_ThermometerPaint::keptPicturesFollow_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    QTest::newRow("size") << QSize(90, 260) << -50.0 << 50.0;
    QTest::newRow("width only") << QSize(130, 300) << -50.0 << 50.0;
    QTest::newRow("height only") << QSize(120, 310) << -50.0 << 50.0;
    QTest::newRow("bottom") << QSize(120, 300) << -20.0 << 50.0;
    QTest::newRow("top") << QSize(120, 300) << -50.0 << 100.0;
    QTest::newRow("from a scale to none") << QSize(100, 7) << -50.0 << 50.0;
}

void tst_ThermometerPaint::keptPicturesFollow()
{
    QFETCH(QSize, size);
    QFETCH(double, bottom);
    QFETCH(double, top);

    KelThermometer changed;
    changed.resize(120, 300);
    const QImage before = rendered(changed);
    KelThermometer fresh;
    for (KelThermometer *thermometer : {&changed, &fresh}) {
        thermometer->resize(size);
        thermometer->setGradMinimum(bottom);
        thermometer->setGradMaximum(top);
    }
    QVERIFY(rendered(changed) != before);
    QCOMPARE(rendered(changed), rendered(fresh));
    changed.resize(120, 300); // and back again
    changed.setGradMinimum(-50.0);
    changed.setGradMaximum(50.0);
    QCOMPARE(rendered(changed), before);
}

void tst_ThermometerPaint::labelsFollowTheApplicationFont()
{
    const QFont usual = QApplication::font();
    KelThermometer thermometer;
    thermometer.resize(300, 700);
    const QImage before = rendered(thermometer);

    QFont own = usual;
    own.setItalic(true);
    thermometer.setFont(own); // is for others
    QCOMPARE(rendered(thermometer), before);

    QFont bold = usual;
    bold.setBold(true);
    QApplication::setFont(bold);
    const QImage after = rendered(thermometer);
    KelThermometer fresh;
    fresh.resize(300, 700);
    const QImage expected = rendered(fresh);
    QApplication::setFont(usual);
    QVERIFY(after != before);
    QCOMPARE(after, expected);
    QCOMPARE(rendered(thermometer), before);
}

void tst_ThermometerPaint::changesRepaint_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"value", "minimum", "maximum", "gradMinimum", "gradMaximum", "h__anim"})
        QTest::newRow(name) << QByteArray(name);
}

/// Counts the paint events of a widget.
class PaintCount : public QObject
{
public:
    int count = 0;

    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

void tst_ThermometerPaint::changesRepaint()
{
    QFETCH(QByteArray, name);

    KelThermometer thermometer;
    PaintCount paints;
    thermometer.installEventFilter(&paints);
    thermometer.show();
    QVERIFY(QTest::qWaitForWindowExposed(&thermometer));
    QTRY_VERIFY(paints.count > 0);
    QCoreApplication::processEvents();
    const int before = paints.count;
    QVERIFY(thermometer.setProperty(name.constData(), thermometer.property(name.constData()).toDouble() + 5.0));
    QTRY_VERIFY(paints.count > before);
}

KEL_TEST_MAIN(tst_ThermometerPaint)
#include "tst_thermometerpaint.moc"
