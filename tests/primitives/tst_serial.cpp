#include "inbox.h"
#include "ptypair.h"
#include "stderrcapture.h"
#include "testmain.h"

#include <piserial.h>

#include <atomic>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace
{

/// More than a pseudo terminal and the driver buffer on the way.
constexpr int LargeSize = 300000;

QByteArray pattern(int size)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}

int write(PISerial &serial, const QByteArray &bytes)
{
    return serial.write(bytes.constData(), int(bytes.size()));
}

QString text(const PISerial &serial)
{
    return PI2QString(serial.constructFullPathDevice());
}

double processorSeconds()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

termios settingsOf(const PtyPair &pty)
{
    termios settings{};
    ::tcgetattr(pty.master(), &settings);
    return settings;
}

} // namespace

class tst_Serial : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasUsualDefaults();
    void textHasFiveFields_data();
    void textHasFiveFields();
    void textIsRead_data();
    void textIsRead();
    void colonInPathCannotBeWritten();
    void speedNotAboveZeroIsRefused();
    void carriesEveryByteBothWays();
    void opensRawAtItsSpeed();
    void readOnlyPortHearsAndSaysNothing();
    void unusualSpeedIsTaken();
    void speedChangesOfAnOpenPort();
    void refusedParityIsToldAndOpeningGoesOn();
    void missingPortDoesNotOpen();
    void fileIsNoPort();
    void emptyPathDoesNotOpen();
    void secondUserIsTold();
    void lockOfAnotherProgramIsRespected();
    void portIsFreeAfterClose();
    void secondOpenIsHarmless();
    void closedPortTakesNothing();
    void badBlockIsAnError();
    void largeBlockIsWholeForASlowReader();
    void blocksOfThreadsDoNotMix();
    void vanishedPortIsToldOnceAndReturns();
    void missingPortCostsNoProcessorTime();
    void writeFailsWhenThePortVanishes();
    void returnsWhoeverFindsTheLossFirst();
    void closeIsQuickWhenNobodyReads();
    void closeWhileAwayIsQuick();
    void closeInsideReceiver();
    void destroyedWhileOpen();
    void destroyedWhileWriting();
};

void tst_Serial::hasUsualDefaults()
{
    const PISerial serial;
    QCOMPARE(PI2QString(serial.className()), QStringLiteral("PISerial"));
    QCOMPARE(PI2QString(serial.fullPathPrefix()), QStringLiteral("ser"));
    QCOMPARE(serial.property("inSpeed").toInt(), 115200);
    QCOMPARE(serial.property("outSpeed").toInt(), 115200);
    QCOMPARE(serial.property("dataBitsCount").toInt(), 8);
    QVERIFY(serial.property("parameters").isValid());
    QCOMPARE(serial.property("parameters").toInt(), 0);
}

void tst_Serial::textHasFiveFields_data()
{
    QTest::addColumn<int>("parameters");
    QTest::addColumn<QString>("expected");

    QTest::newRow("no flags") << 0 << "/dev/x:9600:7:N:1";
    QTest::newRow("control is even") << 1 << "/dev/x:9600:7:E:1";
    QTest::newRow("odd without control is none") << 2 << "/dev/x:9600:7:N:1";
    QTest::newRow("control and odd") << 3 << "/dev/x:9600:7:O:1";
    QTest::newRow("two stop bits") << 4 << "/dev/x:9600:7:N:2";
    QTest::newRow("all flags") << 7 << "/dev/x:9600:7:O:2";
}

void tst_Serial::textHasFiveFields()
{
    QFETCH(int, parameters);
    QFETCH(QString, expected);
    PISerial serial;
    serial.setPath("/dev/x");
    serial.setProperty("inSpeed", 9600);
    serial.setProperty("outSpeed", 1200);
    serial.setProperty("dataBitsCount", 7);
    serial.setProperty("parameters", parameters);

    QCOMPARE(text(serial), expected);
    QCOMPARE(PI2QString(serial.constructFullPath()), QStringLiteral("ser://") + expected);
}

