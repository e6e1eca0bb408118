// Command texts: the first byte is the device id, the rest the text.

#include <commandtext.h>
#include <commandtextfault.h>
#include <pibytearray.h>
#include <pievaluator.h>

#include <cstdint>
#include <cstdlib>

namespace
{

void require(bool holds)
{
    if (!holds)
        std::abort();
}

int tokenCount(const QString &text)
{
    return text.split(QLatin1Char(' '), Qt::SkipEmptyParts).size();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static PIEvaluator evaluator;
    evaluator.content().addVariable("a0", 200.0);
    evaluator.content().addVariable("a1", 300.0);
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const int deviceID = input.isEmpty() ? -1 : static_cast<signed char>(input.at(0));
    const QString text = QString::fromUtf8(input.mid(1));

    QMap<int, int> arguments{{0, 200}, {1, 300}};
    int errors = 0;
    const auto countError = [&errors](const QString &error) {
        require(!error.isEmpty());
        ++errors;
    };
    const CommandText command = CommandText::fromText(text);
    const PIByteArray bytes = command.bytes(arguments, deviceID, evaluator, countError);
    require(bytes.size() + errors == tokenCount(text));

    // A fault stands in the text and has a reason.
    const QVector<TextFault> faults = findCommandFaults(text);
    for (const TextFault &fault : faults)
        require(text.contains(fault.word.section(QLatin1Char(' '), 0, 0)) && !fault.reason.isEmpty());

    // A second sending finds the same arguments, and gives the same bytes.
    require(command.bytes(arguments, deviceID, evaluator) == bytes);
    return 0;
}
