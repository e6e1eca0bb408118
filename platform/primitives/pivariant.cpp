#include "pivariant.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

// Beyond these a conversion to a whole number would be undefined; the upper one is 2 to the 63rd.
constexpr double LongLongEnd = 9223372036854775808.0;

long long truncated(double value)
{
    using Limits = std::numeric_limits<long long>;
    if (std::isnan(value))
        return 0;
    if (value >= LongLongEnd)
        return Limits::max();
    if (value < -LongLongEnd)
        return Limits::min();
    return static_cast<long long>(value);
}

} // namespace

bool PIVariant::toBool() const
{
    if (const auto *text = std::get_if<PIString>(&m_value))
        return text->trimmed().toLowerCase() == "true" || toDouble() != 0.0;
    return toDouble() != 0.0;
}

int PIVariant::toInt() const
{
    using Int = std::numeric_limits<int>;
    return int(std::clamp<long long>(toLongLong(), Int::min(), Int::max()));
}

long long PIVariant::toLongLong() const
{
    if (const auto *flag = std::get_if<bool>(&m_value))
        return *flag ? 1 : 0;
    if (const auto *number = std::get_if<long long>(&m_value))
        return *number;
    if (const auto *real = std::get_if<double>(&m_value))
        return truncated(*real);
    if (const auto *text = std::get_if<PIString>(&m_value))
        return text->toNumberBase(10);
    return 0;
}

double PIVariant::toDouble() const
{
    if (const auto *real = std::get_if<double>(&m_value))
        return *real;
    if (const auto *text = std::get_if<PIString>(&m_value))
        return text->toUtf16().toDouble();
    return double(toLongLong());
}

PIString PIVariant::toString() const
{
    if (const auto *flag = std::get_if<bool>(&m_value))
        return *flag ? "true" : "false";
    if (const auto *number = std::get_if<long long>(&m_value))
        return PIString::fromNumber(*number);
    if (const auto *real = std::get_if<double>(&m_value))
        return PIString::fromUtf16(QString::number(*real, 'g', std::numeric_limits<double>::max_digits10));
    if (const auto *text = std::get_if<PIString>(&m_value))
        return *text;
    return {};
}
