#include "pigpio.h"

#include "gpiochip.h"
#include "picout.h"

#include <cstdlib>
#include <mutex>
#include <set>
#include <utility>

namespace
{

struct Pins {
    std::mutex mutex;
    std::unique_ptr<PIGPIO::Backend> backend;
    std::set<int> failing; ///< Pins whose failure has been told.
};

/// Never destroyed: a port that closes while the process ends still sets its pin back.
Pins &pins()
{
    static Pins *const all = new Pins;
    return *all;
}

PIGPIO::Backend &backendOf(Pins &all)
{
    if (!all.backend) {
        const char *chip = std::getenv("KEL_GPIO_CHIP");
        all.backend = std::make_unique<GpioChip>(chip && *chip ? chip : "gpiochip0");
    }
    return *all.backend;
}

template <typename Call>
bool callBackend(Pins &all, Call call)
{
    try {
        return call(backendOf(all));
    } catch (...) {
        return false;
    }
}

} // namespace

PIGPIO::Backend::~Backend() = default;

bool PIGPIO::initPin(int pin, Direction direction)
{
    Pins &all = pins();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.failing.erase(pin);
    const bool isReady = callBackend(all, [=](Backend &backend) { return backend.initPin(pin, direction); });
    if (!isReady)
        PICout(piDebug) << "Pin" << pin << "is not set up";
    return isReady;
}

bool PIGPIO::pinSet(int pin, bool high)
{
    Pins &all = pins();
    const std::lock_guard<std::mutex> lock(all.mutex);
    const bool isSet = callBackend(all, [=](Backend &backend) { return backend.pinSet(pin, high); });
    if (isSet)
        all.failing.erase(pin);
    else if (all.failing.insert(pin).second)
        PICout(piDebug) << "Pin" << pin << "does not take its level";
    return isSet;
}

void PIGPIO::setBackend(std::unique_ptr<Backend> backend)
{
    Pins &all = pins();
    std::unique_ptr<Backend> before;
    {
        const std::lock_guard<std::mutex> lock(all.mutex);
        before = std::exchange(all.backend, std::move(backend));
        all.failing.clear();
    }
}
