#include "faultscripts.h"
#include "testmain.h"

#include <atomic>
#include <cerrno>
#include <dirent.h>
#include <sys/ioctl.h>
#include <thread>

using namespace std::chrono_literals;
using Kind = FaultyLine::Kind;
using Answer = FaultyLine::Answer;
using Call = FaultyLine::Call;

namespace
{

constexpr int MoreThanALineHolds = 60000;
constexpr auto SeveralTicks = 200ms; ///< After which the write timer of an idle port rests.
constexpr int WireSpeed = 300;       ///< Slow enough that a block is on the wire for a while.

int entriesOf(const char *folder)
{
    int count = 0;
    DIR *const directory = ::opendir(folder);
    while (directory && ::readdir(directory))
        ++count;
    ::closedir(directory);
    return count;
}

int descriptors()
{
    return entriesOf("/proc/self/fd");
}

int threads()
{
    return entriesOf("/proc/self/task");
}

} // namespace

class tst_Faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortWrites_data();
    void shortWrites();
    void busyLine();
    void interruptedCalls_data();
    void interruptedCalls();
    void errorDuringWrite_data();
    void errorDuringWrite();
    void errorDuringRead();
    void errorsDuringReopen_data();
    void errorsDuringReopen();
    void unknownFillOfTheDriver();
    void vanishesAThousandTimes();
    void vanishesWithABlockOnTheWire();
    void vanishesWithBlocksInTheDriver();
    void lossIsToldWithoutAnotherBlock();
    void blockAfterARestGoesOut();
    void tailDoesNotGoToAnotherLine();
    void bothThreadsMeetTheLoss();
    void peerNeverReads();
    void readOnlyPortTellsItsBlocks();
    void noDescriptorsLeft();
    void portCannotBeWatched();
};

void tst_Faults::shortWrites_data()
{
    QTest::addColumn<int>("most");

    for (const int most : {1, 2, 7})
        QTest::addRow("%d bytes at a time", most) << most;
}

void tst_Faults::shortWrites()
{
    QFETCH(int, most);
    FaultBench bench;
    int calls = 0;
    bench.line.setScript([&, most](const Call &call) {
        calls += call.kind == Kind::Write ? 1 : 0;
        return call.kind == Kind::Write ? Answer::limit(most) : Answer::pass();
    });
    const std::string first = bench.write(20);
    const std::string second = bench.write(33);
    QVERIFY(bench.serial->open());
    bench.tick(2);
    bench.line.readTaken();
    QCOMPARE(bench.line.received(), first + second);
    QVERIFY(calls >= 53 / most);
    QCOMPARE(bench.finish(), QString());
    QCOMPARE(bench.console(), QStringList());
}

void tst_Faults::busyLine()
{
    FaultBench bench;
    int refused = 0;
    bench.line.setScript([&](const Call &call) {
        if (call.kind != Kind::Write)
            return Answer::pass();
        return ++refused % 4 ? Answer::fail(EAGAIN) : Answer::limit(5);
    });
    const std::string block = bench.write(50);
    QVERIFY(bench.serial->open());
    bench.tick(1);
    bench.line.readTaken();
    QCOMPARE(bench.line.received(), block);
    QVERIFY(refused >= 40);
    QCOMPARE(bench.finish(), QString());
    QCOMPARE(bench.console(), QStringList());
}

void tst_Faults::interruptedCalls_data()
{
    QTest::addColumn<int>("kind");

    QTest::newRow("open") << int(Kind::Open);
    QTest::newRow("read") << int(Kind::Read);
    QTest::newRow("write") << int(Kind::Write);
    QTest::newRow("poll") << int(Kind::Poll);
}

void tst_Faults::interruptedCalls()
{
    QFETCH(int, kind);
    FaultBench bench;
    std::atomic<int> bytesBack{0};
    bench.serial->setReceiver([&](const PIByteArray &bytes) { bytesBack += bytes.size(); });
    bench.line.setScript(everyOther(Kind(kind), EINTR));
    const std::string blocks = bench.writeSeveral(3);
    QVERIFY(bench.serial->open());
    bench.tick(3);
    bench.line.readTaken();
    QCOMPARE(bench.line.received(), blocks);
    for (int i = 1; i <= 4; ++i) {
        QVERIFY(bench.line.pty().write("x"));
        QVERIFY(waitUntil([&] { return bytesBack == i; }));
    }
    QCOMPARE(bench.finish(), QString());
    QCOMPARE(bench.console(), QStringList());
}

void tst_Faults::errorDuringWrite_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("error");

    for (const int error : {EIO, ENXIO, ENODEV}) {
        for (const int number : {0, 1, 3})
            QTest::addRow("%s, write %d", strerror(error), number) << number << error;
    }
}

