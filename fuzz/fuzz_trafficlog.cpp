// Any bytes as a traffic log: reading ends with entries or one line, entries are written as they are read, and a
// log that can be played back answers every request.

#include <command.h>
#include <traffic/trafficreplay.h>

#include <cstdint>
#include <cstdlib>

namespace
{

void replay(const TrafficRecord &record)
{
    try {
        TrafficReplay replay(record, QStringLiteral("log"));
        for (const TrafficEntry &entry : record.entries) {
            if (entry.isRequest() && entry.direction != TrafficEntry::Direction::Note && !replay.answer(entry.bytes))
                std::abort();
        }
    } catch (const CommandError &error) {
        if (std::string(error.what()).rfind("log:", 0) != 0)
            std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), int(size));
    const TrafficRecord record = TrafficRecord::fromText(text, QStringLiteral("log"));
    if (record.error.contains(QLatin1Char('\n')) || (!record.error.isEmpty() && !record.entries.isEmpty()))
        std::abort();
    for (const TrafficEntry &entry : record.entries) {
        TrafficEntry again;
        QString error;
        const bool isRead = again.readLine(entry.text(), &error);
        if (!isRead || again.text() != entry.text() || again.bytes != entry.bytes || again.time != entry.time ||
            again.direction != entry.direction)
            std::abort();
    }
    replay(record);
    return 0;
}
