#include "check/rule.h"

const QVector<RuleInfo> &checkRules()
{
    static const QVector<RuleInfo> Rules = {
        {Rule::UnknownObject, QStringLiteral("unknown-object"),
         QStringLiteral("A connection begins or ends at an object that is not on the form.")},
        {Rule::UnknownSignal, QStringLiteral("unknown-signal"),
         QStringLiteral("A connection begins at a signal that its sender does not have.")},
        {Rule::UnknownSlot, QStringLiteral("unknown-slot"),
         QStringLiteral("A connection ends at a slot that its receiver does not have.")},
        {Rule::ArgumentMismatch, QStringLiteral("argument-mismatch"),
         QStringLiteral("A connection's slot takes arguments that the signal does not give.")},
        {Rule::DuplicateName, QStringLiteral("duplicate-name"),
         QStringLiteral("Two objects of the form have one name, so connections reach the first only.")},
        {Rule::UnmatchedNumber, QStringLiteral("unmatched-number"),
         QStringLiteral("A numbered connection carries numbers that no widget at its other end has.")},
        {Rule::UnknownDevice, QStringLiteral("unknown-device"),
         QStringLiteral("A device's currentID names no complete device of the catalogue.")},
        {Rule::UnknownSend, QStringLiteral("unknown-send"),
         QStringLiteral("A device is asked to send a number that is none of its commands.")},
        {Rule::UnsetArgument, QStringLiteral("unset-argument"),
         QStringLiteral("A command that the panel sends uses an argument that nothing sets.")},
        {Rule::UnheardAnswer, QStringLiteral("unheard-answer"),
         QStringLiteral("A device gives an answer that no widget listens to.")},
        {Rule::UnknownCommand, QStringLiteral("unknown-command"),
         QStringLiteral("A button's command is not in the catalogue.")},
        {Rule::PlotVariable, QStringLiteral("plot-variable"),
         QStringLiteral("A plot shows a variable that no device of the panel gives, or one twice.")},
        {Rule::ShadowedAnswer, QStringLiteral("shadowed-answer"),
         QStringLiteral("An answer can never be the one that matches, since an earlier one matches the same bytes.")},
        {Rule::AnswerValue, QStringLiteral("answer-value"),
         QStringLiteral("An answer expects a value that no byte has.")},
        {Rule::BadExpression, QStringLiteral("bad-expression"),
         QStringLiteral("An expression of a command never gives a byte.")},
        {Rule::BadWord, QStringLiteral("bad-word"),
         QStringLiteral("A word of a command or answer is read as 0, since it is no number.")},
        {Rule::MissingFile, QStringLiteral("missing-file"),
         QStringLiteral("A picture of the form or a script of the project is not there.")},
        {Rule::MainScript, QStringLiteral("main-script"),
         QStringLiteral("A project's main script is none of its scripts.")},
    };
    return Rules;
}

QString nameOf(Rule rule)
{
    return checkRules().at(int(rule)).name;
}
