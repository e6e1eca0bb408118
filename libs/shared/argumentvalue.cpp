#include "argumentvalue.h"

#include <pibyteorder.h>

#include <cstring>
#include <type_traits>

namespace Kv_Designer
{
namespace
{

static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "numbers are copied in the host's order");

/// Stored is the number in the message, Captured what a captured value holds.
template <typename Stored, typename Captured, bool IsSwapped>
struct Coder {
    static Stored numberOf(const QVariant &value)
    {
        if constexpr (std::is_same_v<Stored, float>)
            return value.toFloat();
        else if constexpr (std::is_same_v<Stored, double>)
            return value.toDouble();
        else if constexpr (sizeof(Stored) == sizeof(qlonglong))
            return static_cast<Stored>(value.toLongLong());
        else // for unsigned numbers of four bytes too: texts beyond the signed range convert as for signed ones
            return static_cast<Stored>(value.toInt());
    }

    static void put(Stored number, char *to)
    {
        if (IsSwapped)
            piLetobe(&number, sizeof(number));
        std::memcpy(to, &number, sizeof(number));
    }

    static void write(const QVariant &value, char *to) { put(numberOf(value), to); }
    static void writeConstant(qint32 constant, char *to) { put(static_cast<Stored>(constant), to); }

    static void read(const char *from, QVariant &value)
    {
        Stored number;
        std::memcpy(&number, from, sizeof(number));
        if (IsSwapped)
            piLetobe(&number, sizeof(number));
        value.setValue(static_cast<Captured>(number)); // in place where a number was before
    }

    static constexpr ValueCoder All{sizeof(Stored), write, writeConstant, read};
};

bool hasUsableSize(const CommandArgument &argument)
{
    return argument.size >= 1 && argument.size <= MaxArgumentSize;
}

/// Copies a value of the type's own width into an argument made by hand with another one: cut, or with
/// zeros above.
void copyAcrossWidths(const CommandArgument &argument, const char *value, char *to)
{
    std::memcpy(to, value, static_cast<std::size_t>(argument.size));
    if (argument.swapBytes)
        piLetobe(to, argument.size);
}

} // namespace

const ValueCoder ValueCoders[10][2] = {
    {Coder<quint8, int, false>::All, Coder<quint8, int, true>::All},
    {Coder<qint8, int, false>::All, Coder<qint8, int, true>::All},
    {Coder<quint16, int, false>::All, Coder<quint16, int, true>::All},
    {Coder<qint16, int, false>::All, Coder<qint16, int, true>::All},
    {Coder<quint32, uint, false>::All, Coder<quint32, uint, true>::All},
    {Coder<qint32, int, false>::All, Coder<qint32, int, true>::All},
    {Coder<quint64, qulonglong, false>::All, Coder<quint64, qulonglong, true>::All},
    {Coder<qint64, qlonglong, false>::All, Coder<qint64, qlonglong, true>::All},
    {Coder<float, float, false>::All, Coder<float, float, true>::All},
    {Coder<double, double, false>::All, Coder<double, double, true>::All},
};

bool encodeValue(const CommandArgument &argument, const QVariant &value, char *to)
{
    const ValueCoder *coder = coderFor(argument.type, argument.swapBytes);
    if (coder == nullptr || !hasUsableSize(argument))
        return false;
    if (coder->size == argument.size) {
        coder->write(value, to);
        return true;
    }

    char bytes[MaxArgumentSize] = {};
    coderFor(argument.type, false)->write(value, bytes);
    copyAcrossWidths(argument, bytes, to);
    return true;
}

bool encodeConstant(const CommandArgument &argument, char *to)
{
    const ValueCoder *coder = coderFor(argument.type, argument.swapBytes);
    if (coder == nullptr || coder->size != argument.size)
        return encodeValue(argument, QVariant(argument.value), to);
    coder->writeConstant(argument.value, to);
    return true;
}

void decodeValue(const CommandArgument &argument, const char *from, QVariant &value)
{
    const ValueCoder *coder = coderFor(argument.type, argument.swapBytes);
    if (coder == nullptr || !hasUsableSize(argument)) {
        value = QVariant();
        return;
    }
    if (coder->size == argument.size) {
        coder->read(from, value);
        return;
    }

    char bytes[MaxArgumentSize] = {};
    copyAcrossWidths(argument, from, bytes);
    coderFor(argument.type, false)->read(bytes, value);
}

} // namespace Kv_Designer
