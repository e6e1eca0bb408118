// Answer patterns: the first byte is the device id, the next line the text, the rest a message.

#include <answerpattern.h>
#include <commandtextfault.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace
{

void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// A message of the pattern's own: fixed bytes as they are, 7 for what is captured.
QByteArray answerTo(const AnswerPattern &pattern, bool &possible)
{
    QByteArray message;
    possible = true;
    for (const int element : pattern.elements()) {
        possible = possible && element <= 0xFF;
        message.append(static_cast<char>(element < 0 ? 7 : element));
    }
    return message;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const int deviceID = input.isEmpty() ? -1 : static_cast<signed char>(input.at(0));
    const int lineEnd = input.indexOf('\n');
    const QString text = QString::fromUtf8(input.mid(1, lineEnd < 0 ? -1 : lineEnd - 1));

    const AnswerPattern pattern = AnswerPattern::fromText(text, deviceID);
    QMap<int, int> captures;
    const QByteArray message = lineEnd < 0 ? QByteArray() : input.mid(lineEnd + 1);
    if (pattern.match(message, captures))
        require(message.size() == pattern.elements().size());
    for (const int value : qAsConst(captures))
        require(value >= 0 && value <= 0xFF);

    bool possible = false;
    const QByteArray own = answerTo(pattern, possible);
    require(pattern.match(own, captures) == possible);

    // What no message matches has a fault that says so.
    const QVector<TextFault> faults = findAnswerFaults(text, deviceID);
    const auto isOutside = [](const TextFault &fault) { return fault.kind == TextFault::Kind::OutsideAByte; };
    require(possible || std::any_of(faults.cbegin(), faults.cend(), isOutside));
    return 0;
}
