#include "fakepins.h"
#include "stderrcapture.h"
#include "testmain.h"

class tst_Gpio : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callsReachTheBackend();
    void failureIsReturnedAndToldOnce();
    void exceptionIsAFailure();
    void missingChipIsNamed();
};

void tst_Gpio::callsReachTheBackend()
{
    FakePins pins;

    QVERIFY(PIGPIO::initPin(7, PIGPIO::Out));
    QVERIFY(PIGPIO::pinSet(7, true));
    QVERIFY(PIGPIO::initPin(8, PIGPIO::In));

    const auto records = pins.records();
    QCOMPARE(records.size(), size_t(3));
    QVERIFY(records[0].call == FakePins::Call::Init && records[0].pin == 7 && records[0].direction == PIGPIO::Out);
    QVERIFY(records[1].call == FakePins::Call::Set && records[1].pin == 7 && records[1].isHigh);
    QVERIFY(records[2].call == FakePins::Call::Init && records[2].pin == 8 && records[2].direction == PIGPIO::In);
}

void tst_Gpio::failureIsReturnedAndToldOnce()
{
    FakePins pins;
    const StderrCapture console;
    pins.setMood(FakePins::Mood::Fails);

    QVERIFY(!PIGPIO::pinSet(7, true));
    QVERIFY(!PIGPIO::pinSet(7, false));
    QCOMPARE(console.lines().size(), 1);
    QVERIFY(!PIGPIO::initPin(7, PIGPIO::Out));
    QCOMPARE(console.lines().size(), 2);

    pins.setMood(FakePins::Mood::Works);
    QVERIFY(PIGPIO::pinSet(7, true));
    pins.setMood(FakePins::Mood::Fails);
    QVERIFY(!PIGPIO::pinSet(7, true));
    QCOMPARE(console.lines().size(), 3);
}

void tst_Gpio::exceptionIsAFailure()
{
    FakePins pins;
    const StderrCapture console;
    pins.setMood(FakePins::Mood::Throws);

    QVERIFY(!PIGPIO::initPin(7, PIGPIO::Out));
    QVERIFY(!PIGPIO::pinSet(7, true));
    QCOMPARE(pins.records().size(), size_t(2));
}

void tst_Gpio::missingChipIsNamed()
{
    qputenv("KEL_GPIO_CHIP", "gpiochip-that-is-not-there");
    PIGPIO::setBackend(nullptr);
    const StderrCapture console;

    QVERIFY(!PIGPIO::initPin(7, PIGPIO::Out));
    QVERIFY(!PIGPIO::pinSet(7, true));

    QVERIFY(console.lines().join('\n').contains(QStringLiteral("gpiochip-that-is-not-there")));
    qunsetenv("KEL_GPIO_CHIP");
    PIGPIO::setBackend(nullptr);
}

KEL_TEST_MAIN(tst_Gpio)
#include "tst_gpio.moc"
