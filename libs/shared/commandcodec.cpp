// Entries made from text are whole by construction, but anyone can fill the records by hand: nothing
// here trusts a size, a type or a byte index before it has looked at it.
#include "argumentvalue.h"
#include "commandargument.h"

#include <QDebug>

#include <algorithm>
#include <cstring>
#include <limits>

using Kv_Designer::CommandArgument;
using Kv_Designer::MaxArgumentSize;
using Kv_Designer::referenceOf;

namespace
{

bool encodeEntry(const CommandArgument &entry, const QVector<QVariant> &values, char *to)
{
    if (entry.value < 0)
        return Kv_Designer::encodeValue(entry, values.at(referenceOf(entry.value)), to);
    if (entry.type == 0 && entry.size == 1) { // most of a template is plain bytes
        *to = static_cast<char>(entry.value);
        return true;
    }
    return Kv_Designer::encodeConstant(entry, to);
}

/// Collects \a byte in \a scratch and, with an argument's last byte, stores the value. False when
/// the value has no place.
bool captureByte(const CommandArgument &entry, char byte, char *scratch, QVector<QVariant> &values)
{
    if (entry.byteIndex < 0 || entry.byteIndex >= entry.size)
        return true;
    if (entry.byteIndex == 0)
        std::memset(scratch, 0, MaxArgumentSize);
    if (entry.byteIndex < MaxArgumentSize)
        scratch[entry.byteIndex] = byte;
    if (entry.byteIndex < entry.size - 1)
        return true;

    QVariant *place = Kv_Designer::placeOf(referenceOf(entry.value), values);
    if (place != nullptr)
        Kv_Designer::decodeValue(entry, scratch, *place);
    return place != nullptr;
}

} // namespace

QByteArray argumentToByteArray(const CommandArgument &arg, const QVariant &value)
{
    char bytes[MaxArgumentSize];
    return Kv_Designer::encodeValue(arg, value, bytes) ? QByteArray(bytes, arg.size) : QByteArray();
}

QVariant argumentFromByteArray(const CommandArgument &arg, const QByteArray &data)
{
    char bytes[MaxArgumentSize] = {};
    std::memcpy(bytes, data.constData(), static_cast<std::size_t>(std::min<int>(data.size(), MaxArgumentSize)));
    QVariant value;
    Kv_Designer::decodeValue(arg, bytes, value);
    return value;
}

QByteArray prepareCommand(const QVector<CommandArgument> &args, const QVector<QVariant> &values)
{
    if (args.isEmpty())
        return QByteArray();

    QByteArray bytes(args.size(), Qt::Uninitialized);
    char *start = bytes.data();
    for (int i = 0; i < args.size();) {
        const CommandArgument &entry = args.at(i);
        if (entry.value < 0 && referenceOf(entry.value) >= values.size()) {
            qDebug() << "Invalid arguments count!";
            return QByteArray();
        }
        if (entry.size > args.size() - i && entry.size <= MaxArgumentSize) {
            bytes.resize(i + entry.size); // the last argument may have fewer entries than bytes
            start = bytes.data();
        }
        if (!encodeEntry(entry, values, start + i)) {
            qDebug() << "Invalid value!";
            return QByteArray();
        }
        i += entry.size;
    }
    return bytes;
}

bool parseCommand(const QByteArray &data, const QVector<CommandArgument> &args, QVector<QVariant> &values)
{
    if (data.size() < args.size())
        return false;

    char scratch[MaxArgumentSize] = {};
    for (int i = 0; i < args.size(); ++i) {
        const CommandArgument &entry = args.at(i);
        if (entry.any)
            continue;
        if (entry.value >= 0) {
            if (entry.value != static_cast<uchar>(data.at(i)))
                return false;
        } else if (!captureByte(entry, data.at(i), scratch, values)) {
            return false;
        }
    }
    return true;
}

int customArgumentsCount(const QVector<CommandArgument> &args)
{
    constexpr int Most = std::numeric_limits<int>::max();
    int count = 0;
    for (const CommandArgument &entry : args) {
        if (entry.value < 0)
            count = std::max(count, entry.value < -Most ? Most : -entry.value);
    }
    return count;
}
