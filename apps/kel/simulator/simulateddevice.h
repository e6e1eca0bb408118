/// \file
/// A device that exists as rules only.
#pragma once

#include "simulator/simulatorrules.h"

#include <QMap>

#include <pievaluator.h>

#include <functional>
#include <optional>

/// Bytes that a simulated device sends, and how long after the request (or the start of a report).
struct SimulatorReply {
    QByteArray bytes;
    int delayMs = 0;
};

/// Turns requests into replies and remembers its arguments in between, as a relay remembers whether it
/// is on. Knows nothing of lines and clocks: who owns it keeps the delays. One thread.
class SimulatedDevice
{
public:
    /// Gets a line of text for each expression that could not be evaluated.
    using ErrorHandler = std::function<void(const QString &error)>;

    explicit SimulatedDevice(SimulatorDeviceRules rules, ErrorHandler onError = {});

    const SimulatorDeviceRules &rules() const { return m_rules; }

    /// What the device sends about \a message, in order; nothing at all when no rule matches. The bytes
    /// that the rule captures are the device's arguments from here on.
    std::optional<QVector<SimulatorReply>> answer(const QByteArray &message);

    /// What report \a index (of rules().reports) sends this time.
    QVector<SimulatorReply> report(int index);

    /// Value of argument \a number, 0 when it was never set.
    int argument(int number) const { return m_arguments.value(number); }

    /// The first expression of \a rules that is no expression, as "FILE:LINE: …"; empty when all are.
    static QString firstBadExpression(const SimulatorDeviceRules &rules, const QString &fileName);

private:
    QVector<SimulatorReply> run(const QVector<SimulatorStep> &steps);
    QByteArray bytesOf(const SimulatorStep &step);
    void setArgument(int number, int value);

    SimulatorDeviceRules m_rules;
    ErrorHandler m_onError;
    QMap<int, int> m_arguments;
    PIEvaluator m_evaluator;
};
