/// \file
/// Waiting for an exact time.
#pragma once

#include <kelprimitivesexport.h>

/// Blocks the calling thread for at least \a microseconds, and as little longer as the machine
/// allows: it sleeps until shortly before the end and spins the rest, so that a level held on a
/// wire is held exactly as long as it must be. Not above 0 returns at once. Any thread.
KEL_PRIMITIVES_EXPORT void piUSleep(long long microseconds);
