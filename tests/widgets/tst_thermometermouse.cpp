#include "mousedrag.h"
#include "testmain.h"
#include "thermometerbench.h"
#include "widgetschedule.h"

#include <QPointer>
#include <QSignalSpy>
#include <functional>

/// A thermometer under the pointer.
class tst_ThermometerMouse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void press_data();
    void press();
    void everyPlaceOfTheRow_data();
    void everyPlaceOfTheRow();
    void everyButton_data();
    void everyButton();
    void drag();
    void rowsAreRounded_data();
    void rowsAreRounded();
    void moveWithoutAButton();
    void pictureMeetsThePointer();
    void readOnly();
    void readOnlyWhileDragged();
    void disabled();
    void disabledWhileDragged();
    void tooShort();
    void deletedWhilePressed();
    void anythingAtAnyTime();
};

/// What a press on row \a y gives at \a size, on the usual scale.
static double valueAt(const QSize &size, int y)
{
    const float width = float(size.width());
    const float height = float(size.height());
    const float r = qMin(width, height) / qBound(2.0f, 7 - height / width, 7.0f);
    const auto u = float(1 - (y - double(r) / 2) / double(height - 2.5f * r));
    return qBound(-50.0, double(u) * 100.0 - 50.0, 50.0);
}

void tst_ThermometerMouse::press_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("y");
    QTest::addColumn<double>("about");
    QTest::newRow("above the scale") << QSize(120, 300) << 0 << 50.0;
    QTest::newRow("top") << QSize(120, 300) << 13 << 50.0;
    QTest::newRow("below the top") << QSize(120, 300) << 14 << 49.714;
    QTest::newRow("upper part") << QSize(120, 300) << 60 << 30.0;
    QTest::newRow("lower part") << QSize(120, 300) << 211 << -34.714;
    QTest::newRow("above the bottom") << QSize(120, 300) << 246 << -49.714;
    QTest::newRow("below the bottom") << QSize(120, 300) << 247 << -50.0;
    QTest::newRow("bulb") << QSize(120, 300) << 290 << -50.0;
    QTest::newRow("small") << QSize(30, 60) << 9 << 36.667;
    QTest::newRow("large") << QSize(240, 600) << 100 << 34.286;
    QTest::newRow("slim") << QSize(50, 400) << 200 << -5.556;
    QTest::newRow("lying") << QSize(300, 60) << 30 << -17.442;
}

void tst_ThermometerMouse::press()
{
    QFETCH(QSize, size);
    QFETCH(int, y);
    QFETCH(double, about);

    KelThermometer thermometer;
    thermometer.resize(size);
    QSignalSpy spy(&thermometer, &KelThermometer::valueChanged);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(size.width() / 2, y));
    QVERIFY2(qAbs(thermometer.value() - about) < 0.3, QByteArray::number(thermometer.value()).constData());
    QVERIFY(thermometer.value() == valueAt(size, y)); // to the bit
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.first().first().toDouble(), thermometer.value());
    QTest::mouseRelease(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(size.width() / 2, 3));
    QCOMPARE(spy.size(), 1); // a release sets nothing
}

void tst_ThermometerMouse::everyPlaceOfTheRow_data()
{
    QTest::addColumn<int>("x");
    for (const int x : {0, 1, 40, 60, 119})
        QTest::addRow("%d", x) << x;
}

void tst_ThermometerMouse::everyPlaceOfTheRow()
{
    QFETCH(int, x);
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(x, 100));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 100));
}

void tst_ThermometerMouse::everyButton_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("left") << int(Qt::LeftButton);
    QTest::newRow("right") << int(Qt::RightButton);
    QTest::newRow("middle") << int(Qt::MiddleButton);
    QTest::newRow("back") << int(Qt::BackButton);
}

void tst_ThermometerMouse::everyButton()
{
    QFETCH(int, button);
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    QTest::mousePress(&thermometer, Qt::MouseButton(button), Qt::NoModifier, QPoint(60, 100));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 100));
    dragMouse(&thermometer, QPointF(60, 150), Qt::MouseButton(button));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 150));
}

void tst_ThermometerMouse::drag()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    QSignalSpy spy(&thermometer, &KelThermometer::valueChanged);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    for (const int y : {101, 140, 90, 30}) {
        dragMouse(&thermometer, QPointF(60, y));
        QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), y));
    }
    QCOMPARE(spy.size(), 5);
    dragMouse(&thermometer, QPointF(60, -5000));
    QCOMPARE(thermometer.value(), 50.0);
    dragMouse(&thermometer, QPointF(900, -9000));
    QCOMPARE(spy.size(), 6); // 50 it was
    dragMouse(&thermometer, QPointF(60, 5000));
    QCOMPARE(thermometer.value(), -50.0);
}

