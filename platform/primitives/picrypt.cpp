#include "picrypt.h"

#include <sodium.h>

#include <vector>

namespace
{

// Sets the library up once; without that, its generator is neither safe to share nor fast.
bool prepareLibrary()
{
    static const bool ready = sodium_init() >= 0;
    return ready;
}

} // namespace

PIByteArray PICrypt::generateRandomBuff(int size)
{
    if (size <= 0 || !prepareLibrary())
        return {};
    std::vector<unsigned char> bytes(static_cast<size_t>(size));
    randombytes_buf(bytes.data(), bytes.size());
    return PIByteArray(bytes.data(), size);
}

PIString PICrypt::version()
{
    return sodium_version_string();
}
