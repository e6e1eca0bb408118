/// \file
/// An expression that has been parsed.
#pragma once

#include <complex>
#include <memory>
#include <string>
#include <vector>

namespace mup
{
class ParserX;
}

/// A parser with the functions, constants and operators of our expressions and no text yet.
std::unique_ptr<mup::ParserX> makeExpressionParser();

struct ExpressionVariable;

/// One parsed expression, which keeps the variables that occur in it alive.
class CompiledExpression
{
public:
    struct Variable {
        std::string name;
        std::shared_ptr<ExpressionVariable> value;
    };

    /// Null, with a text in \a error, for what is no expression. \a text has passed the scanner and
    /// \a variables are the ones that it names. The functions are shared with \a prototype, so both stay
    /// on one thread.
    static std::unique_ptr<CompiledExpression> compile(const mup::ParserX &prototype, const std::string &text,
                                                       const std::vector<Variable> &variables, std::string &error);
    ~CompiledExpression();

    /// The result for the variables' values of this moment; a comparison gives 1 or 0. Not-a-number
    /// when it cannot be computed, and then \a error says why, else it is empty.
    std::complex<double> evaluate(std::string &error);

private:
    struct Private;
    explicit CompiledExpression(std::unique_ptr<Private> parts);

    std::unique_ptr<Private> d;
};
