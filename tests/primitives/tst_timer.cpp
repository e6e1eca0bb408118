#include "stderrcapture.h"
#include "testmain.h"

#include <pitimer.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <ctime>
#include <functional>
#include <memory>
#include <mutex>
#include <pthread.h>
#include <thread>
#include <vector>

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// Notes when each tick started, then does what the test wants done inside a tick.
class TickTarget : public PIObject
{
public:
    explicit TickTarget(PITimer *timer)
    {
        addHandler("tick", [this] { handle(); });
        piConnectU(timer, "tickEvent", this, "tick", "tst_timer");
    }
    ~TickTarget() override { disconnectAll(); }

    int count() const
    {
        const std::lock_guard lock(m_mutex);
        return int(m_ticks.size());
    }
    std::vector<Clock::time_point> ticks() const
    {
        const std::lock_guard lock(m_mutex);
        return m_ticks;
    }

    std::function<void(int)> inside; // gets the number of the tick, from 1; set before the timer starts

private:
    void handle()
    {
        int number = 0;
        {
            const std::lock_guard lock(m_mutex);
            m_ticks.push_back(Clock::now());
            number = int(m_ticks.size());
        }
        if (inside)
            inside(number);
    }

    mutable std::mutex m_mutex;
    std::vector<Clock::time_point> m_ticks;
};

// The least gap between two ticks that some run of several shows. A tick is noted a moment after the timer began it;
// a busy machine stretches that moment now and then, and the gap to the next tick then looks too short.
template <typename Run>
Clock::duration leastGapOfBestRun(Clock::duration wanted, Run run)
{
    Clock::duration best{0};
    for (int attempt = 0; attempt < 10 && best < wanted; ++attempt) {
        const std::vector<Clock::time_point> ticks = run();
        Clock::duration least = Clock::duration::max();
        for (size_t i = 1; i < ticks.size(); ++i)
            least = std::min(least, ticks[i] - ticks[i - 1]);
        best = std::max(best, least);
    }
    return best;
}

// Lets the timer tick that often.
std::vector<Clock::time_point> ticksOf(PITimer &timer, TickTarget &target, int count)
{
    [&] { QTRY_VERIFY(target.count() >= count); }();
    timer.stop();
    return target.ticks();
}

class tst_Timer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesItself();
    void isIdleAtFirst();
    void ticksOnAThreadOfItsOwn();
    void ticksNeverComeEarly();
    void ticksKeepTheirDistance();
    void lateTicksKeepTheirDistance();
    void missedTicksAreLeftOut();
    void keepsTheGrid();
    void stopsAtOnceWhileIdle();
    void stopWaitsForARunningTick();
    void stopInsideATick();
    void startInsideATick();
    void startAgainBeginsAnew();
    void stoppedTimerStartsAgain();
    void badPeriodIsRefused_data();
    void badPeriodIsRefused();
    void destroyedWhileRunning();
    void destroyedInsideATick();
    void destroyedDuringATick();
    void targetMayDieWhileTicking();
    void usedFromSeveralThreads();
    void idleTimerUsesNoProcessorTime();
    void restLeavesTicksOut();
    void wakeKeepsTheGrid();
    void restAndWakeInsideATick();
    void restAndWakeWithoutAStart();
};

void tst_Timer::namesItself()
{
    const PITimer timer("write timer");
    QVERIFY(timer.name() == "write timer");
    QVERIFY(timer.className() == "PITimer");
    QVERIFY(timer.parentClassName() == "PIObject");
    QVERIFY(timer.hasEvent("tickEvent"));
}

void tst_Timer::isIdleAtFirst()
{
    PITimer timer;
    QVERIFY(!timer.isRunning());
    QCOMPARE(timer.periodMs(), 0);
    timer.stop();
    QVERIFY(timer.start(50));
    QVERIFY(timer.isRunning());
    QCOMPARE(timer.periodMs(), 50);
}

void tst_Timer::ticksOnAThreadOfItsOwn()
{
    PITimer timer;
    TickTarget target(&timer);
    std::atomic<bool> sameThread{false};
    const auto mainThread = std::this_thread::get_id();
    target.inside = [&](int) { sameThread = std::this_thread::get_id() == mainThread; };
    timer.start(5);
    while (target.count() < 2) // no event loop runs here
        std::this_thread::yield();
    timer.stop();
    QVERIFY(!sameThread);
}

