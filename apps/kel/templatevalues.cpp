#include "templatevalues.h"

#include "command.h"

#include <argumenttype.h>
#include <templatefault.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

using Kv_Designer::ArgumentType;
using Kv_Designer::CommandArgument;

namespace
{

/// Whole numbers that an argument can hold. The ends fit a double well enough to be compared.
struct Range {
    double lowest;
    double highest;
};

Range rangeOf(ArgumentType type)
{
    switch (type) {
    case ArgumentType::Int8:
        return {-128, 127};
    case ArgumentType::UInt16:
        return {0, 65535};
    case ArgumentType::Int16:
        return {-32768, 32767};
    case ArgumentType::UInt32:
        return {0, 4294967295.0};
    case ArgumentType::Int32:
        return {-2147483648.0, 2147483647};
    case ArgumentType::UInt64:
        return {0, std::numeric_limits<double>::infinity()};
    case ArgumentType::Int64:
        return {-std::numeric_limits<double>::infinity(), 9223372036854775807.0};
    default:
        return {0, 255};
    }
}

bool isWhole(ArgumentType type)
{
    return type != ArgumentType::Float32 && type != ArgumentType::Float64;
}

/// Reads "-12", "0x1F" and "1.5": whole numbers as 64-bit ones, others as double; invalid otherwise.
QVariant numberFromText(const QString &text)
{
    const bool isHex = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    bool isRead = false;
    const qlonglong whole = text.toLongLong(&isRead, isHex ? 16 : 10);
    if (isRead)
        return whole;
    const qulonglong large = text.toULongLong(&isRead, isHex ? 16 : 10);
    if (isRead)
        return large;
    const double real = text.toDouble(&isRead);
    return isRead ? QVariant(real) : QVariant();
}

void checkFits(const QVariant &value, const QString &text, const CommandArgument &entry, const QString &label)
{
    const auto type = static_cast<ArgumentType>(entry.type);
    if (!isWhole(type))
        return;
    if (value.userType() == QMetaType::Double)
        throw CommandError(
            QStringLiteral("value %1: \"%2\" is not a whole number of at most 64 bits").arg(label, text));

    const Range range = rangeOf(type);
    const bool isTooLarge = type == ArgumentType::Int64 && value.userType() == QMetaType::ULongLong;
    if (isTooLarge || value.toDouble() < range.lowest || value.toDouble() > range.highest)
        throw CommandError(QStringLiteral("value %1: %2 does not fit the type %3").arg(label, text, typeWord(type)));
}

QVariant valueFromText(const ReadTemplate &read, int slot, const QString &text)
{
    const QString label = read.labels.value(slot);
    const QVariant value = numberFromText(text);
    if (!value.isValid())
        throw CommandError(QStringLiteral("value %1: \"%2\" is not a number").arg(label, text));
    for (const CommandArgument &entry : read.entries) {
        if (entry.value == ~slot)
            checkFits(value, text, entry, label);
    }
    return value;
}

/// Splits "name=value" where the name is known; returns the number of the value, or -1 for a plain word.
int slotOfWord(const ReadTemplate &read, QString &word)
{
    for (int slot = 0; slot < read.labels.size(); ++slot) {
        const QStringList labels{read.labels.at(slot), QString::number(slot)};
        for (const QString &label : labels) {
            if (word.startsWith(label + QLatin1Char('='))) {
                word.remove(0, label.size() + 1);
                return slot;
            }
        }
    }
    if (word.contains(QLatin1Char('=')))
        throw CommandError(QStringLiteral("the template has no value for \"%1\"").arg(word));
    return -1;
}

void setValue(const ReadTemplate &read, QVector<QVariant> &values, int slot, const QString &text)
{
    if (values.at(slot).isValid())
        throw CommandError(QStringLiteral("value %1 is given twice").arg(read.labels.at(slot)));
    values[slot] = valueFromText(read, slot, text);
}

QString textOf(const QVariant &value)
{
    char digits[32];
    std::to_chars_result end{};
    if (value.userType() == QMetaType::Float)
        end = std::to_chars(digits, digits + sizeof(digits), value.toFloat());
    else if (value.userType() == QMetaType::Double)
        end = std::to_chars(digits, digits + sizeof(digits), value.toDouble());
    else
        return value.toString();
    return QString::fromLatin1(digits, int(end.ptr - digits));
}

/// Names the first byte of \a data that the template refuses.
QString differenceOf(const ReadTemplate &read, const QByteArray &data)
{
    if (data.size() < read.entries.size())
        return QStringLiteral("the message has %1 bytes, the template needs %2")
            .arg(data.size())
            .arg(read.entries.size());
    for (int i = 0; i < read.entries.size(); ++i) {
        const CommandArgument &entry = read.entries.at(i);
        if (entry.value > 255 && !entry.any)
            return QStringLiteral("byte %1: no byte equals the constant %2")
                .arg(i)
                .arg(QString::number(entry.value, 16).toUpper());
        if (entry.value >= 0 && !entry.any && entry.value != static_cast<uchar>(data.at(i)))
            return QStringLiteral("byte %1 is %2, the template expects %3")
                .arg(i)
                .arg(hexFromBytes(data.mid(i, 1)), hexFromBytes(QByteArray(1, char(entry.value))));
    }
    return QStringLiteral("the message does not match");
}

} // namespace

