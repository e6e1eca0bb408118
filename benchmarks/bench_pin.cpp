// How late the pin of a line driver is released: the queued port beside a plain loop that writes, sleeps
// for the time that the frame needs, and releases, as libraries for field buses do it without a delay of
// their own. The frames take turns, so that both meet the same machine.
#include "comparison.h"
#include "subjects.h"

#include <gserial.h>
#include <pigpio.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <string>
#include <termios.h>
#include <time.h>
#include <unistd.h>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int UsualFrames = 10000;
constexpr int LongFrames = 100000;
constexpr int Speed = 9600;
constexpr char Frame[] = {0x01, 0x03, 0x7F};
constexpr long long HoldUs = 10LL * sizeof(Frame) * 1000000 / Speed;

/// Keeps the times of the last pulse.
class TimedPin : public PIGPIO::Backend
{
public:
    bool initPin(int, PIGPIO::Direction) override { return true; }
    bool pinSet(int, bool high) override
    {
        (high ? m_raised : m_released) = Clock::now();
        return true;
    }

    double latenessUs() const
    {
        return std::chrono::duration<double, std::micro>(m_released - m_raised).count() - HoldUs;
    }

private:
    Clock::time_point m_raised;
    Clock::time_point m_released;
};

/// A pseudo terminal; its far end is emptied between the frames.
struct Line {
    int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    std::string path;

    Line()
    {
        char name[64] = "";
        if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0 ||
            ::ptsname_r(master, name, sizeof name) != 0)
            std::abort();
        termios settings{};
        ::tcgetattr(master, &settings);
        ::cfmakeraw(&settings);
        ::tcsetattr(master, TCSANOW, &settings);
        path = name;
    }
    ~Line() { ::close(master); }

    void expectFrame() const
    {
        char got[sizeof(Frame)];
        require(::read(master, got, sizeof got) == ssize_t(sizeof got) && std::memcmp(got, Frame, sizeof got) == 0,
                "a frame did not arrive");
    }
};

/// What a loop without a device of its own does: raise, write, sleep, release.
void sendPlainly(int descriptor)
{
    PIGPIO::pinSet(1, true);
    if (::write(descriptor, Frame, sizeof Frame) != ssize_t(sizeof Frame))
        std::abort();
    const timespec hold{0, HoldUs * 1000};
    ::nanosleep(&hold, nullptr);
    PIGPIO::pinSet(1, false);
}

double percentile(const std::vector<double> &sorted, double part)
{
    return sorted[std::min(sorted.size() - 1, size_t(double(sorted.size()) * part))];
}

/// How late each frame was released, in microseconds and in order of size.
struct Lateness {
    std::vector<double> queued;
    std::vector<double> plain;
};

Lateness sendFrames(int frames, PIGSerial &port, const Line &portLine, int plain, const Line &plainLine,
                    const TimedPin &pin)
{
    Lateness lateness;
    const PIByteArray block(Frame, sizeof Frame);
    for (int i = 0; i < frames; ++i) {
        port._write(block);
        lateness.queued.push_back(pin.latenessUs());
        portLine.expectFrame();
        sendPlainly(plain);
        lateness.plain.push_back(pin.latenessUs());
        plainLine.expectFrame();
    }
    std::sort(lateness.queued.begin(), lateness.queued.end());
    std::sort(lateness.plain.begin(), lateness.plain.end());
    return lateness;
}

Lateness measureLateness(int frames)
{
    auto backend = std::make_unique<TimedPin>();
    const TimedPin &pin = *backend;
    PIGPIO::setBackend(std::move(backend));

    const Line queuedLine;
    PIGSerial queued;
    queued.configureFromFullPathDevice(PIString("18:0:1:") + queuedLine.path + ":" + PIString::fromNumber(Speed));
    const Line plainLine;
    const int plain = ::open(plainLine.path.c_str(), O_RDWR | O_NOCTTY);
    require(queued.open() && plain >= 0, "a pseudo terminal does not open");
    Lateness lateness = sendFrames(frames, queued, queuedLine, plain, plainLine, pin);
    ::close(plain);
    return lateness;
}

} // namespace

void benchPin()
{
    constexpr double NsPerUs = 1000.0;
    const int frames = benchmarkOptions().isLong ? LongFrames : UsualFrames;
    const Lateness lateness = measureLateness(frames);
    const auto row = [&](const std::string &name, double part, std::optional<double> goal) {
        report({"pin late, " + name + " of " + std::to_string(frames), "PIGSerial",
                percentile(lateness.queued, part) * NsPerUs, "write and nanosleep",
                percentile(lateness.plain, part) * NsPerUs, goal});
    };
    row("least", 0.0, std::nullopt);
    row("p50", 0.5, 0.2);
    row("p99", 0.99, 0.5);
    row("most", 1.0, std::nullopt);
    require(lateness.queued.front() >= 0, "the pin of a queued port was released early");
}
