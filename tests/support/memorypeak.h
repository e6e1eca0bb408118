/// \file
/// How much heap a piece of code takes at its worst moment. memorypeak.cpp takes the place of the allocator,
/// so a test that counts lists it among its own sources.
#pragma once

#include <QtGlobal>

/// Counts from its construction on. Every allocation of the program is counted, whichever library makes it,
/// with what the allocator rounds it up to. One at a time, and one thread.
class MemoryPeak
{
public:
    MemoryPeak();

    /// Whether this build can count; a sanitizer brings an allocator of its own.
    static bool isAvailable();

    /// The most bytes in use at once since construction, beyond those in use then.
    qint64 bytes() const;

    /// The bytes in use now, by any thread; 0 when this build cannot count.
    static qint64 inUse();

private:
    qint64 m_atStart;
};