ReadTemplate::ReadTemplate(const QString &text)
{
    if (const auto fault = Kv_Designer::findTemplateFault(text))
        throw CommandError(QStringLiteral("token \"%1\" at character %2: %3")
                               .arg(fault->token, QString::number(fault->position + 1), fault->reason));

    entries = packetArgumentsFromText(text);
    compiled = Kv_Designer::CommandTemplate::fromText(text);
    const QStringList names = compiled.argumentNames();
    for (int slot = 0; slot < names.size(); ++slot) {
        const QString &name = names.at(slot);
        bool isNumber = false;
        name.toInt(&isNumber);
        const bool isOwn = !name.isEmpty() && !isNumber && names.count(name) == 1;
        labels.append(isOwn ? name : QString::number(slot));
    }
}

QVector<QVariant> valuesFromWords(const ReadTemplate &read, const QStringList &words)
{
    QVector<QVariant> values(read.compiled.argumentCount());
    QStringList plain;
    for (QString word : words) {
        const int slot = slotOfWord(read, word);
        if (slot < 0)
            plain.append(word);
        else
            setValue(read, values, slot, word);
    }

    for (int slot = 0; slot < values.size() && !plain.isEmpty(); ++slot) {
        if (!values.at(slot).isValid())
            setValue(read, values, slot, plain.takeFirst());
    }
    if (!plain.isEmpty())
        throw CommandError(QStringLiteral("the template takes %1 values, \"%2\" is too many")
                               .arg(QString::number(values.size()), plain.first()));
    for (const CommandArgument &entry : read.entries) {
        if (entry.value < 0 && !values.at(~entry.value).isValid())
            throw CommandError(QStringLiteral("value %1 is missing").arg(read.labels.at(~entry.value)));
    }
    return values;
}

QString wordsFromBytes(const ReadTemplate &read, const QByteArray &data)
{
    QVector<QVariant> values;
    if (!read.compiled.match(data, values))
        throw CommandError(differenceOf(read, data));

    QStringList words;
    for (int slot = 0; slot < values.size(); ++slot) {
        if (values.at(slot).isValid())
            words.append(read.labels.at(slot) + QLatin1Char('=') + textOf(values.at(slot)));
    }
    return words.isEmpty() ? QStringLiteral("match") : words.join(QLatin1Char(' '));
}

QByteArray bytesFromHex(const QStringList &words)
{
    QByteArray bytes;
    for (const QString &word : words) {
        const bool areDigits = std::all_of(word.cbegin(), word.cend(), [](QChar c) {
            const ushort code = c.toLower().unicode();
            return (code >= '0' && code <= '9') || (code >= 'a' && code <= 'f');
        });
        if (!areDigits || word.size() % 2 != 0)
            throw CommandError(QStringLiteral("\"%1\" is not hexadecimal bytes of two digits each").arg(word));
        bytes += QByteArray::fromHex(word.toLatin1());
    }
    return bytes;
}

QString hexFromBytes(const QByteArray &data)
{
    return QString::fromLatin1(data.toHex(' ').toUpper());
}
