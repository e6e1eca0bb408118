#include "clockbench.h"
#include "testmain.h"

#include <QPointer>
#include <QSignalSpy>

#include <functional>

/// The clock's time as the numbers that wires carry.
class tst_ClockNumbers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void told_data();
    void told();
    void toldInOrder();
    void toldByThePointer();
    void listenerSetsAnotherTime();
    void deletedByItsListener_data();
    void deletedByItsListener();
    void taken_data();
    void taken();
    void throughWires();
};

void tst_ClockNumbers::told_data()
{
    QTest::addColumn<QTime>("before");
    QTest::addColumn<QTime>("given");
    QTest::addColumn<QVector<int>>("numbers");

    QTest::newRow("both are new") << QTime(1, 2) << QTime(14, 30) << QVector<int>{14, 30};
    QTest::newRow("the hour stays") << QTime(14, 2) << QTime(14, 30) << QVector<int>{30};
    QTest::newRow("the minute stays") << QTime(1, 30) << QTime(14, 30) << QVector<int>{14};
    QTest::newRow("midnight") << QTime(1, 2) << QTime(0, 0) << QVector<int>{0, 0};
    QTest::newRow("the same time") << QTime(14, 30) << QTime(14, 30) << QVector<int>{};
}

void tst_ClockNumbers::told()
{
    QFETCH(QTime, before);
    QFETCH(QTime, given);
    QFETCH(QVector<int>, numbers);
    KelClock clock;
    clock.setTime(before);
    QVector<int> told;
    connect(&clock, &KelClock::hourChanged, this, [&told](int hour) { told << hour; });
    connect(&clock, &KelClock::minuteChanged, this, [&told](int minute) { told << minute; });
    clock.setTime(given);
    QCOMPARE(told, numbers);
}

// A wire of the time itself may send what the wires of its numbers have set.
void tst_ClockNumbers::toldInOrder()
{
    KelClock clock;
    QStringList told;
    connect(&clock, &KelClock::timeChanged, this, [&told] { told << "time"; });
    connect(&clock, &KelClock::minuteChanged, this, [&told] { told << "minute"; });
    connect(&clock, &KelClock::hourChanged, this, [&told] { told << "hour"; });
    clock.setTime(QTime(14, 30));
    QCOMPARE(told, (QStringList{"hour", "minute", "time"}));
}

void tst_ClockNumbers::toldByThePointer()
{
    ClockBench bench;
    bench.clock.setTime(QTime(9, 10));
    QSignalSpy hours(&bench.clock, &KelClock::hourChanged);
    QSignalSpy minutes(&bench.clock, &KelClock::minuteChanged);
    ClockBench::tap(bench.minutes, pointOn(*bench.minutes, 180.0, 100.0));
    QCOMPARE(hours.size(), 0);
    QCOMPARE(minutes.size(), 1);
    QCOMPARE(minutes.at(0).at(0).toInt(), 30);
}

// The last of each signal tells the time that the clock ends with.
void tst_ClockNumbers::listenerSetsAnotherTime()
{
    KelClock clock;
    QSignalSpy minutes(&clock, &KelClock::minuteChanged);
    QSignalSpy times(&clock, &KelClock::timeChanged);
    connect(&clock, &KelClock::hourChanged, &clock, [&clock] { clock.setTime(QTime(20, 15)); });
    clock.setTime(QTime(14, 30));
    QCOMPARE(clock.time(), QTime(20, 15));
    QCOMPARE(minutes.last().at(0).toInt(), 15);
    QCOMPARE(times.last().at(0).toTime(), QTime(20, 15));
}

void tst_ClockNumbers::deletedByItsListener_data()
{
    QTest::addColumn<bool>("isHour");
    QTest::newRow("of the hour") << true;
    QTest::newRow("of the minute") << false;
}

void tst_ClockNumbers::deletedByItsListener()
{
    QFETCH(bool, isHour);
    const QPointer<KelClock> clock(new KelClock());
    connect(clock, isHour ? &KelClock::hourChanged : &KelClock::minuteChanged, this, [clock] { delete clock; });
    clock->setTime(QTime(14, 30));
    QVERIFY(clock.isNull());
}

void tst_ClockNumbers::taken_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<int>("number");
    QTest::addColumn<QTime>("after");
    QTest::addColumn<int>("signalCount");

    const QTime before(9, 10);
    QTest::newRow("an hour") << QByteArray("setHour") << 23 << QTime(23, 10) << 1;
    QTest::newRow("hour 0") << QByteArray("setHour") << 0 << QTime(0, 10) << 1;
    QTest::newRow("the same hour") << QByteArray("setHour") << 9 << before << 0;
    QTest::newRow("no hour") << QByteArray("setHour") << 24 << before << 0;
    QTest::newRow("negative hour") << QByteArray("setHour") << -1 << before << 0;
    QTest::newRow("a minute") << QByteArray("setMinute") << 59 << QTime(9, 59) << 1;
    QTest::newRow("minute 0") << QByteArray("setMinute") << 0 << QTime(9, 0) << 1;
    QTest::newRow("the same minute") << QByteArray("setMinute") << 10 << before << 0;
    QTest::newRow("no minute") << QByteArray("setMinute") << 60 << before << 0;
    QTest::newRow("negative minute") << QByteArray("setMinute") << -1 << before << 0;
}

void tst_ClockNumbers::taken()
{
    QFETCH(QByteArray, slot);
    QFETCH(int, number);
    QFETCH(QTime, after);
    QFETCH(int, signalCount);
    KelClock clock;
    clock.setReadOnly(true); // For the pointer alone.
    clock.setTime(QTime(9, 10));
    QSignalSpy spy(&clock, &KelClock::timeChanged);
    QVERIFY(QMetaObject::invokeMethod(&clock, slot.constData(), Q_ARG(int, number)));
    QCOMPARE(clock.time(), after);
    QCOMPARE(spy.size(), signalCount);
}

// Two clocks that follow each other by numbers, as forms wire them, come to rest.
void tst_ClockNumbers::throughWires()
{
    KelClock one;
    KelClock other;
    for (const auto &ends : {std::make_pair(&one, &other), std::make_pair(&other, &one)}) {
        QVERIFY(connect(ends.first, SIGNAL(hourChanged(int)), ends.second, SLOT(setHour(int))));
        QVERIFY(connect(ends.first, SIGNAL(minuteChanged(int)), ends.second, SLOT(setMinute(int))));
    }
    one.setTime(QTime(14, 30));
    QCOMPARE(other.time(), QTime(14, 30));
    QCOMPARE(one.time(), QTime(14, 30));
}

KEL_TEST_MAIN(tst_ClockNumbers)
#include "tst_clocknumbers.moc"
