#include "simulator/simulateddevice.h"

#include <piqt.h>

#include <complex>
#include <utility>

namespace
{

QString variableName(int argument)
{
    return QLatin1Char('a') + QString::number(argument);
}

void setVariable(PIEvaluator &evaluator, int argument, int value)
{
    PIEvaluatorContent &content = evaluator.content();
    const PIString name = Q2PIString(variableName(argument));
    const int index = content.findVariable(name);
    if (index >= 0) {
        content.setVariableValue(index, std::complex<double>(value, 0.));
        return;
    }
    content.addVariable(name, std::complex<double>(value, 0.));
    content.sortVariables();
}

} // namespace

SimulatedDevice::SimulatedDevice(SimulatorDeviceRules rules, ErrorHandler onError)
    : m_rules(std::move(rules))
    , m_onError(std::move(onError))
{
    // Every argument exists from the start, so that an expression may name one before it is captured.
    for (const int number : std::as_const(m_rules.arguments))
        setArgument(number, 0);
    run(m_rules.startValues);
}

std::optional<QVector<SimulatorReply>> SimulatedDevice::answer(const QByteArray &message)
{
    for (const SimulatorRule &rule : std::as_const(m_rules.rules)) {
        QMap<int, int> captures;
        if (!rule.request.match(message, captures))
            continue;
        for (auto capture = captures.cbegin(); capture != captures.cend(); ++capture)
            setArgument(capture.key(), capture.value());
        return run(rule.steps);
    }
    return std::nullopt;
}

QVector<SimulatorReply> SimulatedDevice::report(int index)
{
    return run(m_rules.reports.at(index).steps);
}

QVector<SimulatorReply> SimulatedDevice::run(const QVector<SimulatorStep> &steps)
{
    QVector<SimulatorReply> replies;
    int delayMs = 0;
    for (const SimulatorStep &step : steps) {
        switch (step.kind) {
        case SimulatorStep::Kind::Reply:
            replies.append({bytesOf(step), delayMs});
            break;
        case SimulatorStep::Kind::Set: {
            const QByteArray value = bytesOf(step);
            if (!value.isEmpty())
                setArgument(step.argument, static_cast<unsigned char>(value.at(0)));
            break;
        }
        case SimulatorStep::Kind::Wait:
            delayMs += step.waitMs;
            break;
        }
    }
    return replies;
}

QByteArray SimulatedDevice::bytesOf(const SimulatorStep &step)
{
    const auto tell = [this, &step](const QString &error) {
        if (m_onError)
            m_onError(QStringLiteral("%1, line %2: %3").arg(m_rules.name, QString::number(step.line), error));
    };
    return PI2QByteArray(step.text.bytes(m_arguments, m_rules.id, m_evaluator, tell));
}

void SimulatedDevice::setArgument(int number, int value)
{
    m_arguments[number] = value;
    setVariable(m_evaluator, number, value);
}

QString SimulatedDevice::firstBadExpression(const SimulatorDeviceRules &rules, const QString &fileName)
{
    PIEvaluator evaluator;
    for (const int number : rules.arguments)
        setVariable(evaluator, number, 0);
    for (const auto &[line, expression] : rules.expressions) {
        if (!evaluator.check(Q2PIString(expression)))
            return QStringLiteral("%1:%2: %3: %4")
                .arg(fileName, QString::number(line), expression.left(60), PI2QString(evaluator.error()));
    }
    return QString();
}
