// What a pointer picks on the faces of a KelClock.
#include "clockbench.h"
#include "testmain.h"

#include <QSignalSpy>

class tst_ClockPick : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyHour_data();
    void everyHour();
    void sectorEdges_data();
    void sectorEdges();
    void bands_data();
    void bands();
    void outerEdgeBelongsToTheRing();
    void bandsOfAFlatFace();
    void middleOfAnOddFace();
    void pointerIsRounded();
    void bandsAreOfTheLastPainting();

    void tap_data();
    void tap();
    void minutesHaveNoBand_data();
    void minutesHaveNoBand();
    void drag_data();
    void drag();
    void doubleClickIsAPress();
    void midnightAndNoon_data();
    void midnightAndNoon();
    void textsAreCompared();
    void sameNumberIsSilent();
    void dragAcrossTheHours();

    void everyButtonCounts_data();
    void everyButtonCounts();
    void touchIsAMouse();
    void moveWithoutAButton();
    void nothingBeforeTheFirstPainting();
    void readOnly();
    void readOnlyKeepsTheEvents();
    void disabled();
    void releaseDoesNothing();
    void aFaceTooSmallToReadIsUsed();
};

namespace
{

/// Radius of the outermost ring as a finger meets it.
double outerEdge(const QWidget &face)
{
    return std::min(face.width(), face.height()) / 2.0 / 1.1;
}

double outerWidth(const QWidget &face)
{
    return 1.4 * numberSide(face, outerHours());
}

double innerWidth(const QWidget &face)
{
    return 1.4 * numberSide(face, innerHours());
}

double outerMiddle(const QWidget &face)
{
    return outerEdge(face) - outerWidth(face) / 2.0;
}

double innerMiddle(const QWidget &face)
{
    return outerEdge(face) - outerWidth(face) - innerWidth(face) / 2.0;
}

/// A whole number of minutes as an angle on the face.
double degreesOf(double minutes)
{
    return minutes * 6.0;
}

} // namespace

void tst_ClockPick::everyHour_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<bool>("isInner");
    QTest::addColumn<int>("hour");

    for (int i = 1; i <= 12; ++i) {
        for (const double off : {-14.0, 0.0, 14.0}) {
            QTest::addRow("outer %d, %g beside", (i + 12) % 24, off) << i * 30 + off << false << (i + 12) % 24;
            QTest::addRow("inner %d, %g beside", i, off) << i * 30 + off << true << i;
        }
    }
}

void tst_ClockPick::everyHour()
{
    QFETCH(double, degrees);
    QFETCH(bool, isInner);
    QFETCH(int, hour);
    ClockBench bench;
    bench.clock.setTime(QTime(hour == 5 ? 6 : 5, 20));
    QSignalSpy spy(&bench.clock, &KelClock::timeChanged);

    const double distance = isInner ? innerMiddle(*bench.hours) : outerMiddle(*bench.hours);
    QTest::mousePress(bench.hours, Qt::LeftButton, Qt::NoModifier, pointOn(*bench.hours, degrees, distance).toPoint());
    QCOMPARE(bench.clock.time(), QTime(hour, 20));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toTime(), QTime(hour, 20));
}

void tst_ClockPick::sectorEdges_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<int>("outer");
    QTest::addColumn<int>("inner");

    QTest::newRow("last of 23") << 344.0 << 23 << 11;
    QTest::newRow("first of midnight") << 346.0 << 0 << 12;
    QTest::newRow("midnight, just before it") << 359.0 << 0 << 12;
    QTest::newRow("midnight itself") << 0.0 << 0 << 12;
    QTest::newRow("midnight, just after it") << 1.0 << 0 << 12;
    QTest::newRow("last of midnight") << 14.0 << 0 << 12;
    QTest::newRow("first of 13") << 16.0 << 13 << 1;
    QTest::newRow("last of 13") << 44.0 << 13 << 1;
    QTest::newRow("first of 14") << 46.0 << 14 << 2;
    QTest::newRow("last of 17") << 164.0 << 17 << 5;
    QTest::newRow("first of 18") << 166.0 << 18 << 6;
}

void tst_ClockPick::sectorEdges()
{
    QFETCH(double, degrees);
    QFETCH(int, outer);
    QFETCH(int, inner);
    // So large that a pixel is less than half a degree also on the inner ring.
    ClockBench bench(QSize(600, 600));
    bench.clock.setTime(QTime(9, 0));
    ClockBench::tap(bench.hours, pointOn(*bench.hours, degrees, outerMiddle(*bench.hours)));
    QCOMPARE(bench.clock.time().hour(), outer);
    ClockBench::tap(bench.hours, pointOn(*bench.hours, degrees, innerMiddle(*bench.hours)));
    QCOMPARE(bench.clock.time().hour(), inner);
}

