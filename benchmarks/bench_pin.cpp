// How late the pin of a line driver is released: the queued port beside a plain loop that sleeps.
#include <gserial.h>
#include <pigpio.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
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

constexpr int DefaultFrames = 10000;
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
        if (::read(master, got, sizeof got) != ssize_t(sizeof got) || std::memcmp(got, Frame, sizeof got) != 0) {
            std::fprintf(stderr, "bench_pin: a frame did not arrive\n");
            std::exit(EXIT_FAILURE);
        }
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

double percentile(std::vector<double> &sorted, double part)
{
    return sorted[std::min(sorted.size() - 1, size_t(double(sorted.size()) * part))];
}

void printRow(const char *name, std::vector<double> &lateness)
{
    std::sort(lateness.begin(), lateness.end());
    std::printf("%-22s %10.1f %10.1f %10.1f %10.1f\n", name, lateness.front(), percentile(lateness, 0.5),
                percentile(lateness, 0.99), lateness.back());
}

int frameCount(int argc, char **argv)
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "--frames") == 0)
            return std::max(1, std::atoi(argv[i + 1]));
    }
    return DefaultFrames;
}

} // namespace

int main(int argc, char **argv)
{
    const int frames = frameCount(argc, argv);
    auto backend = std::make_unique<TimedPin>();
    const TimedPin &pin = *backend;
    PIGPIO::setBackend(std::move(backend));

    const Line queuedLine;
    PIGSerial queued;
    queued.configureFromFullPathDevice(PIString("18:0:1:") + queuedLine.path + ":" + PIString::fromNumber(Speed));
    const Line plainLine;
    const int plain = ::open(plainLine.path.c_str(), O_RDWR | O_NOCTTY);
    if (!queued.open() || plain < 0)
        return EXIT_FAILURE;

    std::vector<double> queuedLateness;
    std::vector<double> plainLateness;
    const PIByteArray block(Frame, sizeof Frame);
    for (int i = 0; i < frames; ++i) {
        queued._write(block);
        queuedLateness.push_back(pin.latenessUs());
        queuedLine.expectFrame();
        sendPlainly(plain);
        plainLateness.push_back(pin.latenessUs());
        plainLine.expectFrame();
    }

    std::printf("Lateness of the pin's release, microseconds: %d frames of %zu bytes at %d baud\n", frames,
                sizeof Frame, Speed);
    std::printf("%-22s %10s %10s %10s %10s\n", "", "least", "p50", "p99", "most");
    printRow("PIGSerial", queuedLateness);
    printRow("write and nanosleep", plainLateness);
    ::close(plain);
    return queuedLateness.front() < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}