void tst_ThermometerMouse::rowsAreRounded_data()
{
    QTest::addColumn<double>("y");
    QTest::addColumn<int>("row");
    QTest::newRow("down") << 99.49 << 99;
    QTest::newRow("half") << 99.5 << 100;
    QTest::newRow("up") << 99.51 << 100;
}

void tst_ThermometerMouse::rowsAreRounded()
{
    QFETCH(double, y);
    QFETCH(int, row);
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    dragMouse(&thermometer, QPointF(60, y));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), row));
}

void tst_ThermometerMouse::moveWithoutAButton()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    thermometer.setMouseTracking(true);
    dragMouse(&thermometer, QPointF(60, 100), Qt::NoButton);
    QCOMPARE(thermometer.value(), 0.0);
}

void tst_ThermometerMouse::pictureMeetsThePointer()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    for (const int y : {40, 99, 130, 201}) {
        QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, y));
        settle(thermometer, thermometer.value());
        const QImage image = rendered(thermometer, Qt::green);
        QVERIFY(QColor(image.pixel(70, y - 2)).green() > 240);
        QVERIFY(QColor(image.pixel(70, y + 1)).green() < 240);
    }
}

void tst_ThermometerMouse::readOnly()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    thermometer.setReadOnly(true);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    dragMouse(&thermometer, QPointF(60, 150));
    QCOMPARE(thermometer.value(), 0.0);
}

void tst_ThermometerMouse::readOnlyWhileDragged()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    thermometer.setReadOnly(true);
    dragMouse(&thermometer, QPointF(60, 150));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 100));
    thermometer.setReadOnly(false);
    dragMouse(&thermometer, QPointF(60, 150));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 150));
}

void tst_ThermometerMouse::disabled()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    thermometer.disable();
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    QCOMPARE(thermometer.value(), 0.0);
}

void tst_ThermometerMouse::disabledWhileDragged()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    thermometer.disable();
    dragMouse(&thermometer, QPointF(60, 150));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 100));
}

void tst_ThermometerMouse::tooShort()
{
    KelThermometer thermometer;
    for (const QSize size : {QSize(100, 7), QSize(4, 6), QSize(1, 1), QSize(0, 50), QSize(50, 0), QSize(0, 0)}) {
        thermometer.resize(size);
        for (const int y : {0, 3, 6}) {
            QMouseEvent press(QEvent::MouseButtonPress, QPointF(0, y), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(&thermometer, &press);
            dragMouse(&thermometer, QPointF(0, y));
        }
        QCOMPARE(thermometer.value(), 0.0);
    }
}

void tst_ThermometerMouse::deletedWhilePressed()
{
    const QPointer<KelThermometer> thermometer(new KelThermometer());
    thermometer->resize(120, 300);
    connect(thermometer, &KelThermometer::valueChanged, this, [thermometer] { delete thermometer; });
    QTest::mousePress(thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    QVERIFY(thermometer.isNull());
}

namespace
{

constexpr quint32 Schedules = 400;
constexpr int Steps = 60;

/// The scale's bounds move by a schedule of their own: within what single precision shows exactly enough.
void addScaleDeeds(WidgetSchedule &schedule, KelThermometer *it)
{
    for (const char *name : {"h__anim", "gradMinimum", "gradMaximum", "setGradMinimum", "setGradMaximum"})
        schedule.leaveAlone(name);
    const auto number = [&schedule] { return schedule.below(240) - 120.0; };
    schedule.addDeed(
        "scale bottom", [=] { it->setGradMinimum(number()); }, 3);
    schedule.addDeed(
        "scale top", [=] { it->setGradMaximum(number()); }, 3);
    schedule.addDeed(
        "value", [=] { it->setValue(number()); }, 3);
}

} // namespace

void tst_ThermometerMouse::anythingAtAnyTime()
{
    for (quint32 seed = 1; seed <= Schedules; ++seed) {
        WidgetSchedule schedule(seed, [](QWidget *parent) { return new KelThermometer(parent); });
        const QPointer<KelThermometer> it = static_cast<KelThermometer *>(schedule.widget());
        addScaleDeeds(schedule, it);
        schedule.setCheck([it] {
            const double kept = qMax(qMin(it->value(), it->gradMaximum()), it->gradMinimum());
            return QByteArray(kept == it->value() && qIsFinite(it->h__anim()) ? "" : "a value beyond the scale");
        });
        schedule.run(Steps);
        schedule.comeToRest();
        QVERIFY2(schedule.trouble().isEmpty(), schedule.trouble().constData());
        if (it)
            QVERIFY(qAbs(double(it->h__anim()) - it->value()) < 1e-4);
    }
}

KEL_TEST_MAIN(tst_ThermometerMouse)
#include "tst_thermometermouse.moc"
