/// \file
/// Byte order of numbers in foreign data.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

/// Reverses \a size bytes at \a data in place: turns a number of this host (little-endian) into a
/// big-endian one and back. A size of 1 or less does nothing.
inline void piLetobe(void *data, int size)
{
    // Numbers of the usual widths take one instruction each, when the size is known to the compiler.
    if (size == 2) {
        std::uint16_t number;
        std::memcpy(&number, data, sizeof(number));
        number = __builtin_bswap16(number);
        std::memcpy(data, &number, sizeof(number));
    } else if (size == 4) {
        std::uint32_t number;
        std::memcpy(&number, data, sizeof(number));
        number = __builtin_bswap32(number);
        std::memcpy(data, &number, sizeof(number));
    } else if (size == 8) {
        std::uint64_t number;
        std::memcpy(&number, data, sizeof(number));
        number = __builtin_bswap64(number);
        std::memcpy(data, &number, sizeof(number));
    } else if (size > 1) {
        std::reverse(static_cast<unsigned char *>(data), static_cast<unsigned char *>(data) + size);
    }
}
