#include "piurgent.h"

#include <pthread.h>

PIUrgent::PIUrgent()
{
    const pthread_t self = ::pthread_self();
    if (::pthread_getschedparam(self, &m_formerPolicy, &m_former) != 0 || m_formerPolicy == SCHED_FIFO ||
        m_formerPolicy == SCHED_RR)
        return;
    // The lowest rank of its kind: before ordinary threads, behind whatever else was given one.
    sched_param urgent{};
    urgent.sched_priority = ::sched_get_priority_min(SCHED_FIFO);
    m_isGranted = ::pthread_setschedparam(self, SCHED_FIFO, &urgent) == 0;
}

PIUrgent::~PIUrgent()
{
    if (m_isGranted)
        ::pthread_setschedparam(::pthread_self(), m_formerPolicy, &m_former);
}
