/// \file
/// Scripts for a line whose calls go wrong.
#pragma once

#include "faultbench.h"

#include <atomic>
#include <cerrno>
#include <sys/ioctl.h>

/// Fails every other call of \a kind with \a error.
inline FaultyLine::Script everyOther(FaultyLine::Kind kind, int error)
{
    const auto count = std::make_shared<std::atomic<int>>(0);
    return [=](const FaultyLine::Call &call) {
        return call.kind == kind && (*count)++ % 2 == 0 ? FaultyLine::Answer::fail(error) : FaultyLine::Answer::pass();
    };
}

/// Fails call \a number of \a kind with \a error.
inline FaultyLine::Script once(FaultyLine::Kind kind, int error, int number = 0)
{
    const auto count = std::make_shared<std::atomic<int>>(0);
    return [=](const FaultyLine::Call &call) {
        return call.kind == kind && (*count)++ == number ? FaultyLine::Answer::fail(error) : FaultyLine::Answer::pass();
    };
}

/// A driver that takes everything and sends nothing.
inline FaultyLine::Script driverThatKeeps()
{
    const auto kept = std::make_shared<std::atomic<int>>(0);
    return [=](const FaultyLine::Call &call) {
        if (call.kind == FaultyLine::Kind::Write) {
            *kept += int(call.bytes.size());
            return FaultyLine::Answer::pretend(int(call.bytes.size()));
        }
        if (call.kind == FaultyLine::Kind::Ioctl && call.request == TIOCOUTQ) {
            *static_cast<int *>(call.argument) = *kept;
            return FaultyLine::Answer::pretend(0);
        }
        return FaultyLine::Answer::pass();
    };
}

/// Keeps the first call of a kind until it is let go.
class Stop
{
public:
    FaultyLine::Script script(FaultyLine::Kind kind, FaultyLine::Answer answer)
    {
        return [this, kind, answer](const FaultyLine::Call &call) {
            if (call.kind != kind || m_isReached.exchange(true))
                return FaultyLine::Answer::pass();
            waitUntil([this] { return m_isLetGo.load(); });
            return answer;
        };
    }
    bool await() const
    {
        return waitUntil([this] { return m_isReached.load(); });
    }
    void letGo() { m_isLetGo = true; }

private:
    std::atomic<bool> m_isReached{false};
    std::atomic<bool> m_isLetGo{false};
};
