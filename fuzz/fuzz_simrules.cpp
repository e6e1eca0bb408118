// Any bytes as simulator rules: reading ends with rules or one line, and rules answer any message.

#include <simulator/simulateddevice.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), int(size));
    const SimulatorRules rules = SimulatorRules::fromText(text, QStringLiteral("rules"));
    if (rules.error.contains(QLatin1Char('\n')) || (rules.error.isEmpty() && rules.devices.isEmpty()))
        std::abort();
    if (!rules.error.isEmpty())
        return 0;

    for (const SimulatorDeviceRules &deviceRules : rules.devices) {
        if (!SimulatedDevice::firstBadExpression(deviceRules, QStringLiteral("rules")).isEmpty())
            return 0;
        SimulatedDevice device(deviceRules);
        for (int length = 0; length < 6; ++length)
            device.answer(text.left(length));
        for (int i = 0; i < deviceRules.reports.size(); ++i)
            device.report(i);
    }
    return 0;
}
