#include "fakepins.h"
#include "stderrcapture.h"
#include "testmain.h"

#include <gserial.h>
#include <piqt.h>

#include <memory>

namespace
{

QString text(const PIGSerial &serial)
{
    return PI2QString(serial.constructFullPathDevice());
}

} // namespace

class tst_GSerialPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAKindOfSerialPort();
    void defaults();
    void textRoundTrip_data();
    void textRoundTrip();
    void partsOfTheTextChangeOnlyThemselves_data();
    void partsOfTheTextChangeOnlyThemselves();
    void speedIsWrittenFromTheInputSide();
    void colonInPathCannotBeWritten();
    void numbersThatAreNoneAreMalformed();
    void pinIsSetUpAfterAllFields_data();
    void pinIsSetUpAfterAllFields();
};

void tst_GSerialPath::isAKindOfSerialPort()
{
    const PIGSerial serial;
    QCOMPARE(PI2QString(serial.className()), QStringLiteral("PIGSerial"));
    QCOMPARE(PI2QString(serial.parentClassName()), QStringLiteral("PISerial"));
    QCOMPARE(PI2QString(serial.fullPathPrefix()), QStringLiteral("gser"));
    const std::unique_ptr<PIIODevice> copy(serial.copy());
    QVERIFY(dynamic_cast<PIGSerial *>(copy.get()) != nullptr);
    QVERIFY(copy.get() != &serial);
}

void tst_GSerialPath::defaults()
{
    const PIGSerial serial;
    QCOMPARE(serial.pin(), 0);
    QCOMPARE(serial.readLevel(), 0);
    QCOMPARE(serial.sendLevel(), 0);
}

void tst_GSerialPath::textRoundTrip_data()
{
    QTest::addColumn<QString>("given");

    for (const char *row : {"18:0:1:/dev/ttyS0:115200:8:N:1", "0:0:0:/dev/ttyS0:9600:7:E:2", "-1:1:0:/dev/x:300:5:O:1",
                            "4:-1:7:/dev/x:300:5:O:1"})
        QTest::newRow(row) << QString(row);
}

void tst_GSerialPath::textRoundTrip()
{
    QFETCH(QString, given);
    FakePins pins;
    PIGSerial serial;
    serial.configureFromFullPathDevice(Q2PIString(given));
    QCOMPARE(text(serial), given);
    QCOMPARE(PI2QString(serial.constructFullPath()), QStringLiteral("gser://") + given);
}

void tst_GSerialPath::partsOfTheTextChangeOnlyThemselves_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("expected");

    QTest::newRow("nothing") << ""
                             << "5:2:3:/dev/x:19200:7:O:2";
    QTest::newRow("pin only") << "9"
                              << "9:2:3:/dev/x:19200:7:O:2";
    QTest::newRow("pin and levels") << "9:0:1"
                                    << "9:0:1:/dev/x:19200:7:O:2";
    QTest::newRow("empty fields keep") << "::::9600:::"
                                       << "5:2:3:/dev/x:9600:7:O:2";
    QTest::newRow("all but stop bits") << "9:0:1:/dev/y:300:8:N"
                                       << "9:0:1:/dev/y:300:8:N:2";
    QTest::newRow("numbers in any base") << "0x10:0b1:010:/dev/y:0x2580:0b111:n:0b10"
                                         << "16:1:8:/dev/y:9600:7:N:2";
    QTest::newRow("small e is even") << "::::::e"
                                     << "5:2:3:/dev/x:19200:7:E:2";
    QTest::newRow("big O is odd") << "::::::O"
                                  << "5:2:3:/dev/x:19200:7:O:2";
    QTest::newRow("another letter is even") << "::::::q"
                                            << "5:2:3:/dev/x:19200:7:E:2";
    QTest::newRow("N clears") << "::::::N"
                              << "5:2:3:/dev/x:19200:7:N:2";
    QTest::newRow("one stop bit clears") << ":::::::1"
                                         << "5:2:3:/dev/x:19200:7:O:1";
    QTest::newRow("22 is not 2") << ":::::::22"
                                 << "5:2:3:/dev/x:19200:7:O:1";
    QTest::newRow("more than eight fields") << "9:0:1:/dev/y:300:8:N:1:7:8"
                                            << "9:0:1:/dev/y:300:8:N:1";
    QTest::newRow("refused speed") << "::::0:8"
                                   << "5:2:3:/dev/x:19200:8:O:2";
}

