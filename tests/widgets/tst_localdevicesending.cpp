#include "devicebench.h"
#include "stderrcapture.h"
#include "testmain.h"

#include <QThread>

#include <limits>

class tst_LocalDeviceSending : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unknownCommandSendsNothingButSends();
    void commandByNumber();
    void commandByText();
    void disabledOrNot_data();
    void disabledOrNot();
    void virtualSendIsAskedAlsoWhileDisabled();
    void sendingComesBeforeTheLogLine();
    void disablingInASlotKeepsTheLogLineAway();
    void sendingInsideSending();
    void blocksCrossThreads();
    void blocksCrossQueuedTextConnections();

    void bytesOfTheExample();
    void bytesAlsoWhileDisabled();
    void unsetArgumentIsCreated();
    void argumentSlots();
    void argumentNumbersDoNotMix();
    void variablesStandSorted();
    void createdArgumentIsNoVariable();
    void errorIsToldAtEachSending();
    void errorEndsWhenTheVariableIsKnown();
    void manyTexts();
};

void tst_LocalDeviceSending::unknownCommandSendsNothingButSends()
{
    BenchDevice device;
    QSignalSpy spy(&device, &LocalDevice::sending);
    StderrCapture log;
    device.sendCommand(42);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).value<PIByteArray>().size(), 0);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("sended")});
    QVERIFY(device.commands.isEmpty());
}

void tst_LocalDeviceSending::commandByNumber()
{
    BenchDevice device;
    device.commands[3] = QStringLiteral("01 %0");
    device.setArgument0(2);
    QSignalSpy spy(&device, &LocalDevice::sending);
    StderrCapture log;
    device.sendCommand(3);
    QCOMPARE(hex(spy.at(0).at(0).value<PIByteArray>()), QStringLiteral("01 02"));
    QCOMPARE(log.lines(), QStringList{QStringLiteral("sended 01 02")});
    QCOMPARE(device.sentCount, 0);
}

void tst_LocalDeviceSending::commandByText()
{
    BenchDevice device;
    QSignalSpy spy(&device, &LocalDevice::sending);
    StderrCapture log;
    device.sendCommand(QStringLiteral("AA BB"));
    QCOMPARE(hex(spy.at(0).at(0).value<PIByteArray>()), QStringLiteral("AA BB"));
}

void tst_LocalDeviceSending::disabledOrNot_data()
{
    QTest::addColumn<bool>("self");
    QTest::addColumn<bool>("parent");
    QTest::addColumn<int>("count");

    QTest::newRow("enabled sends") << true << true << 1;
    QTest::newRow("disabled does not") << false << true << 0;
    QTest::newRow("disabled through its parent does not") << true << false << 0;
}

void tst_LocalDeviceSending::disabledOrNot()
{
    QFETCH(bool, self);
    QFETCH(bool, parent);
    QFETCH(int, count);

    QWidget panel;
    BenchDevice device(&panel);
    panel.setEnabled(parent);
    device.setEnabled(self);
    QSignalSpy spy(&device, &LocalDevice::sending);
    const StderrCapture log;
    device.send(QStringLiteral("%5"));
    QCOMPARE(spy.size(), count);
    QCOMPARE(device.arguments.size(), count); // Disabled, not even the bytes are made.
    device.sendPrepared(PIByteArray("x", 1));
    QCOMPARE(spy.size(), 2 * count);
    QCOMPARE(log.lines().size(), 2 * count);
    device.sendLocal(PIByteArray("x", 1));
    QCOMPARE(spy.size(), 2 * count);
    QCOMPARE(log.lines().size(), 3 * count);
}

class TransportDevice : public BenchDevice
{
    Q_OBJECT

public:
    void send(QString text) override { sent << text; }
    void received(QByteArray data, QString from) override { got << from + QLatin1Char(':') + QString::fromUtf8(data); }

    QStringList sent;
    QStringList got;
};

void tst_LocalDeviceSending::virtualSendIsAskedAlsoWhileDisabled()
{
    TransportDevice device;
    device.commands[1] = QStringLiteral("first");
    device.disable();
    device.sendCommand(1);
    device.sendCommand(2);
    device.sendCommand(QStringLiteral("text"));
    QCOMPARE(device.sent, (QStringList{QStringLiteral("first"), QString(), QStringLiteral("text")}));

    device.dataReceived(QByteArray("ab"), QStringLiteral("port"));
    QCOMPARE(device.got, QStringList{QStringLiteral("port:ab")});
}

