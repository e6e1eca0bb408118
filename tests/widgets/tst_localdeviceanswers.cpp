#include "devicebench.h"
#include "stderrcapture.h"
#include "testmain.h"

#include <QMetaMethod>
#include <QPointer>

#include <array>
#include <cstddef>
#include <functional>
#include <new>
#include <utility>

using Answers = QMap<int, QVector<int>>;

/// Ends a device that lives in a room of the test, and makes the room useless: who still goes there crashes.
class Removal : public QObject
{
    Q_OBJECT

public:
    Removal(BenchDevice *ended, std::function<void()> makeUseless)
        : device(ended)
        , m_makeUseless(std::move(makeUseless))
    {
    }

    QPointer<BenchDevice> device;

public Q_SLOTS:
    void now()
    {
        if (!device)
            return;
        device->~BenchDevice();
        m_makeUseless();
    }

private:
    std::function<void()> m_makeUseless;
};

class tst_LocalDeviceAnswers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void announced_data();
    void announced();
    void countedBeforeAnnounced();
    void capturesAreThoseOfTheLastMessage();
    void answersMayChangeBetweenMessages();
    void logLine();
    void disabledTakesNothing();
    void disablingInASlotDoesNotStopTheReport();
    void nextMessageInsideASlot();
    void deletedByItsOwnSignal_data();
    void deletedByItsOwnSignal();
};

void tst_LocalDeviceAnswers::announced_data()
{
    QTest::addColumn<Answers>("answers");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QStringList>("entries");

    const auto row = [](const char *name, const Answers &answers, const QByteArray &message, const char *entries) {
        QTest::newRow(name) << answers << message
                            << QString::fromLatin1(entries).split(QLatin1Char(';'), Qt::SkipEmptyParts);
    };
    const Answers two{{1, {0xAA, ~0}}, {2, {0xAA, 0x10, ~1}}};
    row("first answer", two, "\xAA\x05", "ID 1;Arg 0 = 5;Arg0 5");
    row("second answer", two, "\xAA\x10\xFF", "ID 2;Arg 1 = 255;Arg1 255");
    row("no answer of this length", two, "\xAA", "");
    row("no answer with these bytes", two, "\xAB\x05", "");
    row("nothing to compare with", {}, "\xAA", "");
    row("without captures only the number", {{-4, {1}}}, "\x01", "ID -4");
    row("lowest number wins", {{2, {~0}}, {1, {~1}}, {-1, {~2}}}, "\x07", "ID -1;Arg 2 = 7;Arg2 7");
    row("numbers ascend as numbers", {{10, {~0}}, {9, {~1}}}, "\x07", "ID 9;Arg 1 = 7;Arg1 7");
    row("arguments ascend, then 0 to 3", {{1, {~3, ~5, ~0, ~2, ~1}}}, "\x03\x05\x01\x02\x04",
        "ID 1;Arg 0 = 1;Arg 1 = 4;Arg 2 = 2;Arg 3 = 3;Arg 5 = 5;Arg0 1;Arg1 4;Arg2 2;Arg3 3");
    row("only captured ones of 0 to 3", {{1, {~3, ~1}}}, "\x03\x01", "ID 1;Arg 1 = 1;Arg 3 = 3;Arg1 1;Arg3 3");
    row("left over from a failed answer", {{1, {~0, ~7, 1}}, {2, {~1, 8, 9}}}, "\x07\x08\x09",
        "ID 2;Arg 0 = 7;Arg 1 = 7;Arg 7 = 8;Arg0 7;Arg1 7");
    row("left over but captured again", {{1, {~0, 1, 1}}, {2, {7, ~0, 9}}}, "\x07\x08\x09", "ID 2;Arg 0 = 8;Arg0 8");
    row("nothing left over from another length", {{1, {~0, 1}}, {2, {~1}}}, "\x07", "ID 2;Arg 1 = 7;Arg1 7");
    row("empty answer to an empty message", {{3, {}}}, "", "ID 3");
    row("above 255 never matches", {{1, {0x107}}, {2, {7}}}, "\x07", "ID 2");
}

void tst_LocalDeviceAnswers::announced()
{
    QFETCH(Answers, answers);
    QFETCH(QByteArray, message);
    QFETCH(QStringList, entries);

    BenchDevice device;
    device.answers = answers;
    const AnswerLog log(&device);
    const StderrCapture quiet;
    device.dataReceived(message, QStringLiteral("anywhere"));
    QCOMPARE(log.entries, entries);
    QCOMPARE(device.receivedCount, entries.isEmpty() ? 0 : 1);
}

void tst_LocalDeviceAnswers::countedBeforeAnnounced()
{
    BenchDevice device;
    device.answers[1] = {~0};
    const StderrCapture quiet;
    int countThen = 0;
    connect(&device, &LocalDevice::receivedAnswerID, this, [&] { countThen = device.receivedCount; });
    device.receivedLocal("a");
    QCOMPARE(countThen, 1);
}

void tst_LocalDeviceAnswers::capturesAreThoseOfTheLastMessage()
{
    BenchDevice device;
    device.answers = {{1, {~0, 1}}, {2, {~1}}};
    const StderrCapture quiet;
    device.receivedLocal("\x07\x01");
    QCOMPARE(device.answerArguments, (QMap<int, int>{{0, 7}}));
    device.receivedLocal("\x08\x02");
    QCOMPARE(device.answerArguments, (QMap<int, int>{{0, 8}}));
    device.receivedLocal("\x09");
    QCOMPARE(device.answerArguments, (QMap<int, int>{{1, 9}}));
    device.receivedLocal("abc");
    QCOMPARE(device.answerArguments, (QMap<int, int>()));
    QCOMPARE(device.receivedCount, 2);
}

