#include "traffic/trafficreplay.h"

#include "command.h"
#include "printable.h"
#include "wholefile.h"

#include <algorithm>

namespace
{

constexpr int DayMs = 24 * 60 * 60 * 1000;
/// What was said later than this after a request had hardly to do with it.
constexpr int MaxDelayMs = 60 * 60 * 1000;

/// From \a start to \a end, over midnight if need be.
int delayMs(const QTime &start, const QTime &end)
{
    const int ms = start.msecsTo(end);
    return std::min(ms < 0 ? ms + DayMs : ms, MaxDelayMs);
}

} // namespace

TrafficReplay::TrafficReplay(const TrafficRecord &record, const QString &fileName)
{
    const auto fail = [&fileName](const TrafficEntry &entry, const QString &what) {
        throw CommandError(QStringLiteral("%1:%2: %3").arg(printable(fileName), QString::number(entry.line), what));
    };
    const TrafficEntry *stranger = nullptr;
    QString end;
    QTime opened;
    QTime asked;
    Exchanges *current = nullptr;
    for (const TrafficEntry &entry : record.entries) {
        if (entry.direction == TrafficEntry::Direction::Note)
            continue;
        if (!end.isEmpty() && entry.end != end)
            fail(entry, QStringLiteral("the %1's end, after lines of the %2's; keep one of them").arg(entry.end, end));
        end = entry.end;
        if (entry.direction == TrafficEntry::Direction::Unknown) {
            stranger = stranger ? stranger : &entry;
            ++m_leftOutCount;
        } else if (entry.isRequest()) {
            current = &m_exchanges[entry.bytes];
            current->answers.append(QVector<SimulatorReply>());
            asked = entry.time;
            ++m_requestCount;
        } else if (current) {
            current->answers.last().append({entry.bytes, delayMs(asked, entry.time)});
        } else {
            opened = m_opening.isEmpty() ? entry.time : opened;
            m_opening.append({entry.bytes, delayMs(opened, entry.time)});
        }
    }
    if (m_requestCount == 0 && stranger)
        fail(*stranger, QStringLiteral("who sent this is not known; with --db kel monitor finds it out"));
    if (m_requestCount == 0)
        throw CommandError(QStringLiteral("%1: there is no request in it").arg(printable(fileName)));
}

TrafficReplay TrafficReplay::fromFile(const QString &path)
{
    const TrafficRecord record = TrafficRecord::fromText(readWholeFile(path, TrafficRecord::MaxSize), path);
    if (!record.error.isEmpty())
        throw CommandError(record.error);
    return TrafficReplay(record, path);
}

std::optional<QVector<SimulatorReply>> TrafficReplay::answer(const QByteArray &message)
{
    const auto found = m_exchanges.find(message);
    if (found == m_exchanges.end())
        return std::nullopt;
    const QVector<SimulatorReply> answers = found->answers.at(found->next);
    found->next = (found->next + 1) % found->answers.size();
    return answers;
}
