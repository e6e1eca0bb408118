/// \file
/// Running before everything that can wait.
#pragma once

#include <kelprimitivesexport.h>

#include <sched.h>

/// Lets the calling thread run before all ordinary ones from construction to destruction, so that a
/// busy machine does not stretch a level that is held on a wire. Where the user may not ask for that,
/// and for a thread that has such a rank already, nothing changes. For short work that mostly waits;
/// made and destroyed on one thread.
class KEL_PRIMITIVES_EXPORT PIUrgent
{
public:
    PIUrgent();
    ~PIUrgent(); ///< The thread runs as it did before.

    PIUrgent(const PIUrgent &) = delete;
    PIUrgent &operator=(const PIUrgent &) = delete;

    bool isGranted() const { return m_isGranted; }

private:
    bool m_isGranted = false;
    int m_formerPolicy = SCHED_OTHER;
    sched_param m_former{};
};
