// What an expression costs that was seen before, beside the parser below our evaluator with the same
// expression already parsed. Both get another value of the variable before each evaluation, as commands
// with arguments do.
#include "comparison.h"
#include "subjects.h"

#include <pievaluator.h>

#include <mpParser.h>

#include <memory>
#include <sstream>

namespace
{

constexpr int Loops = 1000;

std::string inWords(std::complex<double> value)
{
    std::ostringstream text;
    text << value;
    return text.str();
}

/// Values of the variable, the same for everybody.
double valueOf(int loop)
{
    return loop % 251;
}

/// An evaluator with one variable and one expression.
struct Ours {
    explicit Ours(const std::string &expression)
        : text(expression)
        , variable(evaluator.content().addVariable("a0"))
    {
        require(evaluator.check(text), "the evaluator refuses " + expression);
    }

    std::complex<double> evaluate(double value)
    {
        evaluator.content().setVariableValue(variable, value);
        return evaluator.evaluate();
    }

    PIString text;
    PIEvaluator evaluator;
    int variable;
    std::complex<double> sum;
};

struct Bare {
    explicit Bare(const std::string &expression)
        : parser(mup::pckCOMMON | mup::pckCOMPLEX)
    {
        parser.DefineVar("a0", mup::Variable(&argument));
        parser.SetExpr(expression);
    }

    std::complex<double> evaluate(double value)
    {
        argument = std::complex<double>(value);
        return parser.Eval().GetComplex();
    }

    mup::Value argument = std::complex<double>(0.0);
    mup::ParserX parser;
    std::complex<double> sum;
};

template <typename Evaluating>
Contender repeated(const std::string &name, const std::shared_ptr<Evaluating> &evaluating)
{
    return {name,
            [evaluating] {
                for (int i = 0; i < Loops; ++i)
                    evaluating->sum += evaluating->evaluate(valueOf(i));
            },
            Loops, [evaluating] { return inWords(evaluating->evaluate(valueOf(17))); }};
}

/// As a command is encoded: the text is handed in anew each time.
Contender checked(const std::shared_ptr<Ours> &ours)
{
    return {"check and evaluate",
            [ours] {
                for (int i = 0; i < Loops; ++i) {
                    if (ours->evaluator.check(ours->text))
                        ours->sum += ours->evaluate(valueOf(i));
                }
            },
            Loops, [ours] { return inWords(ours->evaluate(valueOf(17))); }};
}

} // namespace

void benchExpression()
{
    constexpr double Goal = 1.1;
    for (const char *expression : {"(a0*2)", "(a0/256)", "(3*sqrt(a0+1)-sin(a0)/7)"}) {
        const auto ours = std::make_shared<Ours>(expression);
        const Contender bare = repeated("muparserx", std::make_shared<Bare>(expression));
        compare(expression, repeated("PIEvaluator::evaluate", ours), bare, Goal);
        compare(expression, checked(ours), bare, Goal);
    }
}
