#include "faultbench.h"
#include "testmain.h"

#include <atomic>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace
{

constexpr int Writers = 4;
constexpr int BlocksOfAWriter = 25000;
constexpr int SpeedWithoutWait = 2000000000;

/// Threads that do one thing again and again until the test has enough.
class Crowd
{
public:
    ~Crowd() { end(); }

    void add(std::function<void()> action)
    {
        m_threads.emplace_back([this, action = std::move(action)] {
            while (!m_isEnough)
                action();
        });
    }

    void end()
    {
        m_isEnough = true;
        for (std::thread &thread : m_threads)
            thread.join();
        m_threads.clear();
    }

private:
    std::atomic<bool> m_isEnough{false};
    std::vector<std::thread> m_threads;
};

/// Runs the writers to their end; returns what they wrote.
LineBooks writeFromThreads(PIGSerial &serial)
{
    std::vector<LineBooks> books(Writers);
    std::vector<std::thread> writers;
    for (int writer = 0; writer < Writers; ++writer) {
        writers.emplace_back([&serial, &mine = books[size_t(writer)], writer] {
            for (int i = 0; i < BlocksOfAWriter; ++i) {
                const std::string block = mine.next(writer);
                serial.write(block.data(), int(block.size()));
            }
        });
    }
    LineBooks all;
    for (int writer = 0; writer < Writers; ++writer) {
        writers[size_t(writer)].join();
        all.add(books[size_t(writer)]);
    }
    return all;
}

} // namespace

class tst_FaultThreads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writersAgainstOpenAndClose();
    void writersAgainstAVanishingPort();
};

/// What waits at the end is told when the device goes.
void tst_FaultThreads::writersAgainstOpenAndClose()
{
    FaultBench bench(SpeedWithoutWait);
    Crowd crowd;
    std::atomic<int> openings{0};
    crowd.add([&] {
        openings += bench.serial->open() ? 1 : 0;
        std::this_thread::sleep_for(2ms);
        bench.serial->close();
    });
    for (int ticker = 0; ticker < 2; ++ticker) {
        crowd.add([&] {
            bench.tick(20);
            std::this_thread::sleep_for(100us); // lets the others in
        });
    }
    crowd.add([&] {
        bench.line.readTaken();
        std::this_thread::sleep_for(100us);
    });
    bench.books = writeFromThreads(*bench.serial);
    waitUntil([&] { return openings >= 50; });
    crowd.end();
    QVERIFY(openings >= 50);
    QCOMPARE(bench.finish(), QString());
    QCOMPARE(bench.books.count(), size_t(Writers) * BlocksOfAWriter);
    QVERIFY(bench.lines("is lost:") == bench.lines("is no longer used:"));
    QVERIFY(bench.lines("is lost:") < Writers * BlocksOfAWriter);
}

/// Nothing waits at the end, and nobody but the port itself loses a block.
void tst_FaultThreads::writersAgainstAVanishingPort()
{
    FaultBench bench(SpeedWithoutWait);
    QVERIFY(bench.serial->open());
    Crowd crowd;
    std::atomic<int> departures{0};
    crowd.add([&] {
        std::this_thread::sleep_for(5ms);
        bench.line.vanish();
        waitUntil([&] { return !bench.serial->isOpened(); });
        bench.line.comeBack();
        ++departures;
        waitUntil([&] { return bench.serial->isOpened(); });
    });
    for (int ticker = 0; ticker < 2; ++ticker) {
        crowd.add([&] {
            bench.tick(20);
            bench.line.readTaken();
            std::this_thread::sleep_for(100us);
        });
    }
    bench.books = writeFromThreads(*bench.serial);
    waitUntil([&] { return departures >= 5; });
    crowd.end();
    QVERIFY(departures >= 5);
    QVERIFY(bench.sendAll());
    QCOMPARE(bench.finish(), QString());
    QCOMPARE(bench.lines("is no longer used:"), 0);
}

KEL_TEST_MAIN(tst_FaultThreads)
#include "tst_faultthreads.moc"
