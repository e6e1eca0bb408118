#include "faketimers.h"

#include <QCoreApplication>
#include <QTimerEvent>

#include <algorithm>

void FakeTimers::pass(int milliseconds)
{
    m_now += milliseconds;
    for (Watched &watched : m_watched)
        passFor(watched);
}

void FakeTimers::passFor(Watched &watched)
{
    const auto running = QAbstractEventDispatcher::instance()->registeredTimers(watched.object);
    if (running.isEmpty() && watched.timers.isEmpty())
        return;

    const auto isGone = [&running](const Timer &timer) {
        return std::none_of(running.cbegin(), running.cend(),
                            [&timer](const auto &info) { return info.timerId == timer.id; });
    };
    watched.timers.erase(std::remove_if(watched.timers.begin(), watched.timers.end(), isGone), watched.timers.end());
    for (const auto &info : running) {
        const auto known = std::find_if(watched.timers.begin(), watched.timers.end(),
                                        [&info](const Timer &timer) { return timer.id == info.timerId; });
        if (known == watched.timers.end()) {
            watched.timers.append({info.timerId, m_now + info.interval});
            continue;
        }
        if (known->due > m_now)
            continue;
        known->due += std::max(1, info.interval);
        QTimerEvent event(info.timerId);
        QCoreApplication::sendEvent(watched.object, &event);
    }
}
