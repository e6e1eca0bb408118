/// \file
/// Names and texts from files, as they can stand in a terminal.
#pragma once

#include <QString>

/// \a text with all that steers the terminal, or turns the writing round, as a number: "\u001b".
QString printable(const QString &text);