void tst_ClockPick::bands_data()
{
    QTest::addColumn<int>("side");

    for (const int side : {64, 128, 300, 601})
        QTest::addRow("%d px", side) << side;
}

// Straight to the right of the centre the distance is a number of pixels (or of half ones).
void tst_ClockPick::bands()
{
    QFETCH(int, side);
    ClockBench bench(QSize(side, side));
    const double outer = outerEdge(*bench.hours);
    const double between = outer - static_cast<double>(static_cast<float>(outerWidth(*bench.hours)));
    const double inner = between - static_cast<double>(static_cast<float>(innerWidth(*bench.hours)));
    QVERIFY(inner > 2.0);

    for (int x = side / 2; x < side + 5; ++x) {
        bench.clock.setTime(QTime(9, 59));
        const double distance = std::hypot(x - side / 2.0, side / 2 - side / 2.0);
        const int expected = distance > outer ? 9 : distance >= between ? 15 : distance >= inner ? 3 : 9;
        ClockBench::tap(bench.hours, QPointF(x, side / 2));
        QVERIFY2(bench.clock.time().hour() == expected, qPrintable(QStringLiteral("%1 px: %2").arg(x).arg(expected)));
    }
}

void tst_ClockPick::outerEdgeBelongsToTheRing()
{
    ClockBench bench(QSize(154, 154)); // 154 / 2 / 1.1 is 70 to the last digit.
    ClockBench::tap(bench.hours, QPointF(77 + 71, 77));
    QCOMPARE(bench.clock.time().hour(), 0);
    ClockBench::tap(bench.hours, QPointF(77 + 70, 77));
    QCOMPARE(bench.clock.time().hour(), 15);
}

void tst_ClockPick::bandsOfAFlatFace()
{
    ClockBench bench(QSize(420, 300));
    ClockBench::tap(bench.hours, pointOn(*bench.hours, 90, 135.0));
    QCOMPARE(bench.clock.time().hour(), 15);
    ClockBench::tap(bench.hours, pointOn(*bench.hours, 60, 138.0));
    QCOMPARE(bench.clock.time().hour(), 15);
    ClockBench::tap(bench.minutes, pointOn(*bench.minutes, 90, 200.0));
    QCOMPARE(bench.clock.time().minute(), 15);
}

void tst_ClockPick::middleOfAnOddFace()
{
    ClockBench bench(QSize(301, 301));
    ClockBench::press(bench.minutes, QPointF(150, 10)); // half a pixel to the left of 12 o'clock
    QCOMPARE(bench.clock.time().minute(), 0);
    ClockBench::tap(bench.hours, QPointF(151, 20)); // and half a pixel to the right
    QCOMPARE(bench.clock.time().hour(), 0);
    ClockBench::tap(bench.hours, QPointF(280, 151));
    QCOMPARE(bench.clock.time().hour(), 15);
}

void tst_ClockPick::pointerIsRounded()
{
    ClockBench bench; // the outer edge is 136.36 pixels from the centre at 150
    bench.clock.setTime(QTime(9, 0));
    ClockBench::tap(bench.hours, QPointF(286.5, 150.0));
    QCOMPARE(bench.clock.time().hour(), 9);
    ClockBench::tap(bench.hours, QPointF(286.49, 150.0));
    QCOMPARE(bench.clock.time().hour(), 15);
}

// The painted radius is smaller by the pen; a finger may hit the difference.
void tst_ClockPick::bandsAreOfTheLastPainting()
{
    ClockBench bench;
    const double paintedRadius = (150.0 - 150.0 / 80.0) / 1.1;
    QVERIFY(paintedRadius < 136.0);
    ClockBench::tap(bench.hours, pointOn(*bench.hours, 90, 136.0));
    QCOMPARE(bench.clock.time().hour(), 15);

    // A face that was never painted at its new size still has the rings' old widths.
    const double oldWidth = outerWidth(*bench.hours);
    bench.clock.setUpdatesEnabled(false);
    bench.hours->setFixedSize(600, 600);
    bench.hours->resize(600, 600);
    const double inOldInner = outerEdge(*bench.hours) - oldWidth - 5.0;
    QVERIFY(inOldInner > outerEdge(*bench.hours) - outerWidth(*bench.hours));
    ClockBench::tap(bench.hours, pointOn(*bench.hours, 90, inOldInner));
    QCOMPARE(bench.clock.time().hour(), 3);
    rendered(*bench.hours);
    ClockBench::tap(bench.hours, pointOn(*bench.hours, 90, inOldInner));
    QCOMPARE(bench.clock.time().hour(), 15);
}