void tst_Serial::textIsRead_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("expected");

    QTest::newRow("all fields") << "/dev/y:9600:7:E:2"
                                << "/dev/y:9600:7:E:2";
    QTest::newRow("path only") << "/dev/y"
                               << "/dev/y:19200:5:O:2";
    QTest::newRow("empty fields keep") << ":9600:::"
                                       << "/dev/x:9600:5:O:2";
    QTest::newRow("N clears both flags") << ":::N:"
                                         << "/dev/x:19200:5:N:2";
    QTest::newRow("E clears odd") << ":::E:"
                                  << "/dev/x:19200:5:E:2";
    QTest::newRow("lower case") << ":::n"
                                << "/dev/x:19200:5:N:2";
    QTest::newRow("another letter sets control") << ":::M:"
                                                 << "/dev/x:19200:5:E:2";
    QTest::newRow("one stop bit") << "::::1"
                                  << "/dev/x:19200:5:O:1";
    QTest::newRow("three stop bits are one") << "::::3"
                                             << "/dev/x:19200:5:O:1";
    QTest::newRow("stop bits in any base") << "::::0b10"
                                           << "/dev/x:19200:5:O:2";
    QTest::newRow("speed in any base") << ":0x2580"
                                       << "/dev/x:9600:5:O:2";
    QTest::newRow("more fields") << "/dev/y:9600:7:E:2:9:9"
                                 << "/dev/y:9600:7:E:2";
}

void tst_Serial::textIsRead()
{
    QFETCH(QString, given);
    QFETCH(QString, expected);
    PISerial serial;
    serial.configureFromFullPathDevice("/dev/x:19200:5:O:2");

    serial.configureFromFullPathDevice(Q2PIString(given));

    QCOMPARE(text(serial), expected);
}

void tst_Serial::colonInPathCannotBeWritten()
{
    PISerial serial;
    serial.setPath("/dev/by-path/0:1");
    const StderrCapture console;

    QVERIFY(serial.constructFullPathDevice().isEmpty());
    QVERIFY(serial.constructFullPath().isEmpty());
    QCOMPARE(console.lines().size(), 2);
    QVERIFY(console.lines().constFirst().contains("/dev/by-path/0:1"));
}

void tst_Serial::speedNotAboveZeroIsRefused()
{
    PISerial serial;
    const StderrCapture console;

    QVERIFY(!serial.setSpeed(0));
    QVERIFY(!serial.setSpeed(-9600));

    QCOMPARE(console.lines().size(), 2);
    QCOMPARE(serial.property("inSpeed").toInt(), 115200);
    QCOMPARE(serial.property("outSpeed").toInt(), 115200);
    QVERIFY(serial.setSpeed(300));
    QCOMPARE(serial.property("inSpeed").toInt(), 300);
    QCOMPARE(serial.property("outSpeed").toInt(), 300);
}

void tst_Serial::carriesEveryByteBothWays()
{
    PtyPair pty;
    PISerial serial;
    Inbox inbox(serial);
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());
    QVERIFY(serial.isOpened());

    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    QCOMPARE(write(serial, all), 256);
    QCOMPARE(pty.read(256), all);
    QVERIFY(pty.write(all));
    QTRY_COMPARE(inbox.bytes(), all);

    QVERIFY(serial.close());
    QVERIFY(!serial.isOpened());
}

void tst_Serial::opensRawAtItsSpeed()
{
    PtyPair pty;
    PISerial serial;
    serial.setPath(Q2PIString(pty.path()));
    serial.setSpeed(19200);
    QVERIFY(serial.open());

    const termios settings = settingsOf(pty);
    QCOMPARE(::cfgetispeed(&settings), speed_t(B19200));
    QCOMPARE(::cfgetospeed(&settings), speed_t(B19200));
    QVERIFY(!(settings.c_lflag & (ECHO | ICANON | ISIG)));
    QVERIFY(!(settings.c_oflag & OPOST));
}

void tst_Serial::readOnlyPortHearsAndSaysNothing()
{
    PtyPair pty;
    PISerial serial;
    Inbox inbox(serial);
    serial.setPath(Q2PIString(pty.path()));
    serial.setProperty("readOnly", true);
    QVERIFY(serial.open());
    QCOMPARE(write(serial, "x"), -1);
    QVERIFY(pty.write("abc"));
    QTRY_COMPARE(inbox.bytes(), QByteArray("abc"));
    QCOMPARE(pty.readAll(), QByteArray());

    serial.close();
    serial.setProperty("readOnly", false);
    QVERIFY(serial.open());
    QCOMPARE(write(serial, "x"), 1);
    QCOMPARE(pty.read(1), QByteArray("x"));
}