void tst_Timer::ticksNeverComeEarly()
{
    PITimer timer;
    TickTarget target(&timer);
    const auto begin = Clock::now();
    timer.start(20);
    QTRY_VERIFY(target.count() >= 8);
    timer.stop();
    const auto ticks = target.ticks();
    for (size_t i = 0; i < ticks.size(); ++i)
        QVERIFY(ticks[i] >= begin + int(i + 1) * milliseconds(20));
}

void tst_Timer::ticksKeepTheirDistance()
{
    constexpr auto Wanted = milliseconds(49) - std::chrono::microseconds(200);
    const auto least = leastGapOfBestRun(Wanted, [] {
        PITimer timer;
        TickTarget target(&timer);
        timer.start(50);
        return ticksOf(timer, target, 10);
    });
    QVERIFY(least >= Wanted);
}

// A signal holds the timer's thread up from about 30 to 90 ms after the first tick, so the second comes
// 40 ms late. The third must not follow it 10 ms later.
void tst_Timer::lateTicksKeepTheirDistance()
{
    struct sigaction old;
    struct sigaction holdUp = {};
    holdUp.sa_handler = [](int) {
        const timespec pause = {0, 60 * 1000 * 1000};
        nanosleep(&pause, nullptr);
    };
    QCOMPARE(sigaction(SIGUSR1, &holdUp, &old), 0);

    constexpr auto Wanted = milliseconds(49) - std::chrono::microseconds(200);
    const auto least = leastGapOfBestRun(Wanted, [] {
        PITimer timer;
        TickTarget target(&timer);
        std::atomic<pthread_t> thread{pthread_t()};
        target.inside = [&](int) { thread = pthread_self(); };
        timer.start(50);
        while (target.count() == 0 || thread == pthread_t())
            std::this_thread::yield();
        std::this_thread::sleep_until(target.ticks()[0] + milliseconds(30));
        pthread_kill(thread, SIGUSR1);
        return ticksOf(timer, target, 8);
    });
    sigaction(SIGUSR1, &old, nullptr);
    QVERIFY(least >= Wanted);
}

void tst_Timer::missedTicksAreLeftOut()
{
    PITimer timer;
    TickTarget target(&timer);
    target.inside = [](int number) {
        if (number == 1)
            std::this_thread::sleep_for(milliseconds(230));
    };
    const auto begin = Clock::now();
    timer.start(50);
    QTRY_VERIFY(target.count() >= 4);
    timer.stop();
    const auto ticks = target.ticks();
    // The first tick fills 50 to 280 ms, so 100 to 250 are lost and 300 is the next.
    QVERIFY(ticks[1] - begin >= milliseconds(300));
    QVERIFY(ticks[2] - begin >= milliseconds(350));
    QVERIFY(ticks[3] - begin >= milliseconds(400));
}

// Each tick takes 7 ms; a timer that counted its period from the end of a tick would fall behind.
void tst_Timer::keepsTheGrid()
{
    PITimer timer;
    TickTarget target(&timer);
    target.inside = [](int) { std::this_thread::sleep_for(milliseconds(7)); };
    const auto begin = Clock::now();
    timer.start(20);

    // However busy the machine, sooner or later late ticks come near their places on the grid.
    const auto comesNear = [&] {
        const auto ticks = target.ticks();
        Clock::duration nearest = milliseconds(20);
        Clock::duration leastGap = milliseconds(100);
        for (size_t i = 20; i < ticks.size(); ++i) {
            nearest = std::min(nearest, (ticks[i] - begin) % milliseconds(20));
            leastGap = std::min(leastGap, ticks[i] - ticks[i - 1]);
        }
        return nearest <= milliseconds(2) && leastGap <= milliseconds(25);
    };
    QTRY_VERIFY(comesNear());
    timer.stop();
}

void tst_Timer::stopsAtOnceWhileIdle()
{
    PITimer timer;
    TickTarget target(&timer);
    const auto begin = Clock::now();
    timer.start(3600 * 1000);
    timer.stop();
    QVERIFY(!timer.isRunning());
    QVERIFY(Clock::now() - begin < std::chrono::minutes(1));
    QCOMPARE(target.count(), 0);
}

