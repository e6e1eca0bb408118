#include "testmain.h"

#include <kelswitchface.h>

/// The shape of a switch in numbers.
class tst_KelSwitchFace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void halfLength_data();
    void halfLength();
    void track();
    void sideHandleRests_data();
    void sideHandleRests();
    void sideHandleOutline_data();
    void sideHandleOutline();
    void verticalIsHorizontalTurned();
    void rockerHalves();
};

// A track of half length 33 has a half width of 11 and a handle of half width 10.
static constexpr qreal Length = 33.0;

static void compare(const QPolygonF &actual, const QPolygonF &expected)
{
    QCOMPARE(actual.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QVERIFY2(QLineF(actual.at(i), expected.at(i)).length() < 1e-9,
                 qPrintable(QStringLiteral("point %1: %2, %3").arg(i).arg(actual.at(i).x()).arg(actual.at(i).y())));
    }
}

void tst_KelSwitchFace::halfLength_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<double>("result");
    QTest::newRow("as long as the width allows") << QSize(300, 50) << int(Qt::Horizontal) << 75.0;
    QTest::newRow("exactly three to one") << QSize(150, 50) << int(Qt::Horizontal) << 75.0;
    QTest::newRow("no longer than the widget") << QSize(91, 80) << int(Qt::Horizontal) << 45.5;
    QTest::newRow("vertical, as long as the width allows") << QSize(50, 300) << int(Qt::Vertical) << 75.0;
    QTest::newRow("vertical, no longer than the widget") << QSize(80, 91) << int(Qt::Vertical) << 45.5;
}

void tst_KelSwitchFace::halfLength()
{
    QFETCH(QSize, size);
    QFETCH(int, orientation);
    QFETCH(double, result);
    QCOMPARE(switchHalfLength(size, static_cast<Qt::Orientation>(orientation)), result);
}

void tst_KelSwitchFace::track()
{
    QCOMPARE(switchTrack(Length, Qt::Horizontal), QRectF(-33, -11, 66, 22));
    QCOMPARE(switchTrack(Length, Qt::Vertical), QRectF(-11, -33, 22, 66));
}

void tst_KelSwitchFace::sideHandleRests_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<double>("position");
    QTest::addColumn<QPointF>("towards");
    QTest::newRow("on is right") << int(Qt::Horizontal) << 0.0 << QPointF(1, 0);
    QTest::newRow("off is left") << int(Qt::Horizontal) << 1.0 << QPointF(-1, 0);
    QTest::newRow("on is up") << int(Qt::Vertical) << 0.0 << QPointF(0, -1);
    QTest::newRow("off is down") << int(Qt::Vertical) << 1.0 << QPointF(0, 1);
}

void tst_KelSwitchFace::sideHandleRests()
{
    QFETCH(int, orientation);
    QFETCH(double, position);
    QFETCH(QPointF, towards);
    const auto along = static_cast<Qt::Orientation>(orientation);
    const QRectF handle = sideHandle(Length, along, position).boundingRect();
    QVERIFY(switchTrack(Length, along).contains(handle));
    QVERIFY(QPointF::dotProduct(handle.center(), towards) > 10.0);
}

void tst_KelSwitchFace::sideHandleOutline_data()
{
    QTest::addColumn<double>("position");
    QTest::addColumn<QPolygonF>("outline");
    QTest::newRow("on") << 0.0 << QPolygonF({{-3, -10}, {12, 10}, {32, 10}, {32, -10}});
    QTest::newRow("off") << 1.0 << QPolygonF({{-32, -10}, {-32, 10}, {3, 10}, {-12, -10}});
    QTest::newRow("between") << 0.5 << QPolygonF({{-17.5, -10}, {-10, 10}, {17.5, 10}, {10, -10}});
}

void tst_KelSwitchFace::sideHandleOutline()
{
    QFETCH(double, position);
    QFETCH(QPolygonF, outline);
    compare(sideHandle(Length, Qt::Horizontal, position), outline);
}

void tst_KelSwitchFace::verticalIsHorizontalTurned()
{
    QTransform left;
    left.rotate(-90);
    for (const qreal position : {0.0, 0.3, 1.0}) {
        compare(sideHandle(Length, Qt::Vertical, position), left.map(sideHandle(Length, Qt::Horizontal, position)));
        compare(rockerHalf(Length, Qt::Vertical, position), left.map(rockerHalf(Length, Qt::Horizontal, position)));
    }
}

void tst_KelSwitchFace::rockerHalves()
{
    compare(rockerHalf(Length, Qt::Horizontal, 0.0), QPolygonF({{-10, -10}, {-10, 10}, {0, 10}, {0, -10}}));
    compare(rockerHalf(Length, Qt::Horizontal, 1.0), QPolygonF({{-32, -10}, {-32, 10}, {-14, 10}, {-20.75, -10}}));
}

KEL_TEST_MAIN(tst_KelSwitchFace)
#include "tst_kelswitchface.moc"
