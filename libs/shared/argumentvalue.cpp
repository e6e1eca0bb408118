#include "argumentvalue.h"

#include <pibyteorder.h>

#include <QtEndian>

#include <cstring>

namespace Kv_Designer
{
namespace
{

static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "numbers are copied in the host's order");

bool hasUsableSize(const ValueFormat &format)
{
    return format.size >= 1 && format.size <= MaxArgumentSize;
}

/// \a number in the low bytes, zero above: an entry made by hand may be wider than its type.
template <typename Number>
quint64 toBits(Number number)
{
    quint64 bits = 0;
    std::memcpy(&bits, &number, sizeof(number));
    return bits;
}

template <typename Number>
Number fromBits(quint64 bits)
{
    Number number;
    std::memcpy(&number, &bits, sizeof(number));
    return number;
}

bool toBits(ArgumentType type, const QVariant &value, quint64 &bits)
{
    switch (type) {
    case ArgumentType::UInt8:
    case ArgumentType::Int8:
        bits = static_cast<quint8>(value.toInt());
        return true;
    case ArgumentType::UInt16:
    case ArgumentType::Int16:
        bits = static_cast<quint16>(value.toInt());
        return true;
    case ArgumentType::UInt32: // texts and numbers beyond the signed range convert as for Int32
    case ArgumentType::Int32:
        bits = static_cast<quint32>(value.toInt());
        return true;
    case ArgumentType::UInt64:
    case ArgumentType::Int64:
        bits = static_cast<quint64>(value.toLongLong());
        return true;
    case ArgumentType::Float32:
        bits = toBits(value.toFloat());
        return true;
    case ArgumentType::Float64:
        bits = toBits(value.toDouble());
        return true;
    }
    return false;
}

} // namespace

bool encodeValue(const ValueFormat &format, const QVariant &value, char *to)
{
    quint64 bits = 0;
    if (!hasUsableSize(format) || !toBits(format.type, value, bits))
        return false;

    std::memcpy(to, &bits, static_cast<std::size_t>(format.size));
    if (format.swapBytes)
        piLetobe(to, format.size);
    return true;
}

QVariant decodeValue(const ValueFormat &format, const char *from)
{
    if (!hasUsableSize(format))
        return QVariant();

    char bytes[MaxArgumentSize] = {};
    std::memcpy(bytes, from, static_cast<std::size_t>(format.size));
    if (format.swapBytes)
        piLetobe(bytes, format.size);
    const quint64 bits = qFromLittleEndian<quint64>(bytes);

    switch (format.type) {
    case ArgumentType::UInt8:
        return QVariant(int(static_cast<quint8>(bits)));
    case ArgumentType::Int8:
        return QVariant(int(static_cast<qint8>(bits)));
    case ArgumentType::UInt16:
        return QVariant(int(static_cast<quint16>(bits)));
    case ArgumentType::Int16:
        return QVariant(int(static_cast<qint16>(bits)));
    case ArgumentType::UInt32:
        return QVariant(static_cast<uint>(bits));
    case ArgumentType::Int32:
        return QVariant(static_cast<int>(bits));
    case ArgumentType::UInt64:
        return QVariant(static_cast<qulonglong>(bits));
    case ArgumentType::Int64:
        return QVariant(static_cast<qlonglong>(bits));
    case ArgumentType::Float32:
        return QVariant(fromBits<float>(bits));
    case ArgumentType::Float64:
        return QVariant(fromBits<double>(bits));
    }
    return QVariant();
}

bool captureValue(const ValueFormat &format, const char *from, int slot, QVector<QVariant> &values)
{
    if (slot >= values.size()) {
        if (slot > MaxReference)
            return false;
        values.resize(slot + 1);
    }
    values[slot] = decodeValue(format, from);
    return true;
}

} // namespace Kv_Designer
