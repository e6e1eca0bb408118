#include "clockbench.h"
#include "testmain.h"

#include <QMetaProperty>
#include <QPointer>
#include <QSignalSpy>
#include <QTextEdit>
#include <QVBoxLayout>

#include <limits>

class tst_Clock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void properties_data();
    void properties();
    void methods_data();
    void methods();
    void startsEmpty();
    void faces();
    void facesKeepTheirSides();
    void heightForWidth();
    void staysVisibleInLayouts();
    void fontOfFaces_data();
    void fontOfFaces();
    void enableAndDisable();
    void readOnlyIsOfBothFaces();

    void setTime_data();
    void setTime();
    void timeHasNoSeconds();
    void announcedOnceWithBothTexts();
    void announcedAfterTheHandsStarted();
    void numSelectedByName();

    void animations();
    void handTargets_data();
    void handTargets();
    void handsSweepBack();
    void restartFromShown();
    void handsOfBothFaces();
    void anglesThatAreNoNumbers();
    void handsEndAtTheirTargets();
    void deletedByItsListener();
};

namespace
{

float angleOf(int part, int whole)
{
    return static_cast<float>(2.0 * static_cast<double>(3.1415927F) * part / whole);
}

} // namespace

void tst_Clock::properties_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("isShown");

    QTest::newRow("readOnly") << QByteArray("bool") << true;
    QTest::newRow("time") << QByteArray("QTime") << true;
    QTest::newRow("h__anim0") << QByteArray("float") << false;
    QTest::newRow("h__anim1") << QByteArray("float") << false;
}

void tst_Clock::properties()
{
    QFETCH(QByteArray, type);
    QFETCH(bool, isShown);
    KelClock clock;
    const QMetaObject *meta = clock.metaObject();
    const QMetaProperty property = meta->property(meta->indexOfProperty(QTest::currentDataTag()));
    QVERIFY(property.isReadable());
    QVERIFY(property.isWritable());
    QCOMPARE(QByteArray(property.typeName()), type);
    QCOMPARE(property.isDesignable(), isShown);
    QCOMPARE(property.isStored(), isShown);
}

void tst_Clock::methods_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("access");

    const int slot = QMetaMethod::Slot;
    for (const char *name : {"enable()", "disable()", "setReadOnly(bool)", "setTime(QTime)"})
        QTest::newRow(name) << slot << int(QMetaMethod::Public);
    for (const char *name : {"s_anim0(float)", "s_anim1(float)", "numSelected()"})
        QTest::newRow(name) << slot << int(QMetaMethod::Private);
    QTest::newRow("timeChanged(QTime)") << int(QMetaMethod::Signal) << int(QMetaMethod::Public);
}

void tst_Clock::methods()
{
    QFETCH(int, kind);
    QFETCH(int, access);
    KelClock clock;
    const QMetaMethod method = clock.metaObject()->method(clock.metaObject()->indexOfMethod(QTest::currentDataTag()));
    QVERIFY(method.isValid());
    QCOMPARE(int(method.methodType()), kind);
    QCOMPARE(int(method.access()), access);
}

void tst_Clock::startsEmpty()
{
    KelClock clock;
    QCOMPARE(clock.time(), QTime(0, 0));
    QCOMPARE(clock.h__anim0(), 0.0F);
    QCOMPARE(clock.h__anim1(), 0.0F);
    QVERIFY(!clock.readOnly());
    QVERIFY(clock.isEnabled());
}

void tst_Clock::faces()
{
    KelClock clock;
    QVERIFY(qobject_cast<QHBoxLayout *>(clock.layout()));
    QCOMPARE(clock.layout()->count(), 2);
    QCOMPARE(clock.findChildren<QWidget *>().size(), 2);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(faceOf(clock, i)->sizeHint(), QSize(128, 128));
        QCOMPARE(faceOf(clock, i)->minimumSizeHint(), QSize(32, 32));
        QCOMPARE(faceOf(clock, i)->parentWidget(), &clock);
        QCOMPARE(faceOf(clock, i)->metaObject()->className(), "KelClock::_NumericCircle");
    }
}

void tst_Clock::facesKeepTheirSides()
{
    QWidget window;
    window.setLayoutDirection(Qt::RightToLeft);
    KelClock clock(&window);
    clock.resize(400, 200);
    clock.layout()->activate();
    QVERIFY(faceOf(clock, 0)->x() < faceOf(clock, 1)->x());
    QCOMPARE(faceOf(clock, 0)->size(), faceOf(clock, 1)->size());
}