void tst_Serial::unusualSpeedIsTaken()
{
    PtyPair pty;
    PISerial serial;
    const StderrCapture console;
    serial.setPath(Q2PIString(pty.path()));
    serial.setSpeed(12345);
    QVERIFY(serial.open());
    QCOMPARE(console.lines(), QStringList());
    QCOMPARE(write(serial, "x"), 1);
    QCOMPARE(pty.read(1), QByteArray("x"));
}

void tst_Serial::speedChangesOfAnOpenPort()
{
    PtyPair pty;
    PISerial serial;
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());
    QVERIFY(serial.setSpeed(4800));
    const termios first = settingsOf(pty);
    QCOMPARE(::cfgetospeed(&first), speed_t(B4800));

    serial.setProperty("inSpeed", 2400);
    serial.setProperty("outSpeed", 2400);
    QVERIFY(serial.applySettings());
    const termios second = settingsOf(pty);
    QCOMPARE(::cfgetospeed(&second), speed_t(B2400));
}

void tst_Serial::refusedParityIsToldAndOpeningGoesOn()
{
    PtyPair pty;
    PISerial serial;
    const StderrCapture console;
    serial.setPath(Q2PIString(pty.path()));
    serial.setProperty("parameters", int(PISerial::ParityControl));

    QVERIFY(serial.open());

    QCOMPARE(console.lines().size(), 1);
    QVERIFY(console.lines().constFirst().contains("parity"));
    QCOMPARE(write(serial, "x"), 1);
    QCOMPARE(pty.read(1), QByteArray("x"));
}

void tst_Serial::missingPortDoesNotOpen()
{
    PISerial serial;
    const StderrCapture console;
    serial.setPath("/dev/tty-that-is-not-there");

    QVERIFY(!serial.open());

    QVERIFY(!serial.isOpened());
    QCOMPARE(console.lines().size(), 1);
    QVERIFY(console.lines().constFirst().contains("/dev/tty-that-is-not-there"));
    QCOMPARE(write(serial, "x"), -1);
}

void tst_Serial::fileIsNoPort()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    PISerial serial;
    const StderrCapture console;
    serial.setPath(Q2PIString(file.fileName()));
    QVERIFY(!serial.open());
    QVERIFY(console.lines().constFirst().contains("no serial port"));
}

void tst_Serial::emptyPathDoesNotOpen()
{
    PISerial serial;
    const StderrCapture console;
    QVERIFY(!serial.open());
    QCOMPARE(console.lines().size(), 1);
}

void tst_Serial::secondUserIsTold()
{
    PtyPair pty;
    PISerial first;
    PISerial second;
    const StderrCapture console;
    first.setPath(Q2PIString(pty.path()));
    second.setPath(Q2PIString(pty.path()));
    QVERIFY(first.open());

    QVERIFY(!second.open());

    QCOMPARE(console.lines().size(), 1);
    QVERIFY(console.lines().constFirst().contains("used by another program"));
    QCOMPARE(write(first, "x"), 1);
    QCOMPARE(pty.read(1), QByteArray("x"));
}

