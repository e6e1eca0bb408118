#include "pievaluator.h"

#include "compiledexpression.h"
#include "expressionscanner.h"
#include "expressionvariable.h"

#include <QHash>

#include <mpParser.h>

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace
{

// A panel has some hundred command texts at most; who feeds more loses only the time of parsing again.
constexpr size_t MaximalKeptExpressions = 256;

bool byName(const PIString &left, const PIString &right)
{
    return left < right;
}

} // namespace

int PIEvaluatorContent::findVariable(const PIString &name) const
{
    const auto unsorted = m_variables.begin() + std::ptrdiff_t(m_sortedCount);
    auto found =
        std::lower_bound(m_variables.begin(), unsorted, name,
                         [](const Variable &variable, const PIString &key) { return byName(variable.name, key); });
    if (found == unsorted || found->name != name)
        found =
            std::find_if(unsorted, m_variables.end(), [&](const Variable &variable) { return variable.name == name; });
    return found == m_variables.end() ? -1 : int(found - m_variables.begin());
}

int PIEvaluatorContent::addVariable(const PIString &name, std::complex<double> value)
{
    const int index = findVariable(name);
    if (setVariableValue(index, value))
        return index;
    m_variables.push_back({name, std::make_shared<ExpressionVariable>(value)});
    return variablesCount() - 1;
}

bool PIEvaluatorContent::setVariableValue(int index, std::complex<double> value)
{
    if (!isIndex(index))
        return false;
    m_variables[size_t(index)].value->value = value;
    return true;
}

void PIEvaluatorContent::sortVariables()
{
    const auto less = [](const Variable &left, const Variable &right) { return byName(left.name, right.name); };
    const auto unsorted = m_variables.begin() + std::ptrdiff_t(m_sortedCount);
    std::sort(unsorted, m_variables.end(), less);
    std::inplace_merge(m_variables.begin(), unsorted, m_variables.end(), less);
    m_sortedCount = m_variables.size();
}

PIString PIEvaluatorContent::variableName(int index) const
{
    return isIndex(index) ? m_variables[size_t(index)].name : PIString();
}

std::complex<double> PIEvaluatorContent::variableValue(int index) const
{
    return isIndex(index) ? m_variables[size_t(index)].value->value.GetComplex() : std::complex<double>();
}

struct PIEvaluator::Expressions {
    const mup::ParserX &prototype()
    {
        if (!parser)
            parser = makeExpressionParser();
        return *parser;
    }

    bool isOwnWord(const std::string &name)
    {
        const mup::ParserX &parser = prototype();
        return name == "true" || name == "false" || parser.IsFunDefined(name) || parser.IsConstDefined(name);
    }

    // The text's names that are variables. False, with a text in error, when one is nothing at all.
    bool resolveNames(const std::vector<std::string> &names, const PIEvaluatorContent &content,
                      std::vector<CompiledExpression::Variable> &variables, std::string &error);

    std::unique_ptr<CompiledExpression> compile(const std::string &text, const PIEvaluatorContent &content,
                                                std::string &error);

    std::unique_ptr<mup::ParserX> parser; // what every expression is a copy of, made on first use
    std::unordered_map<QString, std::unique_ptr<CompiledExpression>> kept;
};

bool PIEvaluator::Expressions::resolveNames(const std::vector<std::string> &names, const PIEvaluatorContent &content,
                                            std::vector<CompiledExpression::Variable> &variables, std::string &error)
{
    for (const std::string &name : names) {
        if (isOwnWord(name))
            continue;
        const int index = content.findVariable(name);
        if (index < 0) {
            error = "Unknown name \"" + name + "\".";
            return false;
        }
        variables.push_back({name, content.m_variables[size_t(index)].value});
    }
    return true;
}

std::unique_ptr<CompiledExpression> PIEvaluator::Expressions::compile(const std::string &text,
                                                                      const PIEvaluatorContent &content,
                                                                      std::string &error)
{
    ExpressionScanner scanner(text);
    if (!scanner.scan()) {
        error = scanner.error();
        return nullptr;
    }
    std::vector<CompiledExpression::Variable> variables;
    if (!resolveNames(scanner.names(), content, variables, error))
        return nullptr;
    return CompiledExpression::compile(prototype(), scanner.text(), variables, error);
}

PIEvaluator::PIEvaluator()
    : m_expressions(std::make_unique<Expressions>())
{
}

PIEvaluator::~PIEvaluator() = default;

bool PIEvaluator::checkOther(const PIString &expression)
{
    if (m_current && m_currentText == expression.toUtf16())
        return true;
    m_current = nullptr;
    auto &kept = m_expressions->kept;
    auto found = kept.find(expression.toUtf16());
    if (found == kept.end()) {
        auto compiled = m_expressions->compile(expression.toUtf8(), m_content, m_error);
        if (!compiled)
            return false;
        if (kept.size() >= MaximalKeptExpressions)
            kept.clear();
        found = kept.emplace(expression.toUtf16(), std::move(compiled)).first;
    }
    m_current = found->second.get();
    m_currentText = found->first;
    return true;
}

std::complex<double> PIEvaluator::evaluate()
{
    if (m_current)
        return m_current->evaluate(m_error);
    if (m_error.empty())
        m_error = "There is no expression.";
    return std::numeric_limits<double>::quiet_NaN();
}