void tst_Clock::heightForWidth()
{
    KelClock clock;
    QVERIFY(clock.hasHeightForWidth());
    for (const int width : {40, 200, 333}) {
        clock.resize(width, 90);
        for (const int asked : {-1, 0, 77, 5000})
            QCOMPARE(clock.heightForWidth(asked), width);
    }
}

void tst_Clock::staysVisibleInLayouts()
{
    QWidget window;
    auto *column = new QVBoxLayout(&window);
    auto *clock = new KelClock();
    column->addWidget(new QTextEdit());
    column->addWidget(clock);
    window.resize(500, 500);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY2(clock->height() >= 128, qPrintable(QString::number(clock->height())));
}

void tst_Clock::fontOfFaces_data()
{
    QTest::addColumn<double>("points");
    QTest::addColumn<int>("pixels");

    QTest::newRow("points") << 12.0 << 0;
    QTest::newRow("parts of a point") << 9.5 << 0;
    QTest::newRow("pixels") << 0.0 << 20;
}

void tst_Clock::fontOfFaces()
{
    QFETCH(double, points);
    QFETCH(int, pixels);
    KelClock clock;
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(faceOf(clock, i)->font().weight(), 75);
        QCOMPARE(faceOf(clock, i)->font().pointSizeF(), clock.font().pointSizeF() * 1.5);
    }

    QFont font = clock.font();
    font.setItalic(true);
    font.setWeight(QFont::Light);
    if (pixels > 0)
        font.setPixelSize(pixels);
    else
        font.setPointSizeF(points);
    clock.setFont(font);
    for (int i = 0; i < 2; ++i) {
        const QFont shown = faceOf(clock, i)->font();
        QVERIFY(shown.italic());
        QCOMPARE(shown.weight(), 75);
        if (pixels > 0)
            QCOMPARE(shown.pixelSize(), 30);
        else
            QCOMPARE(shown.pointSizeF(), points * 1.5);
    }
}

void tst_Clock::enableAndDisable()
{
    KelClock clock;
    QVERIFY(QMetaObject::invokeMethod(&clock, "disable"));
    QVERIFY(!clock.isEnabled());
    QVERIFY(!faceOf(clock, 0)->isEnabled());
    QVERIFY(QMetaObject::invokeMethod(&clock, "enable"));
    QVERIFY(clock.isEnabled());
    QVERIFY(faceOf(clock, 1)->isEnabled());
}

void tst_Clock::readOnlyIsOfBothFaces()
{
    ClockBench bench;
    bench.clock.setReadOnly(true);
    QVERIFY(bench.clock.readOnly());
    ClockBench::tap(bench.hours, pointOn(*bench.hours, 60, 120));
    ClockBench::tap(bench.minutes, pointOn(*bench.minutes, 60, 120));
    QCOMPARE(bench.clock.time(), QTime(0, 0));

    bench.clock.setTime(QTime(3, 4));
    QCOMPARE(bench.clock.time(), QTime(3, 4));

    bench.clock.setProperty("readOnly", false);
    ClockBench::tap(bench.hours, pointOn(*bench.hours, 60, 120));
    ClockBench::tap(bench.minutes, pointOn(*bench.minutes, 60, 120));
    QCOMPARE(bench.clock.time(), QTime(14, 10));
}

void tst_Clock::setTime_data()
{
    QTest::addColumn<QTime>("before");
    QTest::addColumn<QTime>("given");
    QTest::addColumn<QTime>("after");
    QTest::addColumn<int>("signalCount");

    const QTime none;
    QTest::newRow("new time is announced") << none << QTime(14, 30) << QTime(14, 30) << 1;
    QTest::newRow("same time is silent") << QTime(14, 30) << QTime(14, 30) << QTime(14, 30) << 0;
    QTest::newRow("only the minute differs") << QTime(14, 30) << QTime(14, 31) << QTime(14, 31) << 1;
    QTest::newRow("only the hour differs") << QTime(14, 30) << QTime(15, 30) << QTime(15, 30) << 1;
    QTest::newRow("midnight is what an empty clock says") << none << QTime(0, 0) << QTime(0, 0) << 0;
    QTest::newRow("back to midnight") << QTime(1, 1) << QTime(0, 0) << QTime(0, 0) << 1;
    QTest::newRow("last minute") << none << QTime(23, 59) << QTime(23, 59) << 1;
    QTest::newRow("seconds differ, and are dropped") << QTime(14, 30) << QTime(14, 30, 5) << QTime(14, 30) << 1;
    QTest::newRow("milliseconds differ too") << QTime(14, 30) << QTime(14, 30, 0, 1) << QTime(14, 30) << 1;
    QTest::newRow("no time is ignored") << QTime(14, 30) << QTime() << QTime(14, 30) << 0;
    QTest::newRow("an impossible time is ignored") << QTime(14, 30) << QTime(25, 0) << QTime(14, 30) << 0;
}

