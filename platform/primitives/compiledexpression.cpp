#include "compiledexpression.h"

#include "expressionvariable.h"

#include <mpParser.h>

#include <cmath>
#include <limits>
#include <mutex>
#include <string_view>

namespace
{

using Complex = std::complex<double>;
using ComplexFunction = Complex (*)(const Complex &);
using RealFunction = double (*)(double);
using RealFunction2 = double (*)(double, double);

double realArgument(const mup::ICallback &function, const mup::IValue &value)
{
    if (value.IsScalar() && value.GetImag() == 0.0)
        return value.GetFloat();
    throw mup::ParserError("Function \"" + function.GetIdent() + "\" needs a real argument.");
}

// Makes a function of the standard library one of the parser's.
template <typename Function, int ArgumentCount>
class LibraryFunction : public mup::ICallback
{
public:
    LibraryFunction(const char *name, Function function)
        : ICallback(mup::cmFUNC, name, ArgumentCount)
        , m_function(function)
    {
    }

    void Eval(mup::ptr_val_type &result, const mup::ptr_val_type *arguments, int) override
    {
        if constexpr (std::is_same_v<Function, ComplexFunction>)
            *result = m_function(arguments[0]->GetComplex());
        else if constexpr (ArgumentCount == 1)
            *result = m_function(realArgument(*this, *arguments[0]));
        else
            *result = m_function(realArgument(*this, *arguments[0]), realArgument(*this, *arguments[1]));
    }

    const mup::char_type *GetDesc() const override { return ""; }
    mup::IToken *Clone() const override { return new LibraryFunction(*this); }

private:
    Function m_function;
};

void addFunctions(mup::ParserX &parser)
{
    using ComplexEntry = LibraryFunction<ComplexFunction, 1>;
    parser.DefineFun(new ComplexEntry("asin", [](const Complex &z) { return std::asin(z); }));
    parser.DefineFun(new ComplexEntry("acos", [](const Complex &z) { return std::acos(z); }));
    parser.DefineFun(new ComplexEntry("atan", [](const Complex &z) { return std::atan(z); }));
    parser.DefineFun(new ComplexEntry("asinh", [](const Complex &z) { return std::asinh(z); }));
    parser.DefineFun(new ComplexEntry("acosh", [](const Complex &z) { return std::acosh(z); }));
    parser.DefineFun(new ComplexEntry("atanh", [](const Complex &z) { return std::atanh(z); }));

    using RealEntry = LibraryFunction<RealFunction, 1>;
    parser.DefineFun(new RealEntry("floor", [](double x) { return std::floor(x); }));
    parser.DefineFun(new RealEntry("ceil", [](double x) { return std::ceil(x); }));
    parser.DefineFun(new RealEntry("round", [](double x) { return std::round(x); }));
    parser.DefineFun(new RealEntry("trunc", [](double x) { return std::trunc(x); }));

    using RealEntry2 = LibraryFunction<RealFunction2, 2>;
    parser.DefineFun(new RealEntry2("atan2", [](double y, double x) { return std::atan2(y, x); }));
    parser.DefineFun(new RealEntry2("fmod", [](double x, double y) { return std::fmod(x, y); }));
}

// Runs a step of the parser. What it throws becomes the text of \a error, which else is empty.
template <typename Step>
void runStep(const Step &step, std::string &error)
{
    error.clear();
    try {
        step();
        return;
    } catch (const mup::ParserError &failure) {
        error = failure.GetMsg();
    } catch (const std::exception &failure) {
        error = failure.what();
    }
    if (error.empty())
        error = "The expression cannot be evaluated.";
}

bool isNumber(const mup::IValue &value)
{
    constexpr std::string_view Types = "bcfi";
    return Types.find(value.GetType()) != std::string_view::npos;
}

} // namespace

std::unique_ptr<mup::ParserX> makeExpressionParser()
{
    // The library makes its packages of functions on first use and does not guard that.
    static std::mutex firstUse;
    const std::lock_guard lock(firstUse);
    auto parser = std::make_unique<mup::ParserX>(mup::pckCOMMON | mup::pckCOMPLEX);
    for (const char *assignment : {"=", "+=", "-=", "*=", "/="})
        parser->RemoveOprt(assignment);
    for (const char *function : {"parserid", "sizeof"})
        parser->RemoveFun(function);
    for (const char *cast : {"(float)", "(int)"})
        parser->RemoveInfixOprt(cast);
    parser->RemovePostfixOprt("!");
    addFunctions(*parser);
    return parser;
}

struct CompiledExpression::Private {
    explicit Private(const mup::ParserX &prototype)
        : parser(prototype)
    {
    }

    mup::ParserX parser;
    std::vector<Variable> variables; // the parser reads them where they are
};

std::unique_ptr<CompiledExpression> CompiledExpression::compile(const mup::ParserX &prototype, const std::string &text,
                                                                const std::vector<Variable> &variables,
                                                                std::string &error)
{
    auto parts = std::make_unique<Private>(prototype);
    parts->variables = variables;
    const auto prepare = [&] {
        for (const Variable &variable : variables)
            parts->parser.DefineVar(variable.name, mup::Variable(&variable.value->value));
        parts->parser.SetExpr(text);
    };
    runStep(prepare, error);
    if (!error.empty())
        return nullptr;

    std::unique_ptr<CompiledExpression> expression(new CompiledExpression(std::move(parts)));
    // The parser reads the text when it is first evaluated. What is no number then is none with other values.
    const auto evaluateFirst = [&] {
        if (!isNumber(expression->d->parser.Eval()))
            throw mup::ParserError("The result is no number.");
    };
    runStep(evaluateFirst, error);
    return error.empty() ? std::move(expression) : nullptr;
}

CompiledExpression::CompiledExpression(std::unique_ptr<Private> parts)
    : d(std::move(parts))
{
}

CompiledExpression::~CompiledExpression() = default;

std::complex<double> CompiledExpression::evaluate(std::string &error)
{
    Complex result = std::numeric_limits<double>::quiet_NaN();
    runStep([&] { result = d->parser.Eval().GetComplex(); }, error); // of a comparison it is 1 or 0
    return result;
}
