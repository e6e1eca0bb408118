/// \file
/// The value of a property.
#pragma once

#include <kelprimitivesexport.h>
#include <pistring.h>

#include <variant>

/// Holds nothing, a truth value, a whole number, a real number or a text, and reads as any of them.
class KEL_PRIMITIVES_EXPORT PIVariant
{
public:
    PIVariant() = default;
    PIVariant(bool value)
        : m_value(value)
    {
    }
    PIVariant(int value)
        : m_value(static_cast<long long>(value))
    {
    }
    PIVariant(long long value)
        : m_value(value)
    {
    }
    PIVariant(double value)
        : m_value(value)
    {
    }
    PIVariant(const char *utf8)
        : m_value(PIString(utf8))
    {
    }
    PIVariant(const PIString &value)
        : m_value(value)
    {
    }

    bool isValid() const { return m_value.index() != 0; } ///< Whether it holds anything.

    bool toBool() const; ///< A number is true unless 0, a text when it is "true" or a number other than 0.
    int toInt() const;   ///< toLongLong() limited to the range of an int.
    /// A real number is truncated toward zero and limited to the range; a text is read as a decimal
    /// whole number; what cannot be read gives 0.
    long long toLongLong() const;
    double toDouble() const; ///< A text is read with a decimal point; what cannot be read gives 0.
    PIString toString() const;

    /// Same kind and same value.
    friend bool operator==(const PIVariant &left, const PIVariant &right) { return left.m_value == right.m_value; }
    friend bool operator!=(const PIVariant &left, const PIVariant &right) { return !(left == right); }

private:
    std::variant<std::monostate, bool, long long, double, PIString> m_value;
};
