// The input is a line of template text and a message, or, when it begins with a byte below 0x20,
// that many handmade entries and a message.
#include "require.h"

#include <commandtemplate.h>

#include <algorithm>
#include <cstring>

using Kv_Designer::CommandArgument;
using Kv_Designer::CommandTemplate;

namespace
{

constexpr int EntrySize = 12;

/// An entry of any content, with a preference for values that get far.
CommandArgument handmadeEntry(const char *bytes)
{
    static constexpr qint32 Sizes[] = {0, 1, 2, 4, 8, -1, 0x7FFFFFFF};
    CommandArgument entry;
    std::memcpy(&entry.value, bytes, sizeof(entry.value));
    if (bytes[4] & 1)
        entry.value %= 300;
    entry.type = bytes[5];
    entry.size = bytes[6] >= 0 && bytes[6] < 7 ? Sizes[static_cast<int>(bytes[6])] : bytes[6];
    entry.byteIndex = bytes[7];
    if (bytes[4] & 2)
        std::memcpy(&entry.byteIndex, bytes + 8, sizeof(entry.byteIndex));
    entry.swapBytes = (bytes[4] & 4) != 0;
    entry.any = (bytes[4] & 8) != 0;
    return entry;
}

void matchHandmade(const QByteArray &input)
{
    const int count = std::min<int>(input.at(0), (input.size() - 1) / EntrySize);
    QVector<CommandArgument> entries;
    for (int i = 0; i < count; ++i)
        entries.append(handmadeEntry(input.constData() + 1 + i * EntrySize));

    QVector<QVariant> values;
    parseCommand(input.mid(1 + count * EntrySize), entries, values);
    require(values.size() <= 65536, "values that stay small");
    prepareCommand(entries, values);
    require(customArgumentsCount(entries) >= 0, "a count");
    for (const CommandArgument &entry : entries) {
        argumentToByteArray(entry, 1.5);
        argumentFromByteArray(entry, input);
    }
}

void matchText(const QByteArray &input)
{
    const int end = input.indexOf('\n');
    const QString text = QString::fromUtf8(input.left(end));
    const QByteArray message = end < 0 ? QByteArray() : input.mid(end + 1);

    QVector<QVariant> values{QVariant(), 1};
    QVector<QVariant> valuesOfTemplate = values;
    const bool matches = parseCommand(message, packetArgumentsFromText(text), values);
    require(matches == CommandTemplate::fromText(text).match(message, valuesOfTemplate), "the same verdict");
    require(std::equal(values.cbegin(), values.cend(), valuesOfTemplate.cbegin(), valuesOfTemplate.cend(),
                       [](const QVariant &a, const QVariant &b) {
                           return a.userType() == b.userType() && a.toString() == b.toString();
                       }),
            "the same captures");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    silenceDebugStream();
    const QByteArray input(reinterpret_cast<const char *>(data), int(size));
    if (!input.isEmpty() && input.at(0) >= 0 && input.at(0) < 0x20)
        matchHandmade(input);
    else
        matchText(input);
    return 0;
}
