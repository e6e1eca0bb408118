/// \file
/// Slow or stuck.
#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

/// Tells a slow line from one that stands still. For one write or one closing, on one thread.
class LineProgress
{
public:
    using Clock = std::chrono::steady_clock;

    explicit LineProgress(std::chrono::microseconds byteTime)
        : m_byteTime(byteTime)
    {
    }

    /// Notes the bytes that are \a unsent in the kernel; fewer than before is progress. Unknown is none.
    void note(std::optional<int> unsent)
    {
        if (!unsent)
            return;
        if (*unsent < m_unsent)
            advance();
        m_unsent = *unsent;
    }

    void advance() { m_last = Clock::now(); }

    bool isStalled(bool isHurried) const
    {
        const auto silence = Clock::now() - m_last;
        return isHurried ? silence >= HurriedLimit + m_byteTime * std::min(m_unsent, HurriedStep)
                         : silence >= Limit + m_byteTime * DriverBuffer;
    }

private:
    /// A line that takes nothing for this long, and for the wire time of what a driver buffers, is stuck.
    static constexpr std::chrono::seconds Limit{10};
    static constexpr int DriverBuffer = 4096;

    /// The same for a link that is about to close. USB adapters report progress in steps of this size.
    static constexpr std::chrono::milliseconds HurriedLimit{60};
    static constexpr int HurriedStep = 512;

    std::chrono::microseconds m_byteTime;
    Clock::time_point m_last = Clock::now();
    int m_unsent = 0;
};