/// The block begins anew on the line that comes back, whatever of it went out before.
void tst_Faults::errorDuringWrite()
{
    QFETCH(int, number);
    QFETCH(int, error);
    FaultBench bench;
    int writes = 0;
    bench.line.setScript([&, number, error](const Call &call) {
        if (call.kind != Kind::Write)
            return Answer::pass();
        return writes++ == number ? Answer::fail(error) : Answer::limit(4);
    });
    const std::string first = bench.write(16);
    const std::string second = bench.write();
    QVERIFY(bench.serial->open());
    bench.tick(1);
    QVERIFY(bench.lines("went away:") == 1);
    QVERIFY(bench.sendAll());
    QCOMPARE(bench.line.received(), first.substr(0, size_t(4 * number)) + first + second);
    QCOMPARE(bench.finish(), QString());
    QCOMPARE(bench.console().size(), 1);
}

void tst_Faults::errorDuringRead()
{
    FaultBench bench;
    bench.line.setScript(once(Kind::Read, EIO));
    QVERIFY(bench.serial->open());
    QVERIFY(bench.line.pty().write("x"));
    QVERIFY(waitUntil([&] { return bench.lines("went away:") == 1; }));
    const std::string block = bench.write();
    QVERIFY(bench.sendAll());
    QCOMPARE(bench.line.received(), block);
    QCOMPARE(bench.finish(), QString());
}

void tst_Faults::errorsDuringReopen_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("error");

    QTest::newRow("open: no such device") << int(Kind::Open) << ENXIO;
    QTest::newRow("open: input/output error") << int(Kind::Open) << EIO;
    QTest::newRow("settings: input/output error") << int(Kind::Ioctl) << EIO;
    QTest::newRow("waiting: no room for it") << int(Kind::Watch) << ENOSPC;
    QTest::newRow("lock: held by another") << int(Kind::Flock) << EWOULDBLOCK;
}

/// The port is there again but not ready at once, as a fresh adapter is.
void tst_Faults::errorsDuringReopen()
{
    QFETCH(int, kind);
    QFETCH(int, error);
    FaultBench bench;
    QVERIFY(bench.serial->open());
    const int before = descriptors();
    bench.line.vanish();
    QVERIFY(waitUntil([&] { return !bench.serial->isOpened(); }));
    std::atomic<int> failures{0};
    bench.line.setScript([&, kind, error](const Call &call) {
        if (call.kind != Kind(kind) || failures >= 2)
            return Answer::pass();
        ++failures;
        return Answer::fail(error);
    });
    const std::string block = bench.write();
    bench.line.comeBack();
    QVERIFY(waitUntil([&] { return bench.serial->isOpened(); }));
    QVERIFY(bench.sendAll());
    QCOMPARE(failures.load(), 2);
    QCOMPARE(descriptors(), before);
    QCOMPARE(bench.line.received(), block);
    QCOMPARE(bench.finish(), QString());
    QCOMPARE(bench.console().size(), 1);
}

/// A driver that does not tell how much it holds is taken at its word that it took the block.
void tst_Faults::unknownFillOfTheDriver()
{
    FaultBench bench;
    bench.line.setScript([](const Call &call) {
        return call.kind == Kind::Ioctl && call.request == TIOCOUTQ ? Answer::fail(ENOTTY) : Answer::pass();
    });
    const std::string blocks = bench.writeSeveral(2);
    QVERIFY(bench.serial->open());
    bench.tick(2);
    QCOMPARE(bench.finish(), QString());
    QCOMPARE(bench.line.received(), blocks);
    QCOMPARE(bench.console(), QStringList());
}

