/// \file
/// One value of a command template as bytes and back.
#pragma once

#include <QVariant>
#include <QVector>
#include <commandargument.h>

namespace Kv_Designer
{

/// The widest argument. Handmade entries may claim more; they are refused before memory is touched.
constexpr int MaxArgumentSize = 8;

/// References above this are not worth the memory that their values would take.
constexpr int MaxReference = 65535;

/// Moves values of one type and byte order between variants and the bytes of a message.
struct ValueCoder {
    int size; ///< Bytes that a value of the type takes.
    void (*write)(const QVariant &value, char *to);
    void (*writeConstant)(qint32 constant, char *to);
    void (*read)(const char *from, QVariant &value);
};

/// By type code, then by swapped bytes.
extern const ValueCoder ValueCoders[10][2];

/// The coder for an ArgumentType code, or null for an unknown one.
inline const ValueCoder *coderFor(qint32 type, bool swapBytes)
{
    return type >= 0 && type < 10 ? &ValueCoders[type][swapBytes ? 1 : 0] : nullptr;
}

/// Number of the value that a negative CommandArgument::value refers to. Unlike `-value - 1` this has
/// a result for the lowest value too.
constexpr int referenceOf(qint32 value)
{
    return ~value;
}

/// Writes \a value to the argument.size bytes at \a to. False, with nothing written, for an unknown
/// type or a size outside 1..8. Allocates nothing beyond what QVariant's conversions do.
bool encodeValue(const CommandArgument &argument, const QVariant &value, char *to);

/// Does the same for the constant that \a argument itself holds.
bool encodeConstant(const CommandArgument &argument, char *to);

/// Reads \a value from the argument.size bytes at \a from. It becomes invalid for an unknown type or a
/// size outside 1..8.
void decodeValue(const CommandArgument &argument, const char *from, QVariant &value);

/// The place of number \a slot in \a values, which grow to it. Null where that growth would go beyond
/// MaxReference.
inline QVariant *placeOf(int slot, QVector<QVariant> &values)
{
    if (slot >= values.size()) {
        if (slot > MaxReference)
            return nullptr;
        values.resize(slot + 1);
    }
    return &values[slot];
}

} // namespace Kv_Designer
