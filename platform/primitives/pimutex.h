/// \file
/// Mutual exclusion that forgives a stray unlock.
#pragma once

#include <atomic>
#include <mutex>
#include <thread>

/// A mutex for any number of threads. Unlocking it on a thread that does not hold it has no effect,
/// so a clean-up that unlocks "in any case" can never take the lock from another thread. A thread
/// that holds it must not lock it again. Fits std::lock_guard.
class PIMutex
{
public:
    PIMutex() = default;
    PIMutex(const PIMutex &) = delete;
    PIMutex &operator=(const PIMutex &) = delete;

    void lock()
    {
        m_mutex.lock();
        m_holder = std::this_thread::get_id();
    }

    /// Whether the mutex was free and is now held.
    bool try_lock()
    {
        if (!m_mutex.try_lock())
            return false;
        m_holder = std::this_thread::get_id();
        return true;
    }

    void unlock()
    {
        // Only this thread can have stored its own id here, so finding it proves that it holds the lock.
        if (m_holder != std::this_thread::get_id())
            return;
        m_holder = std::thread::id();
        m_mutex.unlock();
    }

private:
    std::mutex m_mutex;
    std::atomic<std::thread::id> m_holder{std::thread::id()};
};
