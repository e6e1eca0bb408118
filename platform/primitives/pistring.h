/// \file
/// Text as the primitives speak it.
#pragma once

#include <QtCore/QString>

#include <kelprimitivesexport.h>

#include <string>
#include <vector>

/// A piece of Unicode text with value semantics. Every text is made from UTF-8; bytes that are no
/// UTF-8 become the replacement character. Not shared between threads while it is changed.
class KEL_PRIMITIVES_EXPORT PIString
{
public:
    PIString() = default;
    PIString(const char *utf8); ///< Null gives the empty text.
    PIString(const std::string &utf8);

    static PIString fromUtf8(const char *utf8, int size); ///< Exactly \a size bytes; not above 0 gives the empty text.
    static PIString fromUtf16(const QString &text);
    /// \a number written with the digits 0-9a-z of \a base (2 to 36; any other base counts as 10).
    static PIString fromNumber(long long number, int base = 10);

    std::string toUtf8() const;
    const QString &toUtf16() const { return m_text; }

    int size() const { return int(m_text.size()); } ///< In UTF-16 units.
    bool isEmpty() const { return m_text.isEmpty(); }

    /// The parts between the occurrences of \a separator, empty parts kept: one more than there are
    /// separators, so never none. An empty separator gives the whole text as the one part.
    std::vector<PIString> split(const PIString &separator) const;
    PIString toLowerCase() const;
    PIString trimmed() const; ///< Without white space at both ends.
    bool startsWith(const PIString &beginning) const { return m_text.startsWith(beginning.m_text); }
    bool contains(const PIString &part) const { return m_text.contains(part.m_text); }

    /// The whole number that the text is in \a base, 2 to 36. Base -1 lets the text decide: "0x" is
    /// hexadecimal, "0b" binary, a leading zero octal, anything else decimal. White space around it,
    /// one sign and the prefix that fits the base are taken. A number out of range is the nearest in
    /// range; a text that is no number, or a base that is none, gives 0.
    long long toNumberBase(int base = -1) const;
    int toInt(int base = -1) const; ///< The same, limited to the range of an int.

    PIString &operator+=(const PIString &other);

    friend PIString operator+(PIString left, const PIString &right) { return left += right; }
    friend bool operator==(const PIString &left, const PIString &right) { return left.m_text == right.m_text; }
    friend bool operator!=(const PIString &left, const PIString &right) { return left.m_text != right.m_text; }
    /// By UTF-16 units; the same in every locale.
    friend bool operator<(const PIString &left, const PIString &right) { return left.m_text < right.m_text; }

private:
    QString m_text;
};

// Texts are compared with plain literals everywhere, so that needs no PIString to be spelled out.
inline bool operator==(const PIString &left, const char *right)
{
    return left == PIString(right);
}
inline bool operator==(const char *left, const PIString &right)
{
    return PIString(left) == right;
}
inline bool operator!=(const PIString &left, const char *right)
{
    return left != PIString(right);
}
inline bool operator!=(const char *left, const PIString &right)
{
    return PIString(left) != right;
}
