/// \file
/// Command templates: lines of text such as `AA 01 %(word~)[speed]0 . "Hi"` that describe the bytes
/// of a command or of a device's answer, and the codec between such templates, argument values and
/// bytes. The language is written down in docs/formats/typed-templates.md. All functions are
/// reentrant and keep no state between calls; hosts that handle many messages of one template use
/// Kv_Designer::CommandTemplate.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <QVector>
#include <kelwidgetsexport.h>

namespace Kv_Designer
{

/// How the bytes of an argument stand for a value; the numbers are what CommandArgument::type holds.
enum class ArgumentType : qint32 {
    UInt8 = 0,   ///< Also what every unknown type word means.
    Int8 = 1,    ///< "sbyte", "char"
    UInt16 = 2,  ///< "word", "ushort"
    Int16 = 3,   ///< "sword", "short"
    UInt32 = 4,  ///< "dword", "uint"
    Int32 = 5,   ///< "sdword", "int"
    UInt64 = 6,  ///< "qword", "ullong"
    Int64 = 7,   ///< "sqword", "llong"
    Float32 = 8, ///< "float"
    Float64 = 9  ///< "double"
};

/// One byte of a template. An argument of n bytes takes n entries in a row that differ only in
/// byteIndex.
struct CommandArgument {
    QString name;           ///< From the token's brackets; empty for constants and plain wildcards.
    qint32 value = 0;       ///< From 0 the constant itself, below 0 a reference to value number -value - 1.
    qint32 type = 0;        ///< An ArgumentType code.
    qint32 size = 1;        ///< Bytes of the whole argument: 1, 2, 4 or 8.
    qint32 byteIndex = 0;   ///< Which byte of the argument this entry is, 0..size - 1.
    bool swapBytes = false; ///< The argument's bytes travel most significant first.
    bool any = false;       ///< Wildcard: an answer's byte is neither compared nor captured.
};

} // namespace Kv_Designer

/// Reads one token; byteIndex is 0. Never fails: an unknown type word means one unsigned byte and an
/// unreadable number 0.
KEL_WIDGETS_EXPORT Kv_Designer::CommandArgument getArgument(QString token);

/// Reads one token into the entries of all its bytes.
KEL_WIDGETS_EXPORT QVector<Kv_Designer::CommandArgument> parseArgument(QString token);

/// Reads a whole template: quoted strings and tokens parted by spaces.
KEL_WIDGETS_EXPORT QVector<Kv_Designer::CommandArgument> packetArgumentsFromText(QString text);

/// Replaces each double-quoted string in \a text by a space and the hexadecimal tokens of its
/// characters, with a space behind each. Characters from 256 on become "00". A string that is never
/// closed is dropped as a whole.
KEL_WIDGETS_EXPORT QString replaceStringToHex(QString text);

/// Encodes \a value as \a arg says: arg.size bytes, integers cut to their width. Empty for an unknown
/// type or a size outside 1..8.
KEL_WIDGETS_EXPORT QByteArray argumentToByteArray(const Kv_Designer::CommandArgument &arg, const QVariant &value);

/// Decodes the first arg.size bytes of \a data; bytes that \a data lacks count as 0. Invalid for an
/// unknown type or a size outside 1..8.
KEL_WIDGETS_EXPORT QVariant argumentFromByteArray(const Kv_Designer::CommandArgument &arg, const QByteArray &data);

/// Encodes the template \a args with \a values. Empty, with one line on the debug stream, when a
/// value is missing or an entry cannot be encoded. Wildcards are sent as zero bytes.
KEL_WIDGETS_EXPORT QByteArray prepareCommand(const QVector<Kv_Designer::CommandArgument> &args,
                                             const QVector<QVariant> &values);

/// Compares \a data with the template \a args and captures the values it refers to into \a values,
/// which grows as needed and never shrinks. Bytes beyond the template are ignored. On false, values
/// captured before the difference stay. A reference above 65,535 is not worth its memory: where
/// \a values would have to grow to it, the result is false.
KEL_WIDGETS_EXPORT bool parseCommand(const QByteArray &data, const QVector<Kv_Designer::CommandArgument> &args,
                                     QVector<QVariant> &values);

/// How many values prepareCommand() needs for \a args: the highest reference plus one, or 0.
KEL_WIDGETS_EXPORT int customArgumentsCount(const QVector<Kv_Designer::CommandArgument> &args);
