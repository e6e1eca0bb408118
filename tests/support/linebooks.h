/// \file
/// Where every block of a line ended up.
#pragma once

#include <QStringList>

#include <string>
#include <vector>

/// Keeps the books of a queued device: what was written to it, what its far end received and what its
/// console lines report as lost. Blocks begin with "<", end with ">" and have neither in between.
class LineBooks
{
public:
    /// Makes the next block of \a writer, of \a size bytes at least, notes and returns it.
    std::string next(int writer = 0, int size = 0);

    /// Adds the blocks of \a other, whose writers are different ones.
    void add(const LineBooks &other);

    /// Compares; empty when every block was received whole, once and in its writer's order, or is
    /// reported lost with its bytes, once. Else what is wrong, one line. A block that is reported
    /// because the line took no more or never got it must not have been received.
    std::string mistake(const std::string &received, const QStringList &console) const;

    size_t count() const { return m_blocks.size(); }

private:
    std::vector<std::string> m_blocks; ///< Those of one writer in order.
    std::vector<int> m_numbers;        ///< The next number of each writer.
};
