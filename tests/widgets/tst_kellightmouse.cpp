#include "mousedrag.h"
#include "testmain.h"

#include <kellight.h>

class tst_KelLightMouse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pressHitsAPart_data();
    void pressHitsAPart();
    void ringSetsTheLevel_data();
    void ringSetsTheLevel();
    void dragFollowsAndReleaseEndsIt();
    void moveWithoutADragIsIgnored();
    void binaryRingDoesNothing();
    void readOnlyIgnoresTheMouse();
    void readOnlyDuringADrag();
    void onlyTheLeftButton();
    void clickedComesAfterTheLevel();
    void fullShiftNeverGivesNonsense();
};

void tst_KelLightMouse::pressHitsAPart_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<int>("clicks");
    QTest::addColumn<bool>("level");

    // 200 x 100: R = 50, ring width 15, centre (100, 50)
    QTest::newRow("centre is the lamp") << QPoint(100, 50) << 1 << true;
    QTest::newRow("just inside the ring is the lamp") << QPoint(100, 16) << 1 << true;
    QTest::newRow("inner rim is the ring") << QPoint(100, 15) << 0 << true;
    QTest::newRow("outer rim is the ring") << QPoint(100, 0) << 0 << true;
    QTest::newRow("outer rim at the side is the ring") << QPoint(150, 50) << 0 << true;
    QTest::newRow("outside does nothing") << QPoint(151, 50) << 0 << false;
    QTest::newRow("corner does nothing") << QPoint(3, 3) << 0 << false;
}

void tst_KelLightMouse::pressHitsAPart()
{
    QFETCH(QPoint, position);
    QFETCH(int, clicks);
    QFETCH(bool, level);

    KelLight light;
    light.resize(200, 100);
    const QSignalSpy clicked(&light, &KelLight::clicked);
    const QSignalSpy changed(&light, &KelLight::levelChanged);
    QTest::mousePress(&light, Qt::LeftButton, {}, position);
    QCOMPARE(clicked.count(), clicks);
    QCOMPARE(changed.count(), level ? 1 : 0);
}

void tst_KelLightMouse::ringSetsTheLevel_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<double>("level");

    // 200 x 200, 20 degrees free on each side of the bottom: the angle runs bottom, left, top, right
    QTest::newRow("left") << QPoint(5, 100) << 100.0 * 70.0 / 320.0;
    QTest::newRow("top") << QPoint(100, 5) << 50.0;
    QTest::newRow("right") << QPoint(195, 100) << 100.0 * 250.0 / 320.0;
    QTest::newRow("exact bottom is the end") << QPoint(100, 195) << 100.0;
    QTest::newRow("left of the bottom is the begin") << QPoint(99, 195) << 0.0;
    QTest::newRow("right of the bottom is the end") << QPoint(101, 195) << 100.0;
}

void tst_KelLightMouse::ringSetsTheLevel()
{
    QFETCH(QPoint, position);
    QFETCH(double, level);

    KelLight light;
    light.resize(200, 200);
    light.setLevel(33.0);
    QTest::mousePress(&light, Qt::LeftButton, {}, position);
    QCOMPARE(light.level(), level);
}

void tst_KelLightMouse::dragFollowsAndReleaseEndsIt()
{
    KelLight light;
    light.resize(200, 200);
    QTest::mousePress(&light, Qt::LeftButton, {}, QPoint(100, 5));
    QCOMPARE(light.level(), 50.0);
    dragMouse(&light, QPoint(190, 100)); // also away from the ring
    QCOMPARE(light.level(), 100.0 * 250.0 / 320.0);
    dragMouse(&light, QPoint(100, 90));
    QCOMPARE(light.level(), 50.0);
    QTest::mouseRelease(&light, Qt::LeftButton, {}, QPoint(100, 90));
    dragMouse(&light, QPoint(195, 100));
    QCOMPARE(light.level(), 50.0);
}

void tst_KelLightMouse::moveWithoutADragIsIgnored()
{
    KelLight light;
    light.resize(200, 200);
    QTest::mousePress(&light, Qt::LeftButton, {}, QPoint(100, 100)); // the lamp
    dragMouse(&light, QPoint(100, 5));
    QCOMPARE(light.level(), 100.0);
}

void tst_KelLightMouse::binaryRingDoesNothing()
{
    KelLight light;
    light.resize(400, 400); // the rim is 2.5 wide
    light.setBinary(true);
    const QSignalSpy clicked(&light, &KelLight::clicked);
    const QSignalSpy changed(&light, &KelLight::levelChanged);
    QTest::mousePress(&light, Qt::LeftButton, {}, QPoint(200, 1));
    dragMouse(&light, QPoint(399, 200));
    QTest::mouseRelease(&light, Qt::LeftButton, {}, QPoint(399, 200));
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(changed.count(), 0);

    QTest::mousePress(&light, Qt::LeftButton, {}, QPoint(200, 4));
    QCOMPARE(clicked.count(), 1);
}

void tst_KelLightMouse::readOnlyIgnoresTheMouse()
{
    KelLight light;
    light.resize(200, 200);
    light.setReadOnly(true);
    const QSignalSpy clicked(&light, &KelLight::clicked);
    const QSignalSpy changed(&light, &KelLight::levelChanged);
    QTest::mouseClick(&light, Qt::LeftButton, {}, QPoint(100, 100));
    QTest::mouseClick(&light, Qt::LeftButton, {}, QPoint(100, 5));
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(changed.count(), 0);
    light.setLevel(10.0);
    QCOMPARE(light.level(), 10.0);
}

void tst_KelLightMouse::readOnlyDuringADrag()
{
    KelLight light;
    light.resize(200, 200);
    QTest::mousePress(&light, Qt::LeftButton, {}, QPoint(100, 5));
    light.setReadOnly(true);
    dragMouse(&light, QPoint(195, 100));
    QCOMPARE(light.level(), 50.0);
    QTest::mouseRelease(&light, Qt::LeftButton, {}, QPoint(195, 100)); // ends the drag all the same
    light.setReadOnly(false);
    dragMouse(&light, QPoint(195, 100));
    QCOMPARE(light.level(), 50.0);
}

void tst_KelLightMouse::onlyTheLeftButton()
{
    KelLight light;
    light.resize(200, 200);
    const QSignalSpy changed(&light, &KelLight::levelChanged);
    QTest::mouseClick(&light, Qt::RightButton, {}, QPoint(100, 100));
    QTest::mouseClick(&light, Qt::MiddleButton, {}, QPoint(100, 5));
    QCOMPARE(changed.count(), 0);
}

void tst_KelLightMouse::clickedComesAfterTheLevel()
{
    KelLight light;
    light.resize(200, 200);
    double levelAtClick = -1.0;
    connect(&light, &KelLight::clicked, this, [&] { levelAtClick = light.level(); });
    QTest::mousePress(&light, Qt::LeftButton, {}, QPoint(100, 100));
    QCOMPARE(levelAtClick, 100.0);
}

void tst_KelLightMouse::fullShiftNeverGivesNonsense()
{
    KelLight light;
    light.resize(200, 200);
    light.setAngleShift(180.0);
    light.setLevel(33.0);
    QTest::mousePress(&light, Qt::LeftButton, {}, QPoint(100, 5)); // 0 / 0 on the ring
    QCOMPARE(light.level(), 0.0);
    dragMouse(&light, QPoint(195, 100));
    QCOMPARE(light.level(), 100.0);
    dragMouse(&light, QPoint(5, 100));
    QCOMPARE(light.level(), 0.0);
}

KEL_TEST_MAIN(tst_KelLightMouse)
#include "tst_kellightmouse.moc"
