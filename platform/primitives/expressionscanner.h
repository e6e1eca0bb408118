/// \file
/// First look at the text of an expression.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Takes an expression apart into words, numbers, operators and brackets before the parser sees it,
/// and lets only those pass that arithmetic needs, in an order that makes sense. What the parser would
/// also take (assignments, strings, lists, indices) or could stumble over (length, depth, missing
/// operands, stray characters) ends here.
class ExpressionScanner
{
public:
    static constexpr size_t MaximalSize = 4096; ///< Bytes of UTF-8.
    static constexpr size_t MaximalDepth = 64;  ///< Brackets inside each other.

    explicit ExpressionScanner(std::string text)
        : m_text(std::move(text))
    {
    }

    bool scan(); ///< Whether the text may go to the parser; otherwise error() says why not.

    const std::string &error() const { return m_error; }
    /// The text with white space made spaces and signs without effect blanked: the parser takes one
    /// minus before a value and nothing else. Positions stay.
    const std::string &text() const { return m_text; }
    const std::vector<std::string> &names() const { return m_names; } ///< Each word once, in order of appearance.

private:
    // One level of brackets; the first stands for the whole text.
    struct Level {
        bool isCall = false;   // holds the arguments of a function
        size_t conditions = 0; // that still miss their second value
    };

    bool scanToken();
    bool scanNumber();
    bool scanPrefixedNumber(size_t digitsPerByte);
    bool scanName();
    bool openBracket(bool isCall);
    bool closeBracket();
    bool scanComma();
    bool scanOperator();
    bool scanCondition(bool isElse);
    void scanSign();
    bool endLevel();
    bool end();

    char at(size_t position) const { return position < m_text.size() ? m_text[position] : '\0'; }
    void skipDigits();
    bool fail(const std::string &reason);
    bool failHere(const std::string &reason);

    static constexpr size_t NoMinus = std::string::npos;

    std::string m_text;
    std::string m_error;
    std::vector<std::string> m_names;
    std::vector<Level> m_levels{Level()};
    size_t m_position = 0;
    size_t m_minus = NoMinus;  // where the sign is that the value to come has so far
    bool m_operandNext = true; // a value or a sign has to follow, else an operator
    bool m_afterName = false;
};
