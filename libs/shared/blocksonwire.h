/// \file
/// Blocks between a program and its line.
#pragma once

#include <pibytearray.h>

#include <deque>

/// The blocks that a port took last and may still hold, oldest first.
class BlocksOnWire
{
public:
    /// \a block was taken over \a connection. Blocks of another one must have been taken out before.
    void add(const PIByteArray &block, unsigned long long connection);

    bool isEmpty() const { return m_blocks.empty(); }
    unsigned long long connection() const { return m_connection; } ///< That of the last add().

    /// The port still holds \a unsent bytes: blocks that are wholly out are forgotten.
    void keepLast(int unsent);

    std::deque<PIByteArray> takeAll(); ///< What is still held; forgets it.

private:
    std::deque<PIByteArray> m_blocks;
    long long m_size = 0; ///< Of all of them together.
    unsigned long long m_connection = 0;
};