void tst_LocalDeviceSending::sendingComesBeforeTheLogLine()
{
    LocalDevice device;
    const StderrCapture log;
    QStringList linesThen{QStringLiteral("no signal")};
    connect(&device, &LocalDevice::sending, this, [&] { linesThen = log.lines(); });
    device.sendPrepared(PIByteArray("\x01", 1));
    QCOMPARE(linesThen, QStringList());
    QCOMPARE(log.lines(), QStringList{QStringLiteral("sended 01")});
}

void tst_LocalDeviceSending::disablingInASlotKeepsTheLogLineAway()
{
    LocalDevice device;
    const StderrCapture log;
    connect(&device, &LocalDevice::sending, &device, &LocalDevice::disable);
    device.sendPrepared(PIByteArray("\x01", 1));
    QVERIFY(!device.isEnabled());
    QCOMPARE(log.lines(), QStringList());
}

void tst_LocalDeviceSending::sendingInsideSending()
{
    LocalDevice device;
    const StderrCapture log;
    QStringList sent;
    connect(&device, &LocalDevice::sending, this, [&](const PIByteArray &data) {
        sent << hex(data);
        if (sent.size() == 1)
            device.sendCommand(QStringLiteral("02"));
    });
    device.sendCommand(QStringLiteral("01"));
    QCOMPARE(sent, (QStringList{QStringLiteral("01"), QStringLiteral("02")}));
    QCOMPARE(log.lines(), (QStringList{QStringLiteral("sended 02"), QStringLiteral("sended 01")}));
}

/// Stands in for a transport that lives in a thread of its own.
class Port : public QObject
{
    Q_OBJECT

public:
    QStringList blocks; ///< Read when the thread has ended.
    bool inOwnThread = true;

public Q_SLOTS:
    void write(PIByteArray data)
    {
        blocks << hex(data);
        inOwnThread = inOwnThread && QThread::currentThread() == thread();
        Q_EMIT answered(QByteArray("\xAA"), QStringLiteral("port"));
    }

Q_SIGNALS:
    void answered(QByteArray data, QString from);
};

void tst_LocalDeviceSending::blocksCrossThreads()
{
    const StderrCapture log;
    BenchDevice device;
    device.answers[1] = {0xAA};
    QThread thread;
    Port port;
    port.moveToThread(&thread);
    connect(&device, &LocalDevice::sending, &port, &Port::write);
    connect(&port, &Port::answered, &device, &LocalDevice::dataReceived);
    thread.start();

    device.sendCommand(QStringLiteral("01 02"));
    device.sendCommand(QStringLiteral("03"));
    QTRY_COMPARE(device.receivedCount, 2);
    thread.quit();
    QVERIFY(thread.wait());
    QCOMPARE(port.blocks, (QStringList{QStringLiteral("01 02"), QStringLiteral("03")}));
    QVERIFY(port.inOwnThread);
}

void tst_LocalDeviceSending::blocksCrossQueuedTextConnections()
{
    const StderrCapture log;
    LocalDevice device;
    Port port;
    QVERIFY(connect(&device, SIGNAL(sending(PIByteArray)), &port, SLOT(write(PIByteArray)), Qt::QueuedConnection));
    device.sendCommand(QStringLiteral("07"));
    QCOMPARE(port.blocks, QStringList());
    QTRY_COMPARE(port.blocks, QStringList{QStringLiteral("07")});
}

void tst_LocalDeviceSending::bytesOfTheExample()
{
    BenchDevice device;
    QCOMPARE(hex(device.parseSendData(QStringLiteral("%id"))), QStringLiteral("FF"));
    device.deviceID = 5;
    device.setArgument1(300);
    QCOMPARE(hex(device.parseSendData(QStringLiteral("AA %id %1 %(a1/2) 0d"))), QStringLiteral("AA 05 2C 96 0D"));
    QCOMPARE(hex(device.parseSendData(QString())), QString());
}

void tst_LocalDeviceSending::bytesAlsoWhileDisabled()
{
    LocalDevice device;
    device.disable();
    QCOMPARE(hex(device.parseSendData(QStringLiteral("01"))), QStringLiteral("01"));
}

