#include "expressionscanner.h"

#include <algorithm>
#include <array>
#include <utility>

namespace
{

// Longer ones first: the first that fits is taken.
constexpr std::array<std::string_view, 19> Operators = {"<<", ">>", "<=", ">=", "==", "!=", "&&", "||", "+", "-",
                                                        "*",  "/",  "^",  "<",  ">",  "&",  "|",  "?",  ":"};

// The character functions of the C library depend on the locale.
bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c)
{
    return isDigit(c) || ((c | 0x20) >= 'a' && (c | 0x20) <= 'f');
}

bool isBinaryDigit(char c)
{
    return c == '0' || c == '1';
}

bool isNameStart(char c)
{
    return c == '_' || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z');
}

bool isNamePart(char c)
{
    return isNameStart(c) || isDigit(c);
}

} // namespace

bool ExpressionScanner::scan()
{
    if (m_text.size() > MaximalSize)
        return fail("Expression is longer than " + std::to_string(MaximalSize) + " bytes.");

    while (m_position < m_text.size()) {
        if (isSpace(m_text[m_position]))
            m_text[m_position++] = ' ';
        else if (!scanToken())
            return false;
    }
    return end();
}

bool ExpressionScanner::end()
{
    if (m_text.find_first_not_of(' ') == std::string::npos)
        return fail("Expression is empty.");
    if (m_operandNext)
        return failHere("Unexpected end of expression");
    if (m_levels.size() > 1)
        return fail("Missing parenthesis.");
    return endLevel();
}

bool ExpressionScanner::endLevel()
{
    return m_levels.back().conditions == 0 || failHere("Condition without an else value");
}

bool ExpressionScanner::scanToken()
{
    const char c = at(m_position);
    const bool afterName = std::exchange(m_afterName, false);
    if (!m_operandNext || (c != '+' && c != '-'))
        m_minus = NoMinus;
    if (c == '(')
        return openBracket(afterName);
    if (isDigit(c) || c == '.' || isNameStart(c)) {
        if (!m_operandNext)
            return failHere("Unexpected value");
        m_operandNext = false;
        return isNameStart(c) ? scanName() : scanNumber();
    }
    if (c == ')')
        return closeBracket();
    if (c == ',')
        return scanComma();
    return scanOperator();
}

bool ExpressionScanner::scanNumber()
{
    if (at(m_position) == '0' && (at(m_position + 1) | 0x20) == 'x')
        return scanPrefixedNumber(2);
    if (at(m_position) == '0' && (at(m_position + 1) | 0x20) == 'b')
        return scanPrefixedNumber(8);

    const size_t start = m_position;
    skipDigits();
    if (at(m_position) == '.') {
        ++m_position;
        skipDigits();
    }
    if (m_position == start + 1 && m_text[start] == '.')
        return failHere("Malformed number");
    if ((at(m_position) | 0x20) == 'e') {
        ++m_position;
        if (at(m_position) == '+' || at(m_position) == '-')
            ++m_position;
        if (!isDigit(at(m_position)))
            return failHere("Malformed number");
        skipDigits();
    }
    if (at(m_position) == 'i')
        ++m_position;
    return (!isNamePart(at(m_position)) && at(m_position) != '.') || failHere("Malformed number");
}

// Whole numbers in other notations have up to 32 bits, which is what the parser reads.
bool ExpressionScanner::scanPrefixedNumber(size_t digitsPerByte)
{
    const auto isOwnDigit = digitsPerByte == 2 ? isHexDigit : isBinaryDigit;
    m_text[m_position + 1] = char(m_text[m_position + 1] | 0x20);
    m_position += 2;
    const size_t start = m_position;
    while (isOwnDigit(at(m_position)))
        ++m_position;
    const size_t count = m_position - start;
    if (count == 0 || count > 4 * digitsPerByte || isNamePart(at(m_position)) || at(m_position) == '.')
        return failHere("Malformed number");
    return true;
}

bool ExpressionScanner::scanName()
{
    const size_t start = m_position;
    while (isNamePart(at(m_position)))
        ++m_position;
    std::string name = m_text.substr(start, m_position - start);
    if (std::find(m_names.begin(), m_names.end(), name) == m_names.end())
        m_names.push_back(std::move(name));
    m_afterName = true;
    return true;
}

bool ExpressionScanner::openBracket(bool isCall)
{
    if (!m_operandNext && !isCall)
        return failHere("Unexpected parenthesis");
    if (m_levels.size() > MaximalDepth)
        return fail("Brackets are nested deeper than " + std::to_string(MaximalDepth) + " levels.");
    Level level;
    level.isCall = isCall;
    m_levels.push_back(level);
    ++m_position;
    m_operandNext = true;
    return true;
}

bool ExpressionScanner::closeBracket()
{
    if (m_operandNext || m_levels.size() == 1)
        return failHere("Unexpected parenthesis");
    if (!endLevel())
        return false;
    m_levels.pop_back();
    ++m_position;
    return true;
}

// Elsewhere than between the arguments of a function a comma would make several results.
bool ExpressionScanner::scanComma()
{
    if (m_operandNext || !m_levels.back().isCall)
        return failHere("Unexpected comma");
    if (!endLevel())
        return false;
    ++m_position;
    m_operandNext = true;
    return true;
}

bool ExpressionScanner::scanOperator()
{
    const std::string_view rest = std::string_view(m_text).substr(m_position);
    const auto fits = [rest](std::string_view op) { return rest.substr(0, op.size()) == op; };
    const auto op = std::find_if(Operators.begin(), Operators.end(), fits);
    if (op == Operators.end())
        return failHere(rest.front() == '=' ? "Assignment is not possible" : "Unexpected character");
    const bool isSign = m_operandNext && (*op == "+" || *op == "-");
    if (m_operandNext && !isSign)
        return failHere("Unexpected operator");
    if ((*op == "?" || *op == ":") && !scanCondition(*op == ":"))
        return false;
    if (isSign)
        scanSign();
    m_position += op->size();
    m_operandNext = true;
    return true;
}

bool ExpressionScanner::scanCondition(bool isElse)
{
    size_t &conditions = m_levels.back().conditions;
    if (isElse && conditions == 0)
        return failHere("Misplaced colon");
    isElse ? --conditions : ++conditions;
    return true;
}

void ExpressionScanner::scanSign()
{
    const bool isMinus = m_text[m_position] == '-';
    if (isMinus && m_minus == NoMinus) {
        m_minus = m_position;
        return;
    }
    m_text[m_position] = ' ';
    if (isMinus)
        m_text[std::exchange(m_minus, NoMinus)] = ' ';
}

void ExpressionScanner::skipDigits()
{
    while (isDigit(at(m_position)))
        ++m_position;
}

bool ExpressionScanner::fail(const std::string &reason)
{
    m_error = reason;
    return false;
}

bool ExpressionScanner::failHere(const std::string &reason)
{
    return fail(reason + " found at position " + std::to_string(m_position) + ".");
}
