/// \file
/// Identifiers made from labels that people typed.
#pragma once

#include <QString>
#include <kelwidgetsexport.h>

/// Makes an identifier from \a text: trims it, turns each ":", ",", ".", space and tab into "_" and
/// puts "_" in front when the first character is neither a letter nor "_". Other characters stay,
/// so the result need not pass isCName(). Empty for a blank text.
KEL_WIDGETS_EXPORT QString toCName(QString text);

/// Whether \a text, trimmed, is an identifier: a letter or "_", then letters, decimal digits and "_".
KEL_WIDGETS_EXPORT bool isCName(QString text);
