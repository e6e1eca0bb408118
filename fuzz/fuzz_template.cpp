// The input is the text of a command template.
#include "require.h"

#include <commandtemplate.h>
#include <templatefault.h>

using Kv_Designer::CommandArgument;
using Kv_Designer::CommandTemplate;

namespace
{

void requireWholeArguments(const QVector<CommandArgument> &entries)
{
    for (int i = 0; i < entries.size(); ++i) {
        const CommandArgument &entry = entries.at(i);
        require(entry.size == 1 || entry.size == 2 || entry.size == 4 || entry.size == 8, "a known size");
        require(entry.type >= 0 && entry.type <= 9, "a known type");
        require(entry.byteIndex >= 0 && entry.byteIndex < entry.size, "a byte of its argument");
        require(i - entry.byteIndex >= 0 && i - entry.byteIndex + entry.size <= entries.size(), "whole arguments");
    }
}

void requireSameReading(const QString &text, const QVector<CommandArgument> &entries)
{
    const CommandTemplate compiled = CommandTemplate::fromText(text);
    require(compiled.byteCount() == entries.size(), "the same length");
    require(compiled.argumentCount() == customArgumentsCount(entries), "the same count");

    const QVector<QVariant> values{1, -2, 3.5, QStringLiteral("4")};
    const QByteArray bytes = prepareCommand(entries, values);
    QByteArray bytesOfTemplate;
    require(compiled.encode(values, bytesOfTemplate) == (customArgumentsCount(entries) <= values.size()),
            "enough values are enough");
    require(bytes == bytesOfTemplate, "the same bytes");

    if (compiled.argumentCount() > 100)
        return; // far references cost memory and time; matching has a target of its own
    require(compiled.argumentNames().size() == compiled.argumentCount(), "a name for each value");

    QVector<QVariant> captured;
    QVector<QVariant> capturedByTemplate;
    require(parseCommand(bytes, entries, captured) == compiled.match(bytes, capturedByTemplate), "the same verdict");
    require(captured.size() == capturedByTemplate.size(), "as many captures");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    silenceDebugStream();
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));

    const QVector<CommandArgument> entries = packetArgumentsFromText(text);
    requireWholeArguments(entries);
    requireSameReading(text, entries);
    if (const auto fault = Kv_Designer::findTemplateFault(text))
        require(fault->position >= 0 && fault->position < text.size(), "a place in the text");
    return 0;
}
