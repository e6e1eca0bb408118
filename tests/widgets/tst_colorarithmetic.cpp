#include "testmain.h"

#include <colorarithmetic.h>

#include <limits>

class tst_ColorArithmetic : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sum_data();
    void sum();
    void product_data();
    void product();
    void quotient_data();
    void quotient();
    void resultIsRgb();
};

void tst_ColorArithmetic::sum_data()
{
    QTest::addColumn<QColor>("a");
    QTest::addColumn<QColor>("b");
    QTest::addColumn<QColor>("result");

    QTest::newRow("each component") << QColor(1, 2, 3, 4) << QColor(10, 20, 30, 40) << QColor(11, 22, 33, 44);
    QTest::newRow("red clamps") << QColor(200, 0, 0) << QColor(200, 0, 0) << QColor(255, 0, 0);
    QTest::newRow("green clamps") << QColor(0, 255, 0, 0) << QColor(0, 1, 0, 0) << QColor(0, 255, 0, 0);
    QTest::newRow("blue clamps") << QColor(0, 0, 255, 0) << QColor(0, 0, 255, 0) << QColor(0, 0, 255, 0);
    QTest::newRow("alpha clamps") << QColor(0, 0, 0, 200) << QColor(0, 0, 0, 100) << QColor(0, 0, 0, 255);
}

void tst_ColorArithmetic::sum()
{
    QFETCH(QColor, a);
    QFETCH(QColor, b);
    QFETCH(QColor, result);

    QCOMPARE(a + b, result);
}

void tst_ColorArithmetic::product_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<double>("factor");
    QTest::addColumn<QColor>("result");

    QTest::newRow("alpha is scaled too") << QColor(100, 50, 10, 200) << 0.5 << QColor(50, 25, 5, 100);
    QTest::newRow("truncates") << QColor(3, 5, 7, 9) << 0.5 << QColor(1, 2, 3, 4);
    QTest::newRow("above range is invalid") << QColor(200, 0, 0) << 1.5 << QColor();
    QTest::newRow("red alone invalidates") << QColor(200, 0, 0, 0) << 1.5 << QColor();
    QTest::newRow("green alone invalidates") << QColor(0, 200, 0, 0) << 1.5 << QColor();
    QTest::newRow("blue alone invalidates") << QColor(0, 0, 200, 0) << 1.5 << QColor();
    QTest::newRow("alpha alone invalidates") << QColor(0, 0, 0, 255) << 2.0 << QColor();
    QTest::newRow("truncated before the range check") << QColor(255, 0, 0, 0) << 1.003 << QColor(255, 0, 0, 0);
    QTest::newRow("256 is out of range") << QColor(128, 0, 0, 0) << 2.0 << QColor();
    QTest::newRow("negative is invalid") << QColor(1, 2, 3) << -1.0 << QColor();
    QTest::newRow("negative truncated to 0 is valid") << QColor(1, 1, 1, 1) << -0.5 << QColor(0, 0, 0, 0);
    QTest::newRow("nothing times -1 is nothing") << QColor(0, 0, 0, 0) << -1.0 << QColor(0, 0, 0, 0);
    QTest::newRow("infinite factor is invalid")
        << QColor(0, 0, 0, 0) << std::numeric_limits<double>::infinity() << QColor();
    QTest::newRow("not a number is invalid")
        << QColor(0, 0, 0, 0) << std::numeric_limits<double>::quiet_NaN() << QColor();
}

void tst_ColorArithmetic::product()
{
    QFETCH(QColor, color);
    QFETCH(double, factor);
    QFETCH(QColor, result);

    QCOMPARE(color * factor, result);
}

void tst_ColorArithmetic::quotient_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<double>("divisor");
    QTest::addColumn<QColor>("result");

    QTest::newRow("alpha is scaled too") << QColor(100, 50, 10, 200) << 2.0 << QColor(50, 25, 5, 100);
    QTest::newRow("truncates") << QColor(3, 5, 7, 9) << 2.0 << QColor(1, 2, 3, 4);
    QTest::newRow("above range is invalid") << QColor(200, 0, 0) << 0.5 << QColor();
    QTest::newRow("truncated before the range check") << QColor(255, 0, 0, 0) << 0.998 << QColor(255, 0, 0, 0);
    QTest::newRow("alpha alone invalidates") << QColor(0, 0, 0, 255) << 0.5 << QColor();
    QTest::newRow("negative truncated to 0 is valid") << QColor(1, 1, 1, 1) << -2.0 << QColor(0, 0, 0, 0);
    QTest::newRow("by infinity nothing is left")
        << QColor(9, 8, 7, 6) << std::numeric_limits<double>::infinity() << QColor(0, 0, 0, 0);
    QTest::newRow("negative is invalid") << QColor(1, 2, 3) << -1.0 << QColor();
    QTest::newRow("by zero is invalid") << QColor(0, 0, 0, 0) << 0.0 << QColor();
    QTest::newRow("by not a number is invalid")
        << QColor(1, 1, 1, 1) << std::numeric_limits<double>::quiet_NaN() << QColor();
}

void tst_ColorArithmetic::quotient()
{
    QFETCH(QColor, color);
    QFETCH(double, divisor);
    QFETCH(QColor, result);

    QCOMPARE(color / divisor, result);
}

void tst_ColorArithmetic::resultIsRgb()
{
    const QColor hsv = QColor::fromHsv(120, 200, 100);
    QCOMPARE((hsv + hsv).spec(), QColor::Rgb);
    QCOMPARE((hsv * 0.5).spec(), QColor::Rgb);
    QCOMPARE((hsv / 2.0).spec(), QColor::Rgb);
}

KEL_TEST_MAIN(tst_ColorArithmetic)
#include "tst_colorarithmetic.moc"