void tst_Serial::lockOfAnotherProgramIsRespected()
{
    PtyPair pty;
    const int other = ::open(QFile::encodeName(pty.path()).constData(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    QVERIFY(other >= 0);
    QCOMPARE(::flock(other, LOCK_EX | LOCK_NB), 0);
    PISerial serial;
    serial.setPath(Q2PIString(pty.path()));
    {
        const StderrCapture console;
        QVERIFY(!serial.open());
        QVERIFY(console.lines().constFirst().contains("used by another program"));
    }
    ::flock(other, LOCK_UN);
    QVERIFY(serial.open());
    // The exclusive mode, which other programs see, is on while the port is open and goes with it.
    int isExclusive = 0;
    QCOMPARE(::ioctl(other, TIOCGEXCL, &isExclusive), 0);
    QVERIFY(isExclusive != 0);
    QVERIFY(serial.close());
    QCOMPARE(::ioctl(other, TIOCGEXCL, &isExclusive), 0);
    QCOMPARE(isExclusive, 0);
    ::close(other);
}

void tst_Serial::portIsFreeAfterClose()
{
    PtyPair pty;
    PISerial first;
    PISerial second;
    first.setPath(Q2PIString(pty.path()));
    second.setPath(Q2PIString(pty.path()));
    for (int round = 0; round < 3; ++round) {
        QVERIFY(first.open());
        QVERIFY(first.close());
        QVERIFY(second.open());
        QVERIFY(second.close());
    }
}

void tst_Serial::secondOpenIsHarmless()
{
    PtyPair pty;
    PISerial serial;
    Inbox inbox(serial);
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());
    QVERIFY(serial.open());
    QVERIFY(serial.openDevice());
    QCOMPARE(write(serial, "once"), 4);
    QCOMPARE(pty.readAll(), QByteArray("once"));
    QVERIFY(pty.write("back"));
    QTRY_COMPARE(inbox.bytes(), QByteArray("back"));
}

void tst_Serial::closedPortTakesNothing()
{
    PtyPair pty;
    PISerial serial;
    serial.setPath(Q2PIString(pty.path()));
    QCOMPARE(write(serial, "x"), -1);
    QVERIFY(serial.open());
    QVERIFY(serial.close());
    QVERIFY(serial.close());
    QCOMPARE(write(serial, "x"), -1);
    QCOMPARE(pty.readAll(), QByteArray());
}

void tst_Serial::badBlockIsAnError()
{
    PtyPair pty;
    PISerial serial;
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());
    QCOMPARE(serial.write(nullptr, 3), -1);
    QCOMPARE(serial.write("abc", -1), -1);
    QCOMPARE(serial.write(nullptr, 0), 0);
    QCOMPARE(pty.readAll(), QByteArray());
}

void tst_Serial::largeBlockIsWholeForASlowReader()
{
    PtyPair pty;
    PISerial serial;
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());
    const QByteArray block = pattern(LargeSize);
    std::atomic<int> result{0};
    std::thread writer([&] { result = write(serial, block); });

    // Nobody reads until the line is full: then a write takes a part, then nothing.
    QTest::qWait(100);
    QCOMPARE(result.load(), 0);
    const QByteArray got = pty.read(LargeSize, 60000);
    writer.join();

    QCOMPARE(result.load(), LargeSize);
    QVERIFY(got == block);
}

void tst_Serial::blocksOfThreadsDoNotMix()
{
    PtyPair pty;
    PISerial serial;
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());
    constexpr int Size = 40000;
    std::thread a([&] { write(serial, QByteArray(Size, 'a')); });
    std::thread b([&] { write(serial, QByteArray(Size, 'b')); });
    const QByteArray got = pty.read(2 * Size, 60000);
    a.join();
    b.join();

    const QByteArray as(Size, 'a');
    const QByteArray bs(Size, 'b');
    QVERIFY(got == as + bs || got == bs + as);
}

void tst_Serial::vanishedPortIsToldOnceAndReturns()
{
    PtyPair pty;
    PISerial serial;
    Inbox inbox(serial);
    const StderrCapture console;
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());

    for (int round = 1; round <= 2; ++round) {
        QElapsedTimer noticed;
        noticed.start();
        pty.vanish();
        QTRY_VERIFY_WITH_TIMEOUT(!serial.isOpened(), 10000);
        QTRY_COMPARE(console.lines().size(), round);
        QVERIFY(console.lines().constLast().contains(pty.path()));
        QCOMPARE(write(serial, "lost"), -1);
        QVERIFY(serial.open());
        QTest::qWait(500);
        QCOMPARE(console.lines().size(), round);

        pty.comeBack();
        QTRY_VERIFY_WITH_TIMEOUT(serial.isOpened(), 10000);
        QCOMPARE(write(serial, "again"), 5);
        QCOMPARE(pty.read(5), QByteArray("again"));
        QVERIFY(pty.write(QByteArray::number(round)));
        QTRY_COMPARE(int(inbox.bytes().size()), round);
    }
}

