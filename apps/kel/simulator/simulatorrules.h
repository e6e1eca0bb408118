/// \file
/// What a simulated device answers, read from a rules file (docs/formats/simulator-rules.md).
#pragma once

#include <answerpattern.h>
#include <commandtext.h>

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QVector>

/// One line of what a device does: it sends bytes, changes one of its arguments or waits.
struct SimulatorStep {
    enum class Kind { Reply, Set, Wait };

    Kind kind = Kind::Reply;
    int line = 0;     ///< Where it stands in the file, from 1.
    CommandText text; ///< The bytes of Reply; the one byte that Set stores.
    int argument = 0; ///< Set only.
    int waitMs = 0;   ///< Wait only.
};

/// A request and what the device does about it.
struct SimulatorRule {
    int line = 0;
    AnswerPattern request;
    QVector<SimulatorStep> steps;
};

/// What the device does on its own, again and again.
struct SimulatorReport {
    int line = 0;
    int periodMs = 0;
    QVector<SimulatorStep> steps;
};

/// One device of the file: its number on the bus ("%id"), its start values, rules and reports.
struct SimulatorDeviceRules {
    QString name;
    int id = 0;
    QVector<SimulatorStep> startValues;
    QVector<SimulatorRule> rules; ///< In file order; the first that matches is taken.
    QVector<SimulatorReport> reports;
    QSet<int> arguments; ///< Every argument number that its texts name.

    /// Every expression of its texts with the line it stands on, for a check before anything runs.
    QVector<QPair<int, QString>> expressions;
};

/// A whole rules file, or the one line that says why it is none.
struct SimulatorRules {
    QVector<SimulatorDeviceRules> devices;
    QString error; ///< "FILE:LINE: what is wrong", empty when the file is good.

    /// Reads \a text; \a fileName appears in the error only. Any bytes are safe to give.
    static SimulatorRules fromText(const QByteArray &text, const QString &fileName);
};
