// A KelClock to which everything happens at the worst moment.
#include "clockbench.h"
#include "testmain.h"
#include "widgetschedule.h"

class tst_ClockSchedule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anythingAtAnyFrame_data();
    void anythingAtAnyFrame();
};

namespace
{

constexpr int Schedules = 200;
constexpr int Steps = 60;

float angleOf(int part, int whole)
{
    return static_cast<float>(2.0 * static_cast<double>(3.1415927F) * part / whole);
}

/// A clock that is not told anything but what it must show.
void imitate(const KelClock &clock, KelClock &fresh, QTime time)
{
    fresh.setFont(clock.font());
    fresh.setPalette(clock.palette());
    fresh.resize(clock.size());
    fresh.layout()->activate();
    clock.layout()->activate();
    fresh.setTime(time);
    finishAnimations(fresh);
}

} // namespace

void tst_ClockSchedule::anythingAtAnyFrame_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 i = 1; i <= Schedules; ++i)
        QTest::addRow("schedule %u", i) << i;
}

void tst_ClockSchedule::anythingAtAnyFrame()
{
    QFETCH(quint32, seed);
    WidgetSchedule schedule(seed, [](QWidget *parent) { return new KelClock(parent); });
    auto &clock = static_cast<KelClock &>(*schedule.widget());
    QTime announced(0, 0);
    connect(&clock, &KelClock::timeChanged, &clock, [&announced](QTime time) { announced = time; });
    for (const char *hand : {"h__anim0", "h__anim1"})
        schedule.leaveAlone(hand); // a hand that stands right is not moved
    schedule.setDeletes(false);
    schedule.setCheck([&clock, &announced] {
        return QByteArray(clock.time().isValid() && clock.time() == announced ? "" : "a time that nobody heard of");
    });
    schedule.run(Steps);
    schedule.comeToRest();
    QVERIFY2(schedule.trouble().isEmpty(), schedule.trouble().constData());

    // Whatever happened: the clock ends as one to which only the last time ever happened.
    const QTime last(7, clock.time().minute() == 40 ? 41 : 40);
    schedule.panel().setEnabled(true);
    schedule.panel().show();
    clock.setParent(&schedule.panel());
    clock.setTime(last);
    clock.resize(300, 150);
    clock.show();
    clock.enable();
    finishAnimations(clock);
    QCOMPARE(clock.time(), last);
    QCOMPARE(clock.h__anim0(), angleOf(last.minute(), 60));
    QCOMPARE(clock.h__anim1(), angleOf(7, 12));

    KelClock fresh;
    imitate(clock, fresh, last);
    for (int face = 0; face < 2; ++face)
        QCOMPARE(rendered(*faceOf(clock, face)), rendered(*faceOf(fresh, face)));
}

KEL_TEST_MAIN(tst_ClockSchedule)
#include "tst_clockschedule.moc"