void tst_Clock::setTime()
{
    QFETCH(QTime, before);
    QFETCH(QTime, given);
    QFETCH(QTime, after);
    QFETCH(int, signalCount);
    KelClock clock;
    clock.setTime(before);
    QSignalSpy spy(&clock, &KelClock::timeChanged);

    QVERIFY(clock.setProperty("time", given));
    QCOMPARE(clock.time(), after);
    QCOMPARE(clock.property("time").toTime(), after);
    QCOMPARE(spy.count(), signalCount);
    if (signalCount > 0)
        QCOMPARE(spy.at(0).at(0).toTime(), after);
}

// A time with seconds is never the time of the clock, so it is announced again and again.
void tst_Clock::timeHasNoSeconds()
{
    KelClock clock;
    QSignalSpy spy(&clock, &KelClock::timeChanged);
    clock.setTime(QTime(7, 8, 9));
    clock.setTime(QTime(7, 8, 9));
    QCOMPARE(spy.count(), 2);
    clock.setTime(QTime(7, 8));
    QCOMPARE(spy.count(), 2);
}

void tst_Clock::announcedOnceWithBothTexts()
{
    KelClock clock;
    clock.setTime(QTime(1, 2));
    QVector<QTime> seen;
    connect(&clock, &KelClock::timeChanged, &clock, [&](QTime given) { seen << given << clock.time(); });
    clock.setTime(QTime(22, 44));
    QCOMPARE(seen, (QVector<QTime>{QTime(22, 44), QTime(22, 44)}));
}

void tst_Clock::announcedAfterTheHandsStarted()
{
    KelClock clock;
    QVector<QVariant> ends;
    connect(&clock, &KelClock::timeChanged, &clock, [&] {
        for (const char *name : {"h__anim0", "h__anim1"}) {
            const QPropertyAnimation *animation = animationOf(clock, name);
            if (animation->state() == QAbstractAnimation::Running)
                ends << animation->endValue();
        }
    });
    clock.setTime(QTime(14, 30));
    QCOMPARE(ends, (QVector<QVariant>{angleOf(30, 60), angleOf(2, 12)}));
}

void tst_Clock::numSelectedByName()
{
    KelClock clock;
    clock.setTime(QTime(5, 6));
    QSignalSpy spy(&clock, &KelClock::timeChanged);
    QVERIFY(QMetaObject::invokeMethod(&clock, "numSelected"));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toTime(), QTime(5, 6));
}

void tst_Clock::animations()
{
    KelClock clock;
    QCOMPARE(clock.findChildren<QPropertyAnimation *>().size(), 2);
    for (const char *name : {"h__anim0", "h__anim1"}) {
        const QPropertyAnimation *animation = animationOf(clock, name);
        QVERIFY(animation);
        QCOMPARE(animation->targetObject(), &clock);
        QCOMPARE(animation->duration(), 200);
        QCOMPARE(animation->easingCurve(), QEasingCurve(QEasingCurve::OutQuad));
        QCOMPARE(animation->loopCount(), 1);
        QCOMPARE(animation->state(), QAbstractAnimation::Stopped);
    }
}

void tst_Clock::handTargets_data()
{
    QTest::addColumn<QTime>("time");
    QTest::addColumn<float>("minuteHand");
    QTest::addColumn<float>("hourHand");

    QTest::newRow("afternoon") << QTime(14, 30) << angleOf(30, 60) << angleOf(2, 12);
    QTest::newRow("hour does not creep") << QTime(2, 59) << angleOf(59, 60) << angleOf(2, 12);
    QTest::newRow("noon") << QTime(12, 1) << angleOf(1, 60) << 0.0F;
    QTest::newRow("midnight") << QTime(0, 1) << angleOf(1, 60) << 0.0F;
    QTest::newRow("last hour") << QTime(23, 0) << 0.0F << angleOf(11, 12);
    QTest::newRow("single minute") << QTime(11, 7) << angleOf(7, 60) << angleOf(11, 12);
}

void tst_Clock::handTargets()
{
    QFETCH(QTime, time);
    QFETCH(float, minuteHand);
    QFETCH(float, hourHand);
    KelClock clock;
    clock.setTime(time);
    const QVariant minuteEnd = animationOf(clock, "h__anim0")->endValue();
    const QVariant hourEnd = animationOf(clock, "h__anim1")->endValue();
    QCOMPARE(minuteEnd.userType(), int(QMetaType::Float));
    QCOMPARE(hourEnd.userType(), int(QMetaType::Float));
    QVERIFY(minuteEnd.value<float>() == minuteHand);
    QVERIFY(hourEnd.value<float>() == hourHand);
}