void tst_Timer::stopWaitsForARunningTick()
{
    PITimer timer;
    TickTarget target(&timer);
    std::atomic<bool> entered{false};
    std::atomic<bool> left{false};
    target.inside = [&](int) {
        entered = true;
        std::this_thread::sleep_for(milliseconds(50));
        left = true;
    };
    timer.start(5);
    while (!entered)
        std::this_thread::yield();
    timer.stop();
    QVERIFY(left);
    const int count = target.count();
    QTest::qWait(30);
    QCOMPARE(target.count(), count);
}

void tst_Timer::stopInsideATick()
{
    PITimer timer;
    TickTarget target(&timer);
    target.inside = [&](int) { timer.stop(); };
    timer.start(5);
    QTRY_VERIFY(!timer.isRunning());
    QTest::qWait(30);
    QCOMPARE(target.count(), 1);
}

void tst_Timer::startInsideATick()
{
    PITimer timer;
    TickTarget target(&timer);
    target.inside = [&](int) { timer.start(40); };
    timer.start(5);
    const auto leastGap = [&] {
        const auto ticks = target.ticks();
        Clock::duration least = milliseconds(100);
        for (size_t i = 1; i < ticks.size(); ++i)
            least = std::min(least, ticks[i] - ticks[i - 1]);
        return least;
    };
    QTRY_VERIFY(target.count() >= 8 && leastGap() < milliseconds(75)); // not two periods
    timer.stop();
    QCOMPARE(timer.periodMs(), 40);
    QVERIFY(leastGap() >= milliseconds(40));
}

void tst_Timer::startAgainBeginsAnew()
{
    PITimer timer;
    TickTarget target(&timer);
    timer.start(3600 * 1000);
    const auto begin = Clock::now();
    timer.start(30);
    QTRY_VERIFY(target.count() >= 2);
    timer.stop();
    const auto ticks = target.ticks();
    QVERIFY(ticks[0] - begin >= milliseconds(30));
    QVERIFY(ticks[1] - begin >= milliseconds(60));
}

void tst_Timer::stoppedTimerStartsAgain()
{
    PITimer timer;
    TickTarget target(&timer);
    timer.start(5);
    QTRY_VERIFY(target.count() >= 1);
    timer.stop();
    const int count = target.count();
    const auto begin = Clock::now();
    timer.start(25);
    QTRY_VERIFY(target.count() > count);
    timer.stop();
    QVERIFY(target.ticks()[size_t(count)] - begin >= milliseconds(25));
}

void tst_Timer::badPeriodIsRefused_data()
{
    QTest::addColumn<int>("period");
    QTest::newRow("zero") << 0;
    QTest::newRow("negative") << -50;
}

void tst_Timer::badPeriodIsRefused()
{
    QFETCH(int, period);

    const StderrCapture capture;
    PITimer timer("t");
    QVERIFY(!timer.start(period));
    QVERIFY(!timer.isRunning());
    QCOMPARE(capture.lines(), QStringList{QString("PITimer: t cannot start with a period of %1 ms").arg(period)});

    timer.start(50);
    QVERIFY(!timer.start(period));
    QVERIFY(timer.isRunning());
    QCOMPARE(timer.periodMs(), 50);
}

void tst_Timer::destroyedWhileRunning()
{
    for (int i = 0; i < 50; ++i) {
        auto timer = std::make_unique<PITimer>();
        TickTarget target(timer.get());
        timer->start(1);
        if (i % 2)
            std::this_thread::sleep_for(milliseconds(2));
        timer.reset();
        const int count = target.count();
        std::this_thread::sleep_for(milliseconds(2));
        QCOMPARE(target.count(), count);
    }
}

void tst_Timer::destroyedInsideATick()
{
    auto timer = std::make_unique<PITimer>();
    TickTarget target(timer.get());
    std::atomic<bool> deleted{false};
    target.inside = [&](int) {
        timer.reset();
        deleted = true;
    };
    timer->start(2);
    QTRY_VERIFY(deleted);
    QTest::qWait(20);
    QCOMPARE(target.count(), 1);
}

