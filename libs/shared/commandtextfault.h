/// \file
/// Reads command and answer texts strictly, for tools that want a slip named instead of read as zero.
#pragma once

#include <QSet>
#include <QString>
#include <QVector>

#include <kelwidgetsexport.h>

/// What is wrong with one word of a command or answer text.
struct TextFault {
    enum class Kind {
        NotANumber,   ///< The word is read as 0, or as argument 0.
        OutsideAByte, ///< A fixed value of an answer that no byte has.
        BadExpression ///< The expression gives no byte, whatever its arguments are.
    };

    Kind kind = Kind::NotANumber;
    QString word;   ///< As it stands in the text.
    QString reason; ///< Half a sentence, such as "is no number, so it sends 00".
};

/// The arguments that a command text takes its values from.
struct TextArguments {
    QSet<int> named;         ///< By "%N"; one that was never set sends 00.
    QSet<int> inExpressions; ///< As "aN"; with one that was never set the expression sends nothing.
};

/// The words of the command \a text that hardly mean what they do. Every argument counts as set.
KEL_WIDGETS_EXPORT QVector<TextFault> findCommandFaults(const QString &text);

/// The words of the answer \a text, of a device with its own id \a deviceID, that hardly mean what they do.
KEL_WIDGETS_EXPORT QVector<TextFault> findAnswerFaults(const QString &text, int deviceID);

/// The arguments that the command \a text uses.
KEL_WIDGETS_EXPORT TextArguments argumentsOfCommand(const QString &text);