// From 55 to 5 minutes the hand goes the long way round, over 30.
void tst_Clock::handsSweepBack()
{
    KelClock clock;
    clock.setTime(QTime(0, 55));
    finishAnimations(clock);
    QCOMPARE(clock.h__anim0(), angleOf(55, 60));
    clock.setTime(QTime(0, 5));

    QPropertyAnimation *minute = animationOf(clock, "h__anim0");
    QCOMPARE(minute->startValue().value<float>(), angleOf(55, 60));
    float last = angleOf(55, 60);
    for (int ms = 20; ms <= 200; ms += 20) {
        minute->setCurrentTime(ms);
        const double left = 1.0 - ms / 200.0;
        const double share = 1.0 - left * left;
        const auto expected = static_cast<float>(2.0 * TestPi / 60.0 * (55.0 - 50.0 * share));
        QVERIFY2(std::abs(clock.h__anim0() - expected) < 1e-4F, qPrintable(QString::number(ms)));
        QVERIFY(clock.h__anim0() < last);
        last = clock.h__anim0();
    }
    QCOMPARE(last, angleOf(5, 60));
}

void tst_Clock::restartFromShown()
{
    KelClock clock;
    clock.setTime(QTime(6, 30));
    animationOf(clock, "h__anim0")->setCurrentTime(60);
    animationOf(clock, "h__anim1")->setCurrentTime(120);
    const float minute = clock.h__anim0();
    const float hour = clock.h__anim1();
    QVERIFY(minute > 0.1F && minute < angleOf(30, 60));
    QVERIFY(hour > 0.1F && hour < angleOf(6, 12));

    clock.setTime(QTime(9, 10));
    QCOMPARE(clock.h__anim0(), minute);
    QCOMPARE(clock.h__anim1(), hour);
    QCOMPARE(animationOf(clock, "h__anim0")->startValue().value<float>(), minute);
    QCOMPARE(animationOf(clock, "h__anim1")->startValue().value<float>(), hour);
    QCOMPARE(animationOf(clock, "h__anim0")->currentTime(), 0);
}

void tst_Clock::handsOfBothFaces()
{
    for (const char *name : {"h__anim0", "h__anim1"}) {
        KelClock clock;
        clock.resize(400, 200);
        clock.layout()->activate();
        const QImage hours = rendered(*faceOf(clock, 0));
        const QImage minutes = rendered(*faceOf(clock, 1));
        QVERIFY(clock.setProperty(name, 1.5F));
        QCOMPARE(clock.property(name).toFloat(), 1.5F);
        QVERIFY(rendered(*faceOf(clock, 0)) != hours);
        QVERIFY(rendered(*faceOf(clock, 1)) != minutes);
    }
}

void tst_Clock::anglesThatAreNoNumbers()
{
    KelClock clock;
    clock.setProperty("h__anim0", 1.0F);
    clock.setProperty("h__anim1", 2.0F);
    for (const float angle : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        clock.setProperty("h__anim0", angle);
        clock.setProperty("h__anim1", angle);
    }
    QCOMPARE(clock.h__anim0(), 1.0F);
    QCOMPARE(clock.h__anim1(), 2.0F);
}

void tst_Clock::handsEndAtTheirTargets()
{
    ClockBench bench(QSize(64, 64));
    bench.clock.setTime(QTime(15, 45));
    QTRY_COMPARE(bench.clock.h__anim0(), angleOf(45, 60));
    QTRY_COMPARE(bench.clock.h__anim1(), angleOf(3, 12));
    QCOMPARE(animationOf(bench.clock, "h__anim0")->state(), QAbstractAnimation::Stopped);
}

void tst_Clock::deletedByItsListener()
{
    for (const bool byFinger : {true, false}) {
        const QPointer<KelClock> clock(new KelClock());
        clock->resize(300, 150);
        clock->layout()->activate();
        QWidget *face = faceOf(*clock, 1);
        rendered(*face);
        connect(clock, &KelClock::timeChanged, this, [clock] { delete clock; });
        if (byFinger)
            QTest::mousePress(face, Qt::LeftButton, Qt::NoModifier, QPoint(140, 75));
        else
            clock->setTime(QTime(1, 2));
        QVERIFY(clock.isNull());
    }
}

KEL_TEST_MAIN(tst_Clock)
#include "tst_clock.moc"
