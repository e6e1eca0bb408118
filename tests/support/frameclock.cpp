#include "frameclock.h"

#include <QCoreApplication>
#include <QEvent>

FrameClock::FrameClock()
{
    install();
}

FrameClock::~FrameClock()
{
    uninstall();
}

void FrameClock::start()
{
    m_elapsedMs = 0;
    QAnimationDriver::start();
}

void FrameClock::pass(int milliseconds)
{
    // Animations that were started since the last frame wait for a turn of the event loop to join.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
    if (!isRunning())
        return;
    m_elapsedMs += milliseconds;
    advanceAnimation();
}
