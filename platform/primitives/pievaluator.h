/// \file
/// Arithmetic expressions in text.
#pragma once

#include <kelprimitivesexport.h>
#include <pistring.h>

#include <complex>
#include <memory>
#include <vector>

class CompiledExpression;
struct ExpressionVariable;

/// The variables of an evaluator, numbered from 0. Any text is a name; an expression can use those
/// that are an identifier (a letter or "_", then letters, digits and "_", all of ASCII), that name no
/// function or constant, are not "and" or "or" and do not begin with "true" or "false".
class KEL_PRIMITIVES_EXPORT PIEvaluatorContent
{
public:
    int findVariable(const PIString &name) const; ///< The number of the variable, -1 for an unknown name.

    /// Appends a variable and returns its number. One of that name gets the value and keeps its number.
    int addVariable(const PIString &name, std::complex<double> value = {});

    bool setVariableValue(int index, std::complex<double> value); ///< False and no effect for a number out of range.

    void sortVariables(); ///< Renumbers the variables by name. Finding one is fast after that.

    int variablesCount() const { return int(m_variables.size()); }
    PIString variableName(int index) const;              ///< Empty for a number out of range.
    std::complex<double> variableValue(int index) const; ///< 0 for a number out of range.

private:
    friend class PIEvaluator;

    struct Variable {
        PIString name;
        std::shared_ptr<ExpressionVariable> value; // shared with the expressions that use it
    };

    bool isIndex(int index) const { return index >= 0 && index < variablesCount(); }

    std::vector<Variable> m_variables;
    size_t m_sortedCount = 0; // so many at the front are in order
};

/// Checks and evaluates arithmetic expressions over complex numbers.
///
/// An expression has numbers (2, .5, 1e3, 0x1F, 0b101, 3i), the variables of content(), the constants
/// e, pi, i, true and false, brackets, and the operators + - * / ^ (a division is always real), << >>
/// & | (whole numbers), == != < > <= >= && || and condition ? value : value. Functions: abs arg conj
/// real imag norm, sqrt pow exp ln log log2 log10, sin cos tan asin acos atan and the same with h,
/// atan2 fmod floor ceil round trunc min max sum. At most 4096 bytes and 64 levels of brackets.
///
/// Nothing throws. A parsed expression is kept, so checking the same text again is fast. An evaluator
/// stays on one thread.
class KEL_PRIMITIVES_EXPORT PIEvaluator
{
public:
    PIEvaluator();
    ~PIEvaluator();
    PIEvaluator(const PIEvaluator &) = delete;
    PIEvaluator &operator=(const PIEvaluator &) = delete;

    /// Makes \a expression the current one. False when it is malformed, uses an unknown name or cannot
    /// be computed with the present values; error() then says why and there is no current expression.
    bool check(const PIString &expression)
    {
        // Commands are sent again and again: often it is a copy of the very text that was checked last.
        m_error.clear();
        return isCurrent(expression.toUtf16()) || checkOther(expression);
    }

    /// Why the last check or evaluation failed, empty when it did not.
    PIString error() const { return PIString(m_error); }

    /// The current expression's value with the present values of the variables; a comparison gives 1
    /// or 0, a division by zero an infinity. Not-a-number, with a text in error(), when it cannot be
    /// computed or there is no current expression.
    std::complex<double> evaluate();

    PIEvaluatorContent &content() { return m_content; }
    const PIEvaluatorContent &content() const { return m_content; }

private:
    struct Expressions;

    bool isCurrent(const QString &text) const
    {
        return m_current && text.constData() == m_currentText.constData() && text.size() == m_currentText.size();
    }
    bool checkOther(const PIString &expression);

    PIEvaluatorContent m_content;
    std::string m_error;
    std::unique_ptr<Expressions> m_expressions;
    CompiledExpression *m_current = nullptr;
    QString m_currentText; // of the current one
};
