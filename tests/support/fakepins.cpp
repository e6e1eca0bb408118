#include "fakepins.h"

#include <mutex>
#include <stdexcept>

struct FakePins::State {
    mutable std::mutex mutex;
    std::vector<Record> records;
    Mood mood = Mood::Works;
};

class FakePins::RecordingBackend : public PIGPIO::Backend
{
public:
    explicit RecordingBackend(std::shared_ptr<State> state)
        : m_state(std::move(state))
    {
    }

    bool initPin(int pin, PIGPIO::Direction direction) override
    {
        return record({Clock::now(), Call::Init, pin, false, direction});
    }

    bool pinSet(int pin, bool high) override { return record({Clock::now(), Call::Set, pin, high, PIGPIO::Out}); }

private:
    bool record(const Record &call)
    {
        const std::lock_guard<std::mutex> lock(m_state->mutex);
        m_state->records.push_back(call);
        if (m_state->mood == Mood::Throws)
            throw std::runtime_error("the pins throw");
        return m_state->mood == Mood::Works;
    }

    std::shared_ptr<State> m_state;
};

FakePins::FakePins()
    : m_state(std::make_shared<State>())
{
    PIGPIO::setBackend(std::make_unique<RecordingBackend>(m_state));
}

FakePins::~FakePins()
{
    PIGPIO::setBackend(nullptr);
}

std::vector<FakePins::Record> FakePins::records() const
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    return m_state->records;
}

void FakePins::clear()
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    m_state->records.clear();
}

void FakePins::setMood(Mood mood)
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    m_state->mood = mood;
}

std::chrono::microseconds FakePins::lastPulse(int pin) const
{
    std::chrono::microseconds length{0};
    Clock::time_point begin{};
    for (const Record &record : records()) {
        if (record.pin != pin || record.call != Call::Set)
            continue;
        if (record.isHigh)
            begin = record.time;
        else if (begin != Clock::time_point{})
            length = std::chrono::duration_cast<std::chrono::microseconds>(record.time - begin);
    }
    return length;
}
