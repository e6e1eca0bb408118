/// \file
/// Timers of objects without waiting.
#pragma once

#include <QAbstractEventDispatcher>
#include <QObject>
#include <QPointer>
#include <QVector>

/// Lets the timers that watched objects have started expire by a clock of its own. Their real expiries have to be
/// kept away: events are processed without timers.
class FakeTimers
{
public:
    void watch(QObject *object) { m_watched.append(Watched{object, {}}); }

    /// \a milliseconds pass. What is due by then expires once, a periodic timer as often as it is due.
    void pass(int milliseconds);

    qint64 now() const { return m_now; } ///< Milliseconds that have passed in all.

private:
    struct Timer {
        int id = 0;
        qint64 due = 0;
    };
    struct Watched {
        QPointer<QObject> object;
        QVector<Timer> timers;
    };

    void passFor(Watched &watched);

    QVector<Watched> m_watched;
    qint64 m_now = 0;
};
