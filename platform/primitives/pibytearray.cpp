#include "pibytearray.h"

namespace
{

// A queued connection finds the type by its name, so it must be known before the first one is made.
const int RegisteredType = qRegisterMetaType<PIByteArray>("PIByteArray");

} // namespace

PIByteArray::PIByteArray() = default;

PIByteArray::PIByteArray(const void *data, int size)
{
    append(data, size);
}

PIByteArray &PIByteArray::append(unsigned char byte)
{
    m_bytes.push_back(byte);
    return *this;
}

PIByteArray &PIByteArray::append(const PIByteArray &other)
{
    if (this == &other)
        return append(PIByteArray(other));
    m_bytes.insert(m_bytes.end(), other.m_bytes.begin(), other.m_bytes.end());
    return *this;
}

PIByteArray &PIByteArray::append(const void *data, int size)
{
    if (data && size > 0) {
        const auto *bytes = static_cast<const unsigned char *>(data);
        m_bytes.insert(m_bytes.end(), bytes, bytes + size);
    }
    return *this;
}