void tst_LocalDeviceSending::unsetArgumentIsCreated()
{
    BenchDevice device;
    QCOMPARE(hex(device.parseSendData(QStringLiteral("%7"))), QStringLiteral("00"));
    QCOMPARE(device.arguments, (QMap<int, int>{{7, 0}}));
}

void tst_LocalDeviceSending::argumentSlots()
{
    BenchDevice device;
    device.setArgument0(10);
    device.setArgument1(11);
    device.setArgument2(12);
    device.setArgument3(13);
    device.setArgument(4, 14);
    QCOMPARE(device.arguments, (QMap<int, int>{{0, 10}, {1, 11}, {2, 12}, {3, 13}, {4, 14}}));
    QCOMPARE(hex(device.parseSendData(QStringLiteral("%(a0) %(a1) %(a2) %(a3) %(a4)"))),
             QStringLiteral("0A 0B 0C 0D 0E"));
    device.setArgument0(20);
    device.setArgument(3, 23);
    QCOMPARE(hex(device.parseSendData(QStringLiteral("%(a0) %(a3) %0 %3"))), QStringLiteral("14 17 14 17"));
}

void tst_LocalDeviceSending::argumentNumbersDoNotMix()
{
    const int highest = std::numeric_limits<int>::max();
    const int lowest = std::numeric_limits<int>::min();
    BenchDevice device;
    device.setArgument(10, 100);
    device.setArgument(1, 7);
    device.setArgument(-1, 50);
    device.setArgument(highest, 60);
    device.setArgument(lowest, 61);
    device.setArgument(-1, 51);
    const QString text = QStringLiteral("%1 %10 %-1 %2147483647 %-2147483648 %(a1) %(a10) %(a1-1) %(a2147483647)");
    QCOMPARE(hex(device.parseSendData(text)), QStringLiteral("07 64 33 3C 3D 07 64 06 3C"));
}

void tst_LocalDeviceSending::variablesStandSorted()
{
    BenchDevice device;
    for (const int number : {20, 1, 3, 1})
        device.setArgument(number, number);
    const PIEvaluatorContent &content = device.evaluator.content();
    QCOMPARE(content.variablesCount(), 3);
    QCOMPARE(PI2QString(content.variableName(0)), QStringLiteral("a1"));
    QCOMPARE(PI2QString(content.variableName(1)), QStringLiteral("a20"));
    QCOMPARE(PI2QString(content.variableName(2)), QStringLiteral("a3"));
    QCOMPARE(content.variableValue(1), std::complex<double>(20, 0));
}

void tst_LocalDeviceSending::createdArgumentIsNoVariable()
{
    BenchDevice device;
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("^command evaluation error: .")));
    QCOMPARE(hex(device.parseSendData(QStringLiteral("%5 %(a5) 0A"))), QStringLiteral("00 0A"));
    device.setArgument(5, 9);
    QCOMPARE(hex(device.parseSendData(QStringLiteral("%5 %(a5) 0A"))), QStringLiteral("09 09 0A"));
}

void tst_LocalDeviceSending::errorIsToldAtEachSending()
{
    LocalDevice device;
    for (int i = 0; i < 3; ++i) {
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("^command evaluation error: .")));
        QCOMPARE(hex(device.parseSendData(QStringLiteral("%(a0 * 2)"))), QStringLiteral("00 00"));
    }
}

void tst_LocalDeviceSending::errorEndsWhenTheVariableIsKnown()
{
    LocalDevice device;
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("^command evaluation error: .")));
    QCOMPARE(hex(device.parseSendData(QStringLiteral("01 %(a0+1)"))), QStringLiteral("01"));
    device.setArgument0(1);
    QCOMPARE(hex(device.parseSendData(QStringLiteral("01 %(a0+1)"))), QStringLiteral("01 02"));
    device.setArgument0(2);
    QCOMPARE(hex(device.parseSendData(QStringLiteral("01 %(a0+1)"))), QStringLiteral("01 03"));
}

void tst_LocalDeviceSending::manyTexts()
{
    LocalDevice device;
    const QString padding(200, QLatin1Char(' '));
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 1000; ++i) {
            const QString byte = QString::number(i & 0xFF, 16).rightJustified(2, QLatin1Char('0')).toUpper();
            QCOMPARE(hex(device.parseSendData(padding + QString::number(i, 16))), byte);
        }
    }
}

KEL_TEST_MAIN(tst_LocalDeviceSending)
#include "tst_localdevicesending.moc"