/// Forty ports at once, to be done in the time of one; two threads keep blocks on their way.
void tst_Faults::vanishesAThousandTimes()
{
    constexpr int Ports = 40;
    constexpr int Rounds = 25;
    const auto surroundings = std::make_shared<FaultBench::Surroundings>();
    std::vector<std::unique_ptr<FaultBench>> benches;
    for (int i = 0; i < Ports; ++i)
        benches.push_back(std::make_unique<FaultBench>(1000000, surroundings));
    for (auto &bench : benches)
        QVERIFY(bench->serial->open());
    const auto all = [&](bool isOpened) {
        return waitUntil([&] {
            return std::all_of(benches.begin(), benches.end(),
                               [=](const auto &bench) { return bench->serial->isOpened() == isOpened; });
        });
    };
    std::atomic<bool> isEnough{false};
    const auto tickAll = [&] {
        while (!isEnough) {
            for (auto &bench : benches)
                bench->tick(1);
            std::this_thread::sleep_for(1ms);
        }
    };
    std::thread first(tickAll);
    std::thread second(tickAll);

    bool isGood = true;
    int descriptorsBefore = 0;
    int threadsBefore = 0;
    for (int round = 0; round < Rounds && isGood; ++round) {
        for (auto &bench : benches) {
            bench->writeSeveral(6);
            bench->line.vanish();
        }
        isGood = all(false);
        for (auto &bench : benches) {
            bench->writeSeveral(2);
            bench->line.comeBack();
        }
        isGood = isGood && all(true);
        if (round == 0) {
            descriptorsBefore = descriptors();
            threadsBefore = threads();
        }
    }
    const int descriptorsAfter = descriptors();
    const int threadsAfter = threads();
    isEnough = true;
    first.join();
    second.join();
    QVERIFY(isGood);
    QCOMPARE(descriptorsAfter, descriptorsBefore);
    QCOMPARE(threadsAfter, threadsBefore);
    while (!benches.empty()) {
        const auto bench = std::move(benches.back());
        benches.pop_back();
        QVERIFY(bench->sendAll());
        QCOMPARE(bench->finish(), QString());
        QCOMPARE(bench->lines("is no longer used"), 0);
        QCOMPARE(bench->lines("went away:"), Rounds);
    }
}

/// The port has taken the whole block, but its time on the wire is not over.
void tst_Faults::vanishesWithABlockOnTheWire()
{
    FaultBench bench(WireSpeed);
    const std::string block = bench.write(12); // 400 ms
    QVERIFY(bench.serial->open());
    std::thread ticker([&] { bench.tick(1); });
    const bool isTaken = waitUntil([&] {
        bench.line.readTaken();
        return bench.line.received() == block;
    });
    bench.line.vanish();
    ticker.join();
    QVERIFY(isTaken);
    QCOMPARE(bench.lines("went away while sending: a block of 12 bytes is lost: 3C 30 2E 30"), 1);

    bench.line.comeBack();
    QVERIFY(waitUntil([&] { return bench.serial->isOpened(); }));
    const std::string next = bench.write();
    QVERIFY(bench.sendAll());
    QCOMPARE(bench.line.received(), block + next);
    QCOMPARE(bench.finish(), QString());
}

/// The wire stands still, as by flow control: the driver takes blocks and keeps them.
void tst_Faults::vanishesWithBlocksInTheDriver()
{
    FaultBench bench;
    bench.line.setScript(driverThatKeeps());
    QVERIFY(bench.serial->open());
    for (int i = 0; i < 3; ++i)
        bench.write();
    bench.tick(4);
    QCOMPARE(bench.console(), QStringList());
    bench.line.vanish();
    QVERIFY(waitUntil([&] { return !bench.serial->isOpened(); }));
    bench.tick(1);
    QCOMPARE(bench.lines("went away while sending"), 3);
    QCOMPARE(bench.finish(), QString());
}

/// Nothing waits to be sent any more, but what the driver holds is watched on.
void tst_Faults::lossIsToldWithoutAnotherBlock()
{
    FaultBench bench;
    std::atomic<bool> isTaken{false};
    bench.line.setScript([&isTaken, driver = driverThatKeeps()](const Call &call) {
        isTaken = isTaken || call.kind == Kind::Write;
        return driver(call);
    });
    QVERIFY(bench.serial->open());
    bench.write();
    QVERIFY(waitUntil([&] { return isTaken.load(); }));
    std::this_thread::sleep_for(SeveralTicks);
    bench.line.vanish();
    QVERIFY(waitUntil([&] { return bench.lines("went away while sending") == 1; }));
    QCOMPARE(bench.finish(), QString());
}

void tst_Faults::blockAfterARestGoesOut()
{
    FaultBench bench;
    QVERIFY(bench.serial->open());
    std::this_thread::sleep_for(SeveralTicks);
    const std::string block = bench.write();
    QVERIFY(waitUntil([&] {
        bench.line.readTaken();
        return bench.line.received() == block;
    }));
    QCOMPARE(bench.finish(), QString());
}

/// A writer that is kept so long that the port comes back meanwhile begins the block anew.
void tst_Faults::tailDoesNotGoToAnotherLine()
{
    FaultBench bench;
    Stop stop;
    const auto keep = stop.script(Kind::Poll, Answer::pass());
    int writes = 0;
    bench.line.setScript([&](const Call &call) {
        if (call.kind == Kind::Write) {
            ++writes;
            return writes == 1 ? Answer::limit(5) : writes == 2 ? Answer::fail(EAGAIN) : Answer::pass();
        }
        return keep(call);
    });
    const std::string block = bench.write(20);
    QVERIFY(bench.serial->open());
    std::thread ticker([&] { bench.tick(1); });
    const bool isKept = stop.await();
    bench.line.vanish();
    const bool isAway = waitUntil([&] { return !bench.serial->isOpened(); });
    bench.line.comeBack();
    const bool isBack = waitUntil([&] { return bench.serial->isOpened(); });
    stop.letGo();
    ticker.join();
    QVERIFY(isKept && isAway && isBack);
    QVERIFY(bench.sendAll());
    QCOMPARE(bench.line.received(), block.substr(0, 5) + block);
    QCOMPARE(bench.finish(), QString());
}

