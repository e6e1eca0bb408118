#include "pisleep.h"

#include <chrono>
#include <thread>

namespace
{

// A sleeping thread is woken late by the timer slack and the scheduler, rarely by more than this.
constexpr auto SpinTime = std::chrono::microseconds(200);

} // namespace

void piUSleep(long long microseconds)
{
    if (microseconds <= 0)
        return;

    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::microseconds(microseconds);
    std::this_thread::sleep_until(end - SpinTime);
    while (Clock::now() < end) {
    }
}
