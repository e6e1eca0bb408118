/// \file
/// The rules that the check of a panel knows (docs/checks.md explains each).
#pragma once

#include <QString>
#include <QVector>

/// What can be wrong with a panel.
enum class Rule {
    UnknownObject,
    UnknownSignal,
    UnknownSlot,
    ArgumentMismatch,
    DuplicateName,
    UnmatchedNumber,
    UnknownDevice,
    UnknownSend,
    UnsetArgument,
    UnheardAnswer,
    UnknownCommand,
    PlotVariable,
    ShadowedAnswer,
    AnswerValue,
    BadExpression,
    BadWord,
    MissingFile,
    MainScript,
};

/// A rule as people meet it.
struct RuleInfo {
    Rule rule;
    QString name;    ///< As reports and docs/checks.md call it, "unknown-slot".
    QString summary; ///< What it finds, in a sentence.
};

/// Every rule, in the order of Rule.
const QVector<RuleInfo> &checkRules();

/// The name of \a rule.
QString nameOf(Rule rule);
