/// \file
/// Console lines of the primitives.
#pragma once

#include <kelprimitivesexport.h>

#include <string>
#include <string_view>
#include <type_traits>

class PIByteArray;
class PIString;
class PIVariant;

/// What a console line is for. All of them go to standard error.
enum PICoutChannel { piDebug };

/// Writes one line to standard error when it goes out of scope: `PICout(piDebug) << "sent" << bytes;`.
/// Items are separated by one space and an empty item leaves no trace; bytes are pairs of
/// hexadecimal digits. A line stays whole when several threads write: line breaks inside an item
/// are shown as "\n" and "\r".
class KEL_PRIMITIVES_EXPORT PICout
{
public:
    explicit PICout(PICoutChannel channel);
    ~PICout();
    PICout(const PICout &) = delete;
    PICout &operator=(const PICout &) = delete;

    PICout &operator<<(std::string_view utf8);
    PICout &operator<<(const char *utf8); ///< Null is empty.
    PICout &operator<<(const std::string &utf8) { return *this << std::string_view(utf8); }
    PICout &operator<<(const PIString &text);
    PICout &operator<<(const PIByteArray &bytes);
    PICout &operator<<(const PIVariant &value);
    PICout &operator<<(bool value) { return *this << (value ? "true" : "false"); }
    PICout &operator<<(char value) { return *this << std::string_view(&value, 1); }

    template <typename Number, std::enable_if_t<std::is_arithmetic_v<Number>, int> = 0>
    PICout &operator<<(Number value)
    {
        if constexpr (std::is_floating_point_v<Number>)
            return addReal(static_cast<double>(value));
        else
            return *this << std::to_string(value);
    }

private:
    PICout &addReal(double value);

    std::string m_line;
};