void tst_ClockPick::tap_data()
{
    QTest::addColumn<double>("at");
    QTest::addColumn<int>("minute");

    QTest::newRow("on a number") << 25.0 << 25;
    QTest::newRow("31 is 30") << 31.0 << 30;
    QTest::newRow("32 is 30") << 32.0 << 30;
    QTest::newRow("33 is 35") << 33.0 << 35;
    QTest::newRow("32.4 is 32, so 30") << 32.4 << 30;
    QTest::newRow("32.6 is 33, so 35") << 32.6 << 35;
    QTest::newRow("2 is 0") << 2.0 << 0;
    QTest::newRow("3 is 5") << 3.0 << 5;
    QTest::newRow("57 is 55") << 57.0 << 55;
    QTest::newRow("58 is the next hour's 0") << 58.0 << 0;
    QTest::newRow("59.8 is 0") << 59.8 << 0;
    QTest::newRow("12 o'clock") << 0.0 << 0;
}

void tst_ClockPick::tap()
{
    QFETCH(double, at);
    QFETCH(int, minute);
    ClockBench bench(QSize(600, 600));
    bench.clock.setTime(QTime(7, minute == 40 ? 41 : 40));
    QSignalSpy spy(&bench.clock, &KelClock::timeChanged);
    QTest::mouseClick(bench.minutes, Qt::LeftButton, Qt::NoModifier,
                      pointOn(*bench.minutes, degreesOf(at), 270).toPoint());
    QCOMPARE(bench.clock.time(), QTime(7, minute));
    QCOMPARE(spy.count(), 1);
}

void tst_ClockPick::minutesHaveNoBand_data()
{
    QTest::addColumn<QPointF>("position");
    QTest::addColumn<int>("minute");

    QTest::newRow("close to the centre") << QPointF(152, 150) << 15;
    QTest::newRow("outside the rim") << QPointF(299, 1) << 5;
    QTest::newRow("outside the face") << QPointF(-900, 150) << 45;
    QTest::newRow("the centre") << QPointF(150, 150) << 30;
}

void tst_ClockPick::minutesHaveNoBand()
{
    QFETCH(QPointF, position);
    QFETCH(int, minute);
    ClockBench bench;
    ClockBench::press(bench.minutes, position);
    QCOMPARE(bench.clock.time().minute(), minute == 5 ? 10 : minute); // the corner is at 7.5, which is 8
}

void tst_ClockPick::drag_data()
{
    QTest::addColumn<QVector<double>>("way"); // The press, then the moves.
    QTest::addColumn<QVector<int>>("minutes");

    using Way = QVector<double>;
    using Minutes = QVector<int>;
    QTest::newRow("to a single minute") << Way{31, 32} << Minutes{30, 32};
    QTest::newRow("inside the minute nothing changes") << Way{31, 31.3, 30.7} << Minutes{30, 30, 30};
    QTest::newRow("back to where it began") << Way{31, 32, 31} << Minutes{30, 32, 31};
    QTest::newRow("away and far back") << Way{33, 40, 33, 33.2} << Minutes{35, 40, 33, 33};
    QTest::newRow("every minute over the hour") << Way{57, 58, 59, 60, 1, 2} << Minutes{55, 58, 59, 0, 1, 2};
    QTest::newRow("backwards over the hour") << Way{2, 1, 0, 59} << Minutes{0, 1, 0, 59};
    QTest::newRow("a press anew") << Way{12, 14, -14, 14.2} << Minutes{10, 14, 15, 15};
}

// A negative number is another press there.
void tst_ClockPick::drag()
{
    QFETCH(QVector<double>, way);
    QFETCH(QVector<int>, minutes);
    ClockBench bench(QSize(600, 600));
    bench.clock.setTime(QTime(20, 44));
    for (int i = 0; i < way.size(); ++i) {
        const QPointF position = pointOn(*bench.minutes, degreesOf(std::abs(way.at(i))), 200 + i);
        if (i == 0 || way.at(i) < 0)
            ClockBench::press(bench.minutes, position);
        else
            dragMouse(bench.minutes, position);
        QCOMPARE(bench.clock.time(), QTime(20, minutes.at(i)));
    }
}