void tst_Timer::destroyedDuringATick()
{
    auto timer = std::make_unique<PITimer>();
    TickTarget target(timer.get());
    PITimer *const raw = timer.get();
    std::atomic<bool> entered{false};
    std::atomic<bool> left{false};
    target.inside = [&](int) {
        entered = true;
        std::this_thread::sleep_for(milliseconds(30));
        raw->start(1); // must not bring a timer back that is being destroyed
        raw->stop();
        left = true;
    };
    timer->start(2);
    while (!entered)
        std::this_thread::yield();
    timer.reset();
    QVERIFY(left);
    QCOMPARE(target.count(), 1);
}

void tst_Timer::targetMayDieWhileTicking()
{
    PITimer timer;
    timer.start(1);
    for (int i = 0; i < 50; ++i) {
        TickTarget target(&timer);
        while (target.count() == 0)
            std::this_thread::yield();
    }
    timer.stop();
}

void tst_Timer::usedFromSeveralThreads()
{
    PITimer timer;
    TickTarget target(&timer);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&timer, i] {
            for (int n = 0; n < 200; ++n) {
                if (i % 2)
                    timer.start(1);
                else
                    timer.stop();
                (void)timer.isRunning();
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    timer.start(1);
    const int count = target.count();
    QTRY_VERIFY(target.count() > count);
    timer.stop();
    QVERIFY(!timer.isRunning());
}

void tst_Timer::idleTimerUsesNoProcessorTime()
{
    PITimer idle;
    PITimer stopped;
    idle.start(3600 * 1000);
    stopped.start(1);
    stopped.stop();

    const std::clock_t before = std::clock();
    std::this_thread::sleep_for(milliseconds(400));
    const double usedMs = 1000.0 * double(std::clock() - before) / CLOCKS_PER_SEC;
    QVERIFY2(usedMs < 12.0, qPrintable(QString::number(usedMs)));
}

void tst_Timer::restLeavesTicksOut()
{
    PITimer timer;
    TickTarget target(&timer);
    target.inside = [&](int) { timer.rest(); };
    timer.start(5);
    QTRY_COMPARE(target.count(), 1);
    QTest::qWait(50);
    QCOMPARE(target.count(), 1);
    QVERIFY(timer.isRunning());
    timer.wake();
    QTRY_COMPARE(target.count(), 2);
    timer.start(5); // ends a rest as well
    QTRY_COMPARE(target.count(), 3);
}

void tst_Timer::wakeKeepsTheGrid()
{
    PITimer timer;
    TickTarget target(&timer);
    target.inside = [&](int) { timer.rest(); };
    const auto begin = Clock::now();
    timer.start(50);
    const auto started = Clock::now();
    QTRY_COMPARE(target.count(), 1);
    QTest::qWait(120); // rests over two periods
    const auto woken = Clock::now();
    timer.wake();
    QTRY_COMPARE(target.count(), 2);
    const auto second = target.ticks().at(1);
    const auto sinceBegin = second - begin;
    // At its place on the grid, not at once, and never before. The grid begins between begin and started.
    const auto nextOnGrid = begin + ((woken - started) / milliseconds(50) + 1) * milliseconds(50);
    QVERIFY(second >= nextOnGrid);
    QVERIFY(sinceBegin >= milliseconds(200));
}

void tst_Timer::restAndWakeInsideATick()
{
    constexpr auto Wanted = milliseconds(19);
    const auto least = leastGapOfBestRun(Wanted, [] {
        PITimer timer;
        TickTarget target(&timer);
        target.inside = [&](int) {
            timer.rest();
            timer.wake();
        };
        timer.start(20);
        return ticksOf(timer, target, 6);
    });
    QVERIFY(least >= Wanted);
}

void tst_Timer::restAndWakeWithoutAStart()
{
    PITimer timer;
    timer.rest();
    timer.wake();
    QVERIFY(!timer.isRunning());
    timer.start(5);
    timer.stop();
    timer.rest();
    timer.wake();
    QVERIFY(!timer.isRunning());
}

KEL_TEST_MAIN(tst_Timer)
#include "tst_timer.moc"
