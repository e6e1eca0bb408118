// Any bytes as the full path of a device: it is refused with a line, or makes a device that is described by a path
// which makes the same device again. Pins are driven only as the path says.

#include "require.h"

#include <gserial.h>
#include <pigpio.h>

#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{

struct PinCall {
    bool isInit = false;
    int pin = 0;
    bool isHighOrOut = false;
};

std::vector<PinCall> pinCalls;

/// Pins that only remember; the machine's own are left alone.
class RememberedPins : public PIGPIO::Backend
{
public:
    bool initPin(int pin, PIGPIO::Direction direction) override
    {
        pinCalls.push_back({true, pin, direction == PIGPIO::Out});
        return true;
    }
    bool pinSet(int pin, bool high) override
    {
        pinCalls.push_back({false, pin, high});
        return true;
    }
};

/// Console lines go nowhere: bad paths are meant to be reported, millions of times.
class SilentConsole
{
public:
    SilentConsole()
        : m_kept(dup(STDERR_FILENO))
    {
        static const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDERR_FILENO);
    }
    ~SilentConsole()
    {
        dup2(m_kept, STDERR_FILENO);
        close(m_kept);
    }

    SilentConsole(const SilentConsole &) = delete;
    SilentConsole &operator=(const SilentConsole &) = delete;

private:
    int m_kept;
};

std::unique_ptr<PIIODevice> makeDevice(const PIString &path)
{
    const SilentConsole silence;
    pinCalls.clear();
    return std::unique_ptr<PIIODevice>(PIIODevice::createFromFullPath(path));
}

void requirePins(const PIGSerial &serial)
{
    if (serial.pin() <= 0)
        return require(pinCalls.empty(), "without a pin none is touched");
    require(pinCalls.size() == 2, "a pin is set up and set, once");
    require(pinCalls[0].isInit && pinCalls[0].isHighOrOut && pinCalls[0].pin == serial.pin(), "the pin is an output");
    require(!pinCalls[1].isInit && pinCalls[1].pin == serial.pin(), "the same pin is set");
    require(pinCalls[1].isHighOrOut == (serial.readLevel() != 0), "the pin rests at its read level");
}

void requireSameAgain(const PIIODevice &device)
{
    PIString text;
    {
        const SilentConsole silence;
        text = device.constructFullPath();
    }
    if (text.isEmpty()) // settings that no path has room for
        return;
    const std::unique_ptr<PIIODevice> again = makeDevice(text);
    require(again != nullptr, "a device's own path is well formed");
    require(again->constructFullPath() == text, "a path's device has that path");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool pinsAreOurs = (PIGPIO::setBackend(std::make_unique<RememberedPins>()), true);
    require(pinsAreOurs, "no pin of this machine is touched");

    const PIString path = PIString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    const PIString error = PIIODevice::fullPathError(path);
    const std::unique_ptr<PIIODevice> device = makeDevice(path);
    require((device == nullptr) == !error.isEmpty(), "what is refused makes no device");
    if (!device)
        return 0;
    if (const auto *serial = dynamic_cast<const PIGSerial *>(device.get()))
        requirePins(*serial);
    requireSameAgain(*device);
    return 0;
}
