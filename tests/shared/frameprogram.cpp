// Sends frames with a pin whose levels go to a file, and kills itself at one step of them.
//   frameprogram PORT PINLOG STEP
// Ends with 0 when the step never came.

#include "faultyline.h"

#include <gserial.h>
#include <pigpio.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string>
#include <unistd.h>

namespace
{

std::atomic<int> stepsLeft{0};
std::atomic<bool> isInFrame{false};

void step()
{
    if (isInFrame && --stepsLeft == 0)
        ::kill(::getpid(), SIGKILL);
}

/// One character per action, "I" for the set-up and "H" or "L" for a level. Written at once: what the
/// pin has seen outlives the program.
class PinLog : public PIGPIO::Backend
{
public:
    explicit PinLog(const char *path)
        : m_descriptor(::open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600))
    {
    }
    ~PinLog() override { ::close(m_descriptor); }

    bool initPin(int, PIGPIO::Direction) override { return note('I'); }

    bool pinSet(int, bool high) override
    {
        step();
        const bool isNoted = note(high ? 'H' : 'L');
        step();
        return isNoted;
    }

private:
    bool note(char action) const { return ::write(m_descriptor, &action, 1) == 1; }

    int m_descriptor;
};

/// Before and after each call on the line, and in the middle of the hold.
FaultyLine::Answer beforeCall(const FaultyLine::Call &call)
{
    if (call.kind == FaultyLine::Kind::Read)
        return FaultyLine::Answer::pass();
    step();
    return call.kind == FaultyLine::Kind::Write ? FaultyLine::Answer::limit(4) : FaultyLine::Answer::pass();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4)
        return 2;
    stepsLeft = std::atoi(argv[3]);
    PIGPIO::setBackend(std::make_unique<PinLog>(argv[2]));
    watchLine(argv[1], beforeCall);
    setSleepWatch(step);

    PIGSerial serial;
    const std::string text = std::string("18:0:1:") + argv[1] + ":115200:8:N:1";
    serial.configureFromFullPathDevice(text.c_str());
    if (!serial.open())
        return 3;
    serial.write("first frame.", 12);
    serial.write("second frame", 12);
    isInFrame = true;
    serial.tickWrite();
    serial.tickWrite();
    isInFrame = false;
    return 0;
}