void tst_ClockPick::doubleClickIsAPress()
{
    ClockBench bench;
    ClockBench::press(bench.minutes, pointOn(*bench.minutes, degreesOf(20), 120));
    dragMouse(bench.minutes, pointOn(*bench.minutes, degreesOf(31), 120));
    QCOMPARE(bench.clock.time().minute(), 31);
    ClockBench::send(bench.minutes, QEvent::MouseButtonDblClick, pointOn(*bench.minutes, degreesOf(31), 120),
                     Qt::LeftButton);
    QCOMPARE(bench.clock.time().minute(), 30);
    QTest::mouseDClick(bench.hours, Qt::LeftButton, Qt::NoModifier, pointOn(*bench.hours, 60, 120).toPoint());
    QCOMPARE(bench.clock.time().hour(), 14);
}

void tst_ClockPick::midnightAndNoon_data()
{
    QTest::addColumn<bool>("isInner");
    QTest::addColumn<int>("hour");

    QTest::newRow("00 outside") << false << 0;
    QTest::newRow("12 inside") << true << 12;
}

void tst_ClockPick::midnightAndNoon()
{
    QFETCH(bool, isInner);
    QFETCH(int, hour);
    ClockBench bench;
    bench.clock.setTime(QTime(5, 20));
    finishAnimations(bench.clock);
    ClockBench::tap(bench.hours,
                    pointOn(*bench.hours, 0, isInner ? innerMiddle(*bench.hours) : outerMiddle(*bench.hours)));
    QCOMPARE(bench.clock.time(), QTime(hour, 20));
    finishAnimations(bench.clock);
    QCOMPARE(bench.clock.h__anim1(), 0.0F);
}

// "0" and "00" are the same hour but another text, so the pick is announced.
void tst_ClockPick::textsAreCompared()
{
    ClockBench bench;
    bench.clock.setTime(QTime(0, 20));
    QSignalSpy spy(&bench.clock, &KelClock::timeChanged);
    const QPointF midnight = pointOn(*bench.hours, 0, outerMiddle(*bench.hours));
    ClockBench::tap(bench.hours, midnight);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toTime(), QTime(0, 20));
    ClockBench::tap(bench.hours, midnight);
    QCOMPARE(spy.count(), 1);
    bench.clock.setTime(QTime(0, 20));
    QCOMPARE(spy.count(), 1);
}

void tst_ClockPick::sameNumberIsSilent()
{
    ClockBench bench;
    bench.clock.setTime(QTime(14, 10));
    finishAnimations(bench.clock);
    QSignalSpy spy(&bench.clock, &KelClock::timeChanged);
    ClockBench::tap(bench.hours, pointOn(*bench.hours, 60, 120));
    ClockBench::tap(bench.minutes, pointOn(*bench.minutes, 60, 120));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(animationOf(bench.clock, "h__anim0")->state(), QAbstractAnimation::Stopped);
}

void tst_ClockPick::dragAcrossTheHours()
{
    ClockBench bench;
    QSignalSpy spy(&bench.clock, &KelClock::timeChanged);
    QTest::mousePress(bench.hours, Qt::LeftButton, Qt::NoModifier, pointOn(*bench.hours, 30, 120).toPoint());
    QCOMPARE(bench.clock.time().hour(), 13);
    dragMouse(bench.hours, pointOn(*bench.hours, 90, 120));
    QCOMPARE(bench.clock.time().hour(), 15);
    dragMouse(bench.hours, pointOn(*bench.hours, 90, 5)); // in the middle there is no ring
    QCOMPARE(bench.clock.time().hour(), 15);
    dragMouse(bench.hours, pointOn(*bench.hours, 270, innerMiddle(*bench.hours)));
    QCOMPARE(bench.clock.time().hour(), 9);
    QCOMPARE(spy.count(), 3);
}

void tst_ClockPick::everyButtonCounts_data()
{
    QTest::addColumn<int>("button");

    QTest::newRow("left") << int(Qt::LeftButton);
    QTest::newRow("right") << int(Qt::RightButton);
    QTest::newRow("middle") << int(Qt::MiddleButton);
    QTest::newRow("side") << int(Qt::BackButton);
}

void tst_ClockPick::everyButtonCounts()
{
    QFETCH(int, button);
    ClockBench bench;
    const auto which = Qt::MouseButton(button);
    ClockBench::press(bench.hours, pointOn(*bench.hours, 60, 120), which);
    ClockBench::press(bench.minutes, pointOn(*bench.minutes, degreesOf(21), 120), which);
    QCOMPARE(bench.clock.time(), QTime(14, 20));
    dragMouse(bench.minutes, pointOn(*bench.minutes, degreesOf(22), 120), which);
    QCOMPARE(bench.clock.time(), QTime(14, 22));
}

