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

/// How an argument's bytes are to be read and written.
struct ValueFormat {
    ArgumentType type;
    int size;
    bool swapBytes;
};

inline ValueFormat formatOf(const CommandArgument &argument)
{
    return {static_cast<ArgumentType>(argument.type), argument.size, argument.swapBytes};
}

/// Number of the value that a negative CommandArgument::value refers to. Unlike `-value - 1` this has
/// a result for the lowest value too.
constexpr int referenceOf(qint32 value)
{
    return ~value;
}

/// Writes \a value to the format.size bytes at \a to. False, with nothing written, for an unknown
/// type or a size outside 1..8. Allocates nothing beyond what QVariant's conversions do.
bool encodeValue(const ValueFormat &format, const QVariant &value, char *to);

/// Reads a value from the format.size bytes at \a from; invalid for an unknown type or a size
/// outside 1..8.
QVariant decodeValue(const ValueFormat &format, const char *from);

/// Puts the value decoded from \a from into \a values as number \a slot and lets \a values grow to it.
/// False, with nothing done, where that growth would go beyond MaxReference.
bool captureValue(const ValueFormat &format, const char *from, int slot, QVector<QVariant> &values);

} // namespace Kv_Designer
