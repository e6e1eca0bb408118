// A stored packet variable: what was read once is written and read again without change.

#include <packet.h>

#include <cstdint>
#include <cstdlib>

using Kv_Designer::PacketVariable;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const PacketVariable variable = PacketVariable::fromByteArray(bytes);
    const PacketVariable again = PacketVariable::fromByteArray(variable.toByteArray());

    const bool isSame = again.name == variable.name && again.name.isNull() == variable.name.isNull() &&
                        again.comment == variable.comment && again.index == variable.index &&
                        again.value.userType() == variable.value.userType();
    if (!isSame)
        std::abort();
    return 0;
}