void tst_ClockPick::touchIsAMouse()
{
    ClockBench bench;
    QTouchDevice *screen = QTest::createTouchDevice(); // stays with the application
    QTest::touchEvent(&bench.clock, screen)
        .press(0, pointOn(*bench.minutes, degreesOf(21), 120).toPoint(), bench.minutes);
    QTRY_COMPARE(bench.clock.time().minute(), 20);
    QTest::touchEvent(&bench.clock, screen)
        .move(0, pointOn(*bench.minutes, degreesOf(23), 120).toPoint(), bench.minutes);
    QTRY_COMPARE(bench.clock.time().minute(), 23);
    QTest::touchEvent(&bench.clock, screen)
        .release(0, pointOn(*bench.minutes, degreesOf(23), 120).toPoint(), bench.minutes);
    QCOMPARE(bench.clock.time().minute(), 23);
}

void tst_ClockPick::moveWithoutAButton()
{
    ClockBench bench;
    bench.hours->setMouseTracking(true); // Else there is no such event.
    bench.minutes->setMouseTracking(true);
    dragMouse(bench.hours, pointOn(*bench.hours, 60, 120), Qt::NoButton);
    dragMouse(bench.minutes, pointOn(*bench.minutes, 60, 120), Qt::NoButton);
    QCOMPARE(bench.clock.time(), QTime(0, 0));
}

void tst_ClockPick::nothingBeforeTheFirstPainting()
{
    KelClock clock;
    clock.resize(600, 300);
    clock.layout()->activate();
    QSignalSpy spy(&clock, &KelClock::timeChanged);
    for (int i = 0; i < 2; ++i) {
        QWidget *face = faceOf(clock, i);
        ClockBench::press(face, pointOn(*face, 60, 120));
        dragMouse(face, pointOn(*face, 90, 120));
        QCOMPARE(spy.count(), 0);

        rendered(*face);
        ClockBench::press(face, pointOn(*face, 60, 120));
        QCOMPARE(spy.count(), 1);
        spy.clear();
    }
    QCOMPARE(clock.time(), QTime(14, 10));
}

void tst_ClockPick::readOnly()
{
    ClockBench bench;
    bench.clock.setTime(QTime(8, 8));
    bench.clock.setReadOnly(true);
    QSignalSpy spy(&bench.clock, &KelClock::timeChanged);
    for (QWidget *face : {bench.hours, bench.minutes}) {
        ClockBench::press(face, pointOn(*face, 60, 120));
        dragMouse(face, pointOn(*face, 90, 120));
        ClockBench::release(face, pointOn(*face, 90, 120));
    }
    QCOMPARE(bench.clock.time(), QTime(8, 8));
    QCOMPARE(spy.count(), 0);
    bench.clock.setTime(QTime(9, 9));
    QCOMPARE(bench.clock.time(), QTime(9, 9));
    QCOMPARE(spy.count(), 1);
}

// What lies behind a clock must not answer to a finger on it.
void tst_ClockPick::readOnlyKeepsTheEvents()
{
    ClockBench bench;
    bench.clock.setReadOnly(true);
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(10, 10), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QVERIFY(QApplication::sendEvent(bench.hours, &press));
    QVERIFY(press.isAccepted());
}

void tst_ClockPick::disabled()
{
    ClockBench bench;
    bench.clock.disable();
    ClockBench::press(bench.hours, pointOn(*bench.hours, 60, 120));
    ClockBench::press(bench.minutes, pointOn(*bench.minutes, 60, 120));
    QCOMPARE(bench.clock.time(), QTime(0, 0));
    bench.clock.enable();
    ClockBench::press(bench.hours, pointOn(*bench.hours, 60, 120));
    QCOMPARE(bench.clock.time(), QTime(14, 0));
}

void tst_ClockPick::releaseDoesNothing()
{
    ClockBench bench;
    ClockBench::press(bench.minutes, pointOn(*bench.minutes, degreesOf(30), 120));
    ClockBench::release(bench.minutes, pointOn(*bench.minutes, degreesOf(42), 120));
    QCOMPARE(bench.clock.time().minute(), 30);
}

void tst_ClockPick::aFaceTooSmallToReadIsUsed()
{
    for (const QSize &size : {QSize(1, 1), QSize(3, 3), QSize(8, 8), QSize(300, 2)}) {
        ClockBench bench(size);
        ClockBench::press(bench.minutes, QPointF(size.width() + 100, size.height() / 2.0));
        QCOMPARE(bench.clock.time().minute(), 15);
        for (int x = -2; x < size.width() + 2; ++x)
            ClockBench::press(bench.hours, QPointF(x, 1)); // any answer or none
        QVERIFY(bench.clock.time().isValid());
    }
}

KEL_TEST_MAIN(tst_ClockPick)
#include "tst_clockpick.moc"