void tst_GSerialPath::partsOfTheTextChangeOnlyThemselves()
{
    QFETCH(QString, given);
    QFETCH(QString, expected);
    FakePins pins;
    const StderrCapture console;
    PIGSerial serial;
    serial.configureFromFullPathDevice("5:2:3:/dev/x:19200:7:O:2");

    serial.configureFromFullPathDevice(Q2PIString(given));

    QCOMPARE(text(serial), expected);
}

void tst_GSerialPath::speedIsWrittenFromTheInputSide()
{
    PIGSerial serial;
    serial.setPath("/dev/x");
    serial.setProperty("inSpeed", 1200);
    serial.setProperty("outSpeed", 9600);
    QCOMPARE(text(serial), QStringLiteral("0:0:0:/dev/x:1200:8:N:1"));
    serial.configureFromFullPathDevice("::::300");
    QCOMPARE(serial.property("inSpeed").toInt(), 300);
    QCOMPARE(serial.property("outSpeed").toInt(), 300);
}

void tst_GSerialPath::colonInPathCannotBeWritten()
{
    PIGSerial serial;
    serial.setPath("/dev/0:1");
    const StderrCapture console;
    QVERIFY(text(serial).isEmpty());
    QCOMPARE(console.lines().size(), 1);
}

void tst_GSerialPath::numbersThatAreNoneAreMalformed()
{
    const PIGSerial serial;
    QVERIFY(serial.fullPathDeviceError("18:0:1:/dev/x:9600:8:N:1").isEmpty());
    QVERIFY(serial.fullPathDeviceError("18:0:1").isEmpty());
    QVERIFY(serial.fullPathDeviceError("-1:-1:0x1::::").isEmpty());
    QVERIFY(!serial.fullPathDeviceError("").isEmpty());
    QVERIFY(!serial.fullPathDeviceError("pin:0:1:/dev/x").isEmpty());
    QVERIFY(!serial.fullPathDeviceError("18:low:1:/dev/x").isEmpty());
    QVERIFY(!serial.fullPathDeviceError("18:0:high:/dev/x").isEmpty());
    QVERIFY(!serial.fullPathDeviceError("18:0:1:/dev/x:fast").isEmpty());
}

void tst_GSerialPath::pinIsSetUpAfterAllFields_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<bool>("isHigh");

    QTest::newRow("low") << "18:0:1:/dev/x:9600:8:N:1" << false;
    QTest::newRow("high") << "18:1:0:/dev/x:9600:8:N:1" << true;
    QTest::newRow("minus one is high") << "18:-1:0" << true;
    QTest::newRow("one field") << "18" << false;
}

void tst_GSerialPath::pinIsSetUpAfterAllFields()
{
    QFETCH(QString, given);
    QFETCH(bool, isHigh);
    FakePins pins;
    PIGSerial serial;

    serial.configureFromFullPathDevice(Q2PIString(given));

    const auto records = pins.records();
    QCOMPARE(records.size(), size_t(2));
    QVERIFY(records[0].call == FakePins::Call::Init && records[0].pin == 18 && records[0].direction == PIGPIO::Out);
    QVERIFY(records[1].call == FakePins::Call::Set && records[1].pin == 18);
    QCOMPARE(records[1].isHigh, isHigh);
}

KEL_TEST_MAIN(tst_GSerialPath)
#include "tst_gserialpath.moc"
