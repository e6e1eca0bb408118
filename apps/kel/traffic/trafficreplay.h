/// \file
/// A recorded conversation, played back.
#pragma once

#include "simulator/simulateddevice.h"
#include "traffic/trafficentry.h"

#include <QHash>

#include <optional>

/// Answers requests as they were answered when a log was kept: what stands between a request and the next
/// belongs to that request, with its delays. A request that was recorded several times gets its answers in the
/// recorded order; after the last it begins again with the first. One thread.
class TrafficReplay
{
public:
    /// Makes it of a log. Throws a CommandError that names \a fileName, and the line if it is one, when the log
    /// was kept at several ends, or holds no request. Messages of unknown direction are left out.
    TrafficReplay(const TrafficRecord &record, const QString &fileName);

    /// Reads the log \a path. Throws a CommandError that names it, and the line if it is one.
    static TrafficReplay fromFile(const QString &path);

    /// The answers to \a message, in order; nothing at all when it was never asked.
    std::optional<QVector<SimulatorReply>> answer(const QByteArray &message);

    int requests() const { return m_requestCount; }
    int leftOut() const { return m_leftOutCount; } ///< Messages of which nobody knows who sent them.

    /// What was said before the first request, with delays from its first message on: reports of devices
    /// that a panel may wait for before it asks anything.
    const QVector<SimulatorReply> &opening() const { return m_opening; }

private:
    struct Exchanges {
        QVector<QVector<SimulatorReply>> answers; ///< For each time that it was asked.
        int next = 0;
    };

    QHash<QByteArray, Exchanges> m_exchanges;
    int m_requestCount = 0;
    int m_leftOutCount = 0;
    QVector<SimulatorReply> m_opening;
};
