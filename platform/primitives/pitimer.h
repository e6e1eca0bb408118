/// \file
/// Periodic ticks on a thread of their own.
#pragma once

#include <piobject.h>

#include <memory>

/// Raises "tickEvent" once per period, on a thread of the timer's own; needs no event loop.
///
/// Tick n is due n periods after start(), by a clock that nobody sets, so the timer does not drift. A
/// tick is never early, and a period that passed while a tick was running is left out, not caught up.
/// After a late tick the next one comes at its own time again, but no two ticks start closer together
/// than the period less a fiftieth of it (less 1 ms from a period of 50 ms on). An idle or stopped
/// timer uses no processor time.
///
/// All operations may be called from any thread, also inside a tick; even deleting the timer there
/// is fine.
class KEL_PRIMITIVES_EXPORT PITimer : public PIObject
{
public:
    explicit PITimer(const PIString &name = PIString());
    ~PITimer() override; ///< As stop().

    PIString className() const override { return "PITimer"; }
    PIString parentClassName() const override { return "PIObject"; }

    /// Starts, or starts anew when running: the first tick comes after one period from now. A period
    /// not above 0, or a system without a thread to spare, gives false and a console line and changes
    /// nothing.
    bool start(int periodMs);

    /// Ends the ticks and waits for one that is running, unless called inside it.
    void stop();

    /// Leaves ticks out until wake(), so that the thread sleeps while a handler has nothing to do. The timer
    /// runs on: its ticks stay due when they were.
    void rest();
    void wake(); ///< Ends the rest, if there is one: the next tick comes when one is due.

    bool isRunning() const; ///< Also while it rests.
    int periodMs() const;   ///< Of the last start, 0 before the first.

private:
    class Clockwork;
    std::shared_ptr<Clockwork> m_clockwork;
};
