/// \file
/// A block of bytes.
#pragma once

#include <QtCore/QMetaType>

#include <kelprimitivesexport.h>

#include <vector>

/// A block of bytes with value semantics, numbered from 0 and read as 0 to 255. It is a registered
/// meta-type of Qt, so signals with a block can cross threads.
class KEL_PRIMITIVES_EXPORT PIByteArray
{
public:
    PIByteArray();
    PIByteArray(const void *data, int size); ///< A copy; null or a size not above 0 gives no bytes.

    int size() const { return int(m_bytes.size()); }
    bool isEmpty() const { return m_bytes.empty(); }

    unsigned char *data() { return m_bytes.data(); } ///< Valid until the size changes.
    const unsigned char *data() const { return m_bytes.data(); }
    unsigned char &operator[](int index) { return m_bytes[size_t(index)]; } ///< \a index from 0 to size() - 1.
    unsigned char operator[](int index) const { return m_bytes[size_t(index)]; }

    PIByteArray &append(unsigned char byte);
    PIByteArray &append(const PIByteArray &other);
    PIByteArray &append(const void *data, int size); ///< Null or a size not above 0 appends nothing.
    void clear() { m_bytes.clear(); }

    auto begin() const { return m_bytes.begin(); }
    auto end() const { return m_bytes.end(); }

    friend bool operator==(const PIByteArray &left, const PIByteArray &right) { return left.m_bytes == right.m_bytes; }
    friend bool operator!=(const PIByteArray &left, const PIByteArray &right) { return left.m_bytes != right.m_bytes; }

private:
    std::vector<unsigned char> m_bytes;
};

Q_DECLARE_METATYPE(PIByteArray)
