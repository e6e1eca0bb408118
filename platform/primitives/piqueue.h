/// \file
/// First in, first out.
#pragma once

#include <deque>
#include <utility>

/// A queue without a size limit. Not locked: whoever shares it between threads guards it.
template <typename T>
class PIQueue
{
public:
    void enqueue(T value) { m_values.push_back(std::move(value)); }

    /// Takes the oldest value out; an empty queue gives a default-made one.
    T dequeue()
    {
        if (m_values.empty())
            return T();
        T oldest = std::move(m_values.front());
        m_values.pop_front();
        return oldest;
    }

    /// The oldest value, which stays. Not for an empty queue.
    const T &head() const { return m_values.front(); }

    bool isEmpty() const { return m_values.empty(); }
    int size() const { return int(m_values.size()); }
    void clear() { m_values.clear(); }

private:
    std::deque<T> m_values;
};
