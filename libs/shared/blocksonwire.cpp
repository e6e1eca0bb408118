#include "blocksonwire.h"

#include <utility>

void BlocksOnWire::add(const PIByteArray &block, unsigned long long connection)
{
    m_blocks.push_back(block);
    m_size += block.size();
    m_connection = connection;
}

void BlocksOnWire::keepLast(int unsent)
{
    while (!m_blocks.empty() && m_size - m_blocks.front().size() >= unsent) {
        m_size -= m_blocks.front().size();
        m_blocks.pop_front();
    }
}

std::deque<PIByteArray> BlocksOnWire::takeAll()
{
    m_size = 0;
    return std::exchange(m_blocks, {});
}
