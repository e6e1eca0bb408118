#include "faultscripts.h"
#include "testmain.h"

#include <cerrno>
#include <thread>

using Kind = FaultyLine::Kind;
using Answer = FaultyLine::Answer;
using Call = FaultyLine::Call;

namespace
{

constexpr int MoreThanALineHolds = 60000;
constexpr int StepsOfAWrite = 12;

} // namespace

class tst_FaultClose : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void peerNeverReadsUntilClose();
    void closeBeforeTheFirstByteKeepsTheBlock();
    void closeDropsWhatTheDriverHolds();
    void closeAtEveryStep_data();
    void closeAtEveryStep();
    void destroyedWithWaitingBlocks();
};

void tst_FaultClose::peerNeverReadsUntilClose()
{
    FaultBench bench;
    bench.write(MoreThanALineHolds);
    const std::string next = bench.write();
    Stop stop;
    QVERIFY(bench.serial->open());
    bench.line.setScript(stop.script(Kind::Poll, Answer::pass()));
    std::thread ticker([&] { bench.tick(1); });
    const bool isFull = stop.await();
    stop.letGo();
    bench.serial->close();
    ticker.join();
    QVERIFY(isFull);
    QCOMPARE(bench.lines("takes no bytes: a block of 60000 bytes is lost"), 1);
    QVERIFY(bench.sendAll());
    QCOMPARE(bench.line.received().substr(bench.line.received().size() - next.size()), next);
    QCOMPARE(bench.finish(), QString());
}

/// Nothing of it went out, so it goes on waiting.
void tst_FaultClose::closeBeforeTheFirstByteKeepsTheBlock()
{
    FaultBench bench;
    const std::string blocks = bench.writeSeveral(2);
    Stop stop;
    const auto keep = stop.script(Kind::Poll, Answer::pass());
    QVERIFY(bench.serial->open());
    bench.line.setScript(
        [&](const Call &call) { return call.kind == Kind::Write ? Answer::fail(EAGAIN) : keep(call); });
    std::thread ticker([&] { bench.tick(1); });
    const bool isFull = stop.await();
    stop.letGo();
    bench.serial->close();
    ticker.join();
    QVERIFY(isFull);
    QCOMPARE(bench.console(), QStringList());
    QVERIFY(bench.sendAll());
    QCOMPARE(bench.line.received(), blocks);
    QCOMPARE(bench.finish(), QString());
}

/// Closing waits no longer than promised; what the driver then drops is told.
void tst_FaultClose::closeDropsWhatTheDriverHolds()
{
    FaultBench bench;
    QVERIFY(bench.serial->open());
    const std::string out = bench.write();
    bench.tick(1);
    bench.line.setScript(driverThatKeeps());
    bench.write(20);
    bench.write(30);
    bench.tick(2);
    QVERIFY(bench.serial->close());
    QCOMPARE(bench.console().size(), 2);
    QCOMPARE(bench.lines("was closed while sending: a block of 20 bytes is lost"), 1);
    QCOMPARE(bench.lines("was closed while sending: a block of 30 bytes is lost"), 1);
    bench.line.readTaken();
    QCOMPARE(bench.line.received(), out);
    QCOMPARE(bench.finish(), QString());
}

void tst_FaultClose::closeAtEveryStep_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<bool>("isStuck");

    // Three writes of four bytes, each but the last followed by a full line (write, fill, wait), the
    // hold, and the two questions whether all is out.
    for (int step = 0; step < StepsOfAWrite; ++step) {
        QTest::addRow("step %d, the line goes on", step) << step << false;
        QTest::addRow("step %d, the line stands still", step) << step << true;
    }
}

void tst_FaultClose::closeAtEveryStep()
{
    QFETCH(int, step);
    QFETCH(bool, isStuck);
    FaultBench bench(115200); // a hold that is long enough to sleep
    std::atomic<int> steps{0};
    std::atomic<bool> isReached{false};
    std::thread closer;
    bool isWaiting = false; // sleeps of the wait below are no steps
    const auto atStep = [&] {
        if (isWaiting || steps++ != step)
            return;
        isReached = true;
        isWaiting = true;
        closer = std::thread([&] { bench.serial->close(); });
        waitUntil([&] { return !bench.serial->isOpened(); });
        isWaiting = false;
    };
    std::thread::id ticker;
    int writes = 0;
    const FaultyLine::Script script = [&](const Call &call) {
        if (std::this_thread::get_id() != ticker)
            return Answer::pass();
        atStep();
        if (call.kind != Kind::Write)
            return Answer::pass();
        return (isStuck && isReached) || writes++ % 2 ? Answer::fail(EAGAIN) : Answer::limit(4);
    };
    const std::string blocks = bench.writeSeveral(2, 12);
    QVERIFY(bench.serial->open());
    ticker = std::this_thread::get_id();
    bench.line.setScript(script);
    setSleepWatch([&] {
        if (std::this_thread::get_id() == ticker && bench.pins().records().back().isHigh)
            atStep();
    });
    bench.tick(1);
    setSleepWatch(nullptr);
    QVERIFY(closer.joinable());
    closer.join();
    if (!isStuck)
        QCOMPARE(steps.load(), StepsOfAWrite);
    QVERIFY(!bench.pins().records().back().isHigh);
    QVERIFY(bench.sendAll());
    if (!isStuck)
        QCOMPARE(bench.line.received(), blocks);
    QCOMPARE(bench.finish(), QString());
    QVERIFY(bench.lines("is lost") <= (isStuck ? 1 : 0));
}

void tst_FaultClose::destroyedWithWaitingBlocks()
{
    FaultBench bench;
    bench.write();
    bench.write(300);
    bench.serial.reset();
    QCOMPARE(bench.console().size(), 2);
    QCOMPARE(bench.lines("is no longer used: a block of 5 bytes is lost: 3C 30 2E 30 3E"), 0);
    QCOMPARE(bench.lines("is no longer used: a block of 300 bytes is lost: 3C 30 2E 31"), 1);
    QCOMPARE(bench.finish(), QString());
}

KEL_TEST_MAIN(tst_FaultClose)
#include "tst_faultclose.moc"
