#include "pistring.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <limits>
#include <string_view>

namespace
{

using Limits = std::numeric_limits<long long>;

bool isBase(int base)
{
    return base >= 2 && base <= 36;
}

// The value of a digit, or 36 for a character that is none.
int digitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'z')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z')
        return c - 'A' + 10;
    return 36;
}

bool takePrefix(std::string_view &digits, char letter)
{
    if (digits.size() < 2 || digits[0] != '0' || (digits[1] | 0x20) != letter)
        return false;
    digits.remove_prefix(2);
    return true;
}

// Settles the base and takes a prefix that goes with it off the digits.
int takeBase(std::string_view &digits, int base)
{
    if ((base == -1 || base == 16) && takePrefix(digits, 'x'))
        return 16;
    if ((base == -1 || base == 2) && takePrefix(digits, 'b'))
        return 2;
    if (base != -1)
        return base;
    return digits.size() > 1 && digits[0] == '0' ? 8 : 10;
}

// Counts downwards from 0, as the smallest number has no positive twin. False for what is no number.
bool readNegated(std::string_view digits, int base, long long &negated)
{
    negated = 0;
    for (const char c : digits) {
        const int digit = digitValue(c);
        if (digit >= base)
            return false;
        if (negated < (Limits::min() + digit) / base)
            negated = Limits::min();
        else
            negated = negated * base - digit;
    }
    return !digits.empty();
}

} // namespace

PIString::PIString(const char *utf8)
    : m_text(QString::fromUtf8(utf8))
{
}

PIString::PIString(const std::string &utf8)
    : m_text(QString::fromStdString(utf8))
{
}

PIString PIString::fromUtf8(const char *utf8, int size)
{
    PIString result;
    if (size > 0)
        result.m_text = QString::fromUtf8(utf8, size);
    return result;
}

PIString PIString::fromUtf16(const QString &text)
{
    PIString result;
    result.m_text = text;
    return result;
}

PIString PIString::fromNumber(long long number, int base)
{
    return fromUtf16(QString::number(number, isBase(base) ? base : 10));
}

std::string PIString::toUtf8() const
{
    return m_text.toStdString();
}

std::vector<PIString> PIString::split(const PIString &separator) const
{
    if (separator.isEmpty())
        return {*this};

    std::vector<PIString> parts;
    for (const QString &part : m_text.split(separator.m_text))
        parts.push_back(fromUtf16(part));
    return parts;
}

PIString PIString::toLowerCase() const
{
    return fromUtf16(m_text.toLower());
}

PIString PIString::trimmed() const
{
    return fromUtf16(m_text.trimmed());
}

long long PIString::toNumberBase(int base) const
{
    const std::string text = trimmed().toUtf8();
    std::string_view digits = text;
    const bool negative = !digits.empty() && digits[0] == '-';
    if (negative || (!digits.empty() && digits[0] == '+'))
        digits.remove_prefix(1);

    base = takeBase(digits, base);
    long long negated = 0;
    if (!isBase(base) || !readNegated(digits, base, negated))
        return 0;
    if (negative)
        return negated;
    return negated == Limits::min() ? Limits::max() : -negated;
}

int PIString::toInt(int base) const
{
    using Int = std::numeric_limits<int>;
    return int(std::clamp<long long>(toNumberBase(base), Int::min(), Int::max()));
}

PIString &PIString::operator+=(const PIString &other)
{
    m_text += other.m_text;
    return *this;
}