/// Whoever is second has nothing to add and ends nothing.
void tst_Faults::bothThreadsMeetTheLoss()
{
    FaultBench bench;
    Stop stop;
    QVERIFY(bench.serial->open());
    bench.line.setScript(stop.script(Kind::Read, Answer::fail(EIO)));
    QVERIFY(bench.line.pty().write("x"));
    // The reading thread is kept before it hears of its error; meanwhile a writer meets one of its own.
    const bool isKept = stop.await();
    std::atomic<int> writes{0};
    bench.line.setScript([&](const Call &call) {
        return call.kind == Kind::Write && writes++ == 0 ? Answer::fail(EIO) : Answer::pass();
    });
    const std::string block = bench.write();
    bench.tick(1);
    stop.letGo();
    QVERIFY(isKept);
    QVERIFY(waitUntil([&] { return bench.serial->isOpened(); }));
    QVERIFY(bench.sendAll());
    QCOMPARE(bench.lines("went away:"), 1);
    QCOMPARE(bench.line.received(), block);
    QCOMPARE(bench.finish(), QString());
}

/// Ten seconds without a byte: the block is given up, the next ones wait for their own turn.
void tst_Faults::peerNeverReads()
{
    FaultBench bench;
    const std::string large = bench.write(MoreThanALineHolds);
    QVERIFY(bench.serial->open());
    bench.line.setScript([](const Call &call) {
        if (call.kind == Kind::Poll)
            advanceThreadClock(1);
        return Answer::pass();
    });
    std::thread(&FaultBench::tick, &bench, 1).join();
    QCOMPARE(bench.lines("takes no bytes: a block of 60000 bytes is lost: 3C 30 2E 30"), 1);
    const auto pins = bench.pins().records();
    QVERIFY(!pins.empty() && !pins.back().isHigh);

    const std::string next = bench.write();
    QVERIFY(bench.sendAll());
    QVERIFY(bench.line.received().size() > next.size());
    QVERIFY(bench.line.received().size() < large.size());
    QCOMPARE(bench.line.received().substr(bench.line.received().size() - next.size()), next);
    QCOMPARE(bench.finish(), QString());
}

void tst_Faults::readOnlyPortTellsItsBlocks()
{
    FaultBench bench;
    bench.serial->setProperty("readOnly", true);
    bench.write();
    QVERIFY(bench.serial->open());
    bench.tick(1);
    QCOMPARE(bench.lines("takes no bytes"), 1);
    QCOMPARE(bench.finish(), QString());
    QCOMPARE(bench.line.received(), std::string());
}

/// Opening fails with a text, whichever descriptor is one too many, and leaves nothing behind.
void tst_Faults::noDescriptorsLeft()
{
    FaultBench bench;
    const std::string block = bench.write();
    const int before = descriptors();
    for (int spare = 0; spare < 2; ++spare) {
        setSpareDescriptors(spare);
        const bool isOpen = bench.serial->open();
        setSpareDescriptors(-1);
        QVERIFY(!isOpen);
        QCOMPARE(descriptors(), before);
        QCOMPARE(bench.lines("Too many open files"), spare + 1);
    }
    bench.line.setScript(once(Kind::Open, EMFILE));
    QVERIFY(!bench.serial->open());
    QCOMPARE(bench.lines("Too many open files"), 3);
    QVERIFY(bench.sendAll());
    QCOMPARE(bench.line.received(), block);
    QCOMPARE(bench.finish(), QString());
}

/// The kernel has no room for one more descriptor to wait on.
void tst_Faults::portCannotBeWatched()
{
    FaultBench bench;
    const std::string block = bench.write();
    const int before = descriptors();
    bench.line.setScript(once(Kind::Watch, ENOSPC));
    QVERIFY(!bench.serial->open());
    QCOMPARE(descriptors(), before);
    QCOMPARE(bench.lines("does not open:"), 1);
    QVERIFY(bench.sendAll());
    QCOMPARE(bench.line.received(), block);
    QCOMPARE(bench.finish(), QString());
}

KEL_TEST_MAIN(tst_Faults)
#include "tst_faults.moc"
