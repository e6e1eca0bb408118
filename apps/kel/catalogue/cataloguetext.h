/// \file
/// Reads the texts of a catalogue strictly, for tools that want a slip named instead of read as zero.
#pragma once

#include <QString>

/// What is wrong with a command text, as half a sentence; empty when every token is a byte (00 to FF),
/// "%id", "%" and the number of an argument, or an expression that can be worked out once its arguments
/// are set.
QString commandTextFault(const QString &text);

/// The same for an answer text, in which there are no expressions.
QString answerTextFault(const QString &text);

/// The same for a typed template. Constants of one byte above FF, of which only the low byte would be
/// sent, are faults too.
QString templateFault(const QString &text);

/// Whether \a text, a command or an answer, names the device's own number.
bool usesDeviceId(const QString &text);