void tst_LocalDeviceAnswers::answersMayChangeBetweenMessages()
{
    BenchDevice device;
    device.answers = {{1, {0x01}}, {2, {0x02}}};
    const AnswerLog log(&device);
    const StderrCapture quiet;
    device.receivedLocal("\x01");
    device.answers[1][0] = 0x02; // comes before the answer 2 that it now is
    device.receivedLocal("\x02");
    device.answers.remove(1);
    device.receivedLocal("\x02");
    device.answers.clear();
    device.receivedLocal("\x02");
    const QMap<int, QVector<int>> others{{3, {0x02}}};
    device.answers = others;
    device.receivedLocal("\x02");
    QCOMPARE(log.entries, (QStringList{QStringLiteral("ID 1"), QStringLiteral("ID 1"), QStringLiteral("ID 2"),
                                       QStringLiteral("ID 3")}));
}

void tst_LocalDeviceAnswers::logLine()
{
    LocalDevice device;
    const StderrCapture log;
    device.dataReceived(QByteArray("\xAA\x05"), QStringLiteral("ignored"));
    device.setDeviceSendPath(QStringLiteral("ser://send"));
    device.setDeviceReadPath(QStringLiteral("ser://read"));
    device.receivedLocal(QByteArray("\x01"));
    device.receivedLocal(QByteArray());
    QCOMPARE(log.lines(), (QStringList{QStringLiteral("received AA 05"), QStringLiteral("ser://read received 01"),
                                       QStringLiteral("ser://read received")}));
}

void tst_LocalDeviceAnswers::disabledTakesNothing()
{
    QWidget panel;
    BenchDevice device(&panel);
    device.answers[1] = {~0};
    device.answerArguments[4] = 4;
    const AnswerLog log(&device);
    const StderrCapture lines;
    device.disable();
    device.dataReceived("a", QString());
    device.receivedLocal("a");
    device.enable();
    panel.setEnabled(false);
    device.receivedLocal("a");
    QCOMPARE(log.entries, QStringList());
    QCOMPARE(lines.lines(), QStringList());
    QCOMPARE(device.receivedCount, 0);
    QCOMPARE(device.answerArguments, (QMap<int, int>{{4, 4}}));
}

void tst_LocalDeviceAnswers::disablingInASlotDoesNotStopTheReport()
{
    BenchDevice device;
    device.answers[1] = {~0, ~1};
    connect(&device, &LocalDevice::receivedAnswerID, &device, &LocalDevice::disable);
    const AnswerLog log(&device);
    const StderrCapture quiet;
    device.receivedLocal("\x01\x02");
    QCOMPARE(log.entries, QStringLiteral("ID 1;Arg 0 = 1;Arg 1 = 2;Arg0 1;Arg1 2").split(QLatin1Char(';')));
}

void tst_LocalDeviceAnswers::nextMessageInsideASlot()
{
    BenchDevice device;
    device.answers = {{1, {1, ~0, ~1}}, {2, {2, ~2}}};
    const AnswerLog log(&device);
    const StderrCapture quiet;
    connect(&device, &LocalDevice::receivedAnswerID, this, [&](int id) {
        if (id == 1) {
            device.receivedLocal("\x02\x09");
            device.answers.clear();
        }
    });
    device.receivedLocal("\x01\x05\x06");
    QCOMPARE(log.entries,
             QStringLiteral("ID 1;ID 2;Arg 2 = 9;Arg2 9;Arg 0 = 5;Arg 1 = 6;Arg0 5;Arg1 6").split(QLatin1Char(';')));
    QCOMPARE(device.receivedCount, 2);
}

void tst_LocalDeviceAnswers::deletedByItsOwnSignal_data()
{
    QTest::addColumn<QByteArray>("signal");

    for (const char *signal : {"receivedAnswerID(int)", "receivedAnswerArg(int,int)", "receivedAnswerArg0(int)",
                               "receivedAnswerArg1(int)", "receivedAnswerArg2(int)", "receivedAnswerArg3(int)"})
        QTest::newRow(signal) << QByteArray(signal);
}

void tst_LocalDeviceAnswers::deletedByItsOwnSignal()
{
    QFETCH(QByteArray, signal);

    alignas(BenchDevice) std::array<std::byte, sizeof(BenchDevice)> room{};
    Removal removal{new (room.data()) BenchDevice, [&room] { room.fill(std::byte{0xFF}); }};
    removal.device->answers[1] = {~0, ~1, ~2, ~3};
    const int index = removal.device->metaObject()->indexOfSignal(signal.constData());
    const QMetaMethod remove = removal.metaObject()->method(removal.metaObject()->indexOfSlot("now()"));
    QVERIFY(connect(removal.device, removal.device->metaObject()->method(index), &removal, remove));
    const StderrCapture quiet;
    removal.device->receivedLocal("abcd");
    QVERIFY(!removal.device);
}

KEL_TEST_MAIN(tst_LocalDeviceAnswers)
#include "tst_localdeviceanswers.moc"
