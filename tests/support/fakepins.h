/// \file
/// Pins without hardware.
#pragma once

#include <pigpio.h>

#include <chrono>
#include <memory>
#include <vector>

/// Records what is done to the pins while it exists, and takes the place of the machine's chip.
class FakePins
{
public:
    using Clock = std::chrono::steady_clock;

    enum class Call { Init, Set };

    struct Record {
        Clock::time_point time; ///< When the call was made.
        Call call = Call::Set;
        int pin = 0;
        bool isHigh = false;                      ///< The level, for Call::Set.
        PIGPIO::Direction direction = PIGPIO::In; ///< For Call::Init.
    };

    /// How the pins answer.
    enum class Mood { Works, Fails, Throws };

    FakePins();
    ~FakePins(); ///< Brings back the machine's chip.

    FakePins(const FakePins &) = delete;
    FakePins &operator=(const FakePins &) = delete;

    std::vector<Record> records() const; ///< In order. Any thread.
    void clear();
    void setMood(Mood mood); ///< Calls are recorded in every mood.

    /// How long the last high pulse of \a pin lasted; 0 when there was none.
    std::chrono::microseconds lastPulse(int pin) const;

private:
    struct State;
    class RecordingBackend;

    std::shared_ptr<State> m_state;
};
