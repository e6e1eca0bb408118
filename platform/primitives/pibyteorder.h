/// \file
/// Byte order of numbers in foreign data.
#pragma once

#include <algorithm>

/// Reverses \a size bytes at \a data in place: turns a number of this host (little-endian) into a
/// big-endian one and back. A size of 1 or less does nothing.
inline void piLetobe(void *data, int size)
{
    if (size > 1)
        std::reverse(static_cast<unsigned char *>(data), static_cast<unsigned char *>(data) + size);
}
