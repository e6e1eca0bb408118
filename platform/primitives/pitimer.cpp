#include "pitimer.h"

#include "picout.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

using Clock = std::chrono::steady_clock;

// What timer and thread share. The thread holds it too, so a tick that deletes its timer can return.
class PITimer::Clockwork : public std::enable_shared_from_this<PITimer::Clockwork>
{
public:
    explicit Clockwork(std::function<void()> tick)
        : m_tick(std::move(tick))
    {
    }

    bool start(std::chrono::milliseconds period)
    {
        const std::lock_guard lock(m_mutex);
        if (m_finished || !ensureThread())
            return false;
        m_period = period;
        m_running = true;
        m_resting = false;
        m_begin = Clock::now();
        m_index = 1;
        m_due = m_begin + m_period;
        m_changed.notify_all();
        return true;
    }

    void stop()
    {
        std::unique_lock lock(m_mutex);
        m_running = false;
        m_changed.notify_all();
        waitForTick(lock);
    }

    void finish()
    {
        std::unique_lock lock(m_mutex);
        m_running = false;
        m_finished = true;
        m_changed.notify_all();
        std::thread thread = std::move(m_thread);
        const bool insideTick = isOwnThread();
        lock.unlock();
        if (!thread.joinable())
            return;
        if (insideTick)
            thread.detach();
        else
            thread.join();
    }

    void rest()
    {
        const std::lock_guard lock(m_mutex);
        m_resting = true;
    }

    void wake()
    {
        const std::lock_guard lock(m_mutex);
        if (!m_resting)
            return;
        m_resting = false;
        // What was due meanwhile is left out. A tick that runs now decides itself when the next is due.
        const Clock::time_point now = Clock::now();
        if (m_running && !m_ticking && m_due <= now) {
            m_index = (now - m_begin) / m_period + 1;
            m_due = m_begin + m_index * m_period;
        }
        m_changed.notify_all();
    }

    bool isRunning() const
    {
        const std::lock_guard lock(m_mutex);
        return m_running;
    }

    std::chrono::milliseconds period() const
    {
        const std::lock_guard lock(m_mutex);
        return std::chrono::duration_cast<std::chrono::milliseconds>(m_period);
    }

private:
    // The thread is made with the first start, and the system may have none left.
    bool ensureThread()
    {
        if (m_thread.joinable())
            return true;
        try {
            m_thread = std::thread([self = shared_from_this()] { self->work(); });
        } catch (const std::system_error &) {
            return false;
        }
        return true;
    }

    bool isOwnThread() const { return m_threadId == std::this_thread::get_id(); }

    // Only for the tick that runs now: a handler that starts the timer anew must not keep us here.
    void waitForTick(std::unique_lock<std::mutex> &lock)
    {
        if (!m_ticking || isOwnThread())
            return;
        const unsigned long long tick = m_tickCount;
        m_tickEnded.wait(lock, [&] { return !m_ticking || m_tickCount != tick; });
    }

    void work()
    {
        std::unique_lock lock(m_mutex);
        m_threadId = std::this_thread::get_id();
        while (!m_finished) {
            if (!m_running || m_resting)
                m_changed.wait(lock);
            else if (Clock::now() < m_due)
                m_changed.wait_until(lock, m_due);
            else
                runTick(lock);
        }
    }

    void runTick(std::unique_lock<std::mutex> &lock)
    {
        const Clock::time_point begin = m_begin;
        m_ticking = true;
        ++m_tickCount;
        lock.unlock();
        const Clock::time_point ticked = Clock::now();
        m_tick();
        lock.lock();
        m_ticking = false;
        m_tickEnded.notify_all();
        if (m_begin == begin)
            scheduleAfter(ticked);
    }

    void scheduleAfter(Clock::time_point ticked)
    {
        const auto leastGap = m_period - std::min<Clock::duration>(m_period / 50, std::chrono::milliseconds(1));
        m_index = std::max(m_index + 1, (Clock::now() - m_begin) / m_period + 1);
        m_due = std::max(m_begin + m_index * m_period, ticked + leastGap);
    }

    const std::function<void()> m_tick;
    mutable std::mutex m_mutex; // guards all that follows; never held while the tick runs
    std::condition_variable m_changed;
    std::condition_variable m_tickEnded;
    std::thread m_thread;
    std::thread::id m_threadId;
    Clock::duration m_period{0};
    Clock::time_point m_begin;
    Clock::time_point m_due;
    Clock::rep m_index = 0; // of the next tick, counted from m_begin
    unsigned long long m_tickCount = 0;
    bool m_running = false;
    bool m_resting = false;
    bool m_ticking = false;
    bool m_finished = false;
};

PITimer::PITimer(const PIString &name)
    : PIObject(name)
    , m_clockwork(std::make_shared<Clockwork>([this] { raiseEvent("tickEvent"); }))
{
    addEvent("tickEvent");
}

PITimer::~PITimer()
{
    m_clockwork->finish();
}

bool PITimer::start(int periodMs)
{
    const bool started = periodMs > 0 && m_clockwork->start(std::chrono::milliseconds(periodMs));
    if (!started)
        PICout(piDebug) << "PITimer:" << name() << "cannot start with a period of" << periodMs << "ms";
    return started;
}

void PITimer::stop()
{
    m_clockwork->stop();
}

void PITimer::rest()
{
    m_clockwork->rest();
}

void PITimer::wake()
{
    m_clockwork->wake();
}

bool PITimer::isRunning() const
{
    return m_clockwork->isRunning();
}

int PITimer::periodMs() const
{
    return int(m_clockwork->period().count());
}