void tst_Serial::missingPortCostsNoProcessorTime()
{
    PtyPair pty;
    PISerial serial;
    const StderrCapture console;
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());
    pty.vanish();
    QTRY_VERIFY(!serial.isOpened());

    const double before = processorSeconds();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    // A spinning thread would use the whole second.
    QVERIFY(processorSeconds() - before < 0.3);
}

void tst_Serial::writeFailsWhenThePortVanishes()
{
    PtyPair pty;
    PISerial serial;
    const StderrCapture console;
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());
    std::atomic<int> result{0};
    std::thread writer([&] { result = write(serial, pattern(LargeSize)); });
    QTest::qWait(50);
    pty.vanish();
    writer.join();
    QCOMPARE(result.load(), -1);
    QTRY_COMPARE(console.lines().size(), 1);
}

void tst_Serial::returnsWhoeverFindsTheLossFirst()
{
    PtyPair pty;
    PISerial serial;
    const StderrCapture console;
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());
    std::atomic<bool> isEnough{false};
    std::thread writer([&] {
        while (!isEnough) {
            if (serial.write("x", 1) < 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    bool isBack = true;
    for (int round = 0; round < 12 && isBack; ++round) {
        pty.vanish();
        isBack = QTest::qWaitFor([&] { return !serial.isOpened(); });
        pty.comeBack();
        isBack = isBack && QTest::qWaitFor([&] { return serial.isOpened(); });
    }
    isEnough = true;
    serial.close();
    writer.join();
    QVERIFY(isBack);
    QCOMPARE(console.lines().size(), 12);
}

void tst_Serial::closeIsQuickWhenNobodyReads()
{
    PtyPair pty;
    PISerial serial;
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());
    std::atomic<int> result{0};
    std::thread writer([&] { result = write(serial, pattern(LargeSize)); });
    QTest::qWait(100);

    QElapsedTimer timer;
    timer.start();
    QVERIFY(serial.close());
    const qint64 elapsed = timer.elapsed();
    writer.join();

    QCOMPARE(result.load(), -1);
    // 200 ms are promised; the rest is for a machine with other things to do.
    QVERIFY2(elapsed < 1000, qPrintable(QString::number(elapsed)));
}

void tst_Serial::closeWhileAwayIsQuick()
{
    PtyPair pty;
    PISerial serial;
    const StderrCapture console;
    serial.setPath(Q2PIString(pty.path()));
    QVERIFY(serial.open());
    pty.vanish();
    QTRY_VERIFY(!serial.isOpened());

    QElapsedTimer timer;
    timer.start();
    QVERIFY(serial.close());
    QVERIFY(timer.elapsed() < 1000);
    pty.comeBack();
    QVERIFY(!serial.isOpened());
    QVERIFY(serial.open());
    QVERIFY(serial.isOpened());
}

void tst_Serial::closeInsideReceiver()
{
    PtyPair pty;
    PISerial serial;
    std::atomic<int> calls{0};
    serial.setPath(Q2PIString(pty.path()));
    serial.setReceiver([&](const PIByteArray &) {
        serial.close();
        ++calls;
    });
    QVERIFY(serial.open());
    QVERIFY(pty.write("x"));
    QTRY_COMPARE(calls.load(), 1);
    QVERIFY(!serial.isOpened());
    QTRY_VERIFY(serial.open());
    QVERIFY(pty.write("y"));
    QTRY_COMPARE(calls.load(), 2);
}

void tst_Serial::destroyedWhileOpen()
{
    PtyPair pty;
    for (int round = 0; round < 20; ++round) {
        PISerial serial;
        serial.setPath(Q2PIString(pty.path()));
        QVERIFY(serial.open());
        QVERIFY(pty.write("bytes on their way"));
    }
}

void tst_Serial::destroyedWhileWriting()
{
    PtyPair pty;
    auto serial = std::make_unique<PISerial>();
    serial->setPath(Q2PIString(pty.path()));
    QVERIFY(serial->open());
    PISerial &port = *serial;
    std::thread writer([&] { write(port, pattern(LargeSize)); });
    QTest::qWait(50);
    QVERIFY(port.close());
    writer.join();
    serial.reset();
    QVERIFY(pty.readAll().size() < LargeSize);
}

KEL_TEST_MAIN(tst_Serial)
#include "tst_serial.moc"
