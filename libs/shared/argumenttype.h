/// \file
/// The type words of command templates.
#pragma once

#include <QString>
#include <commandargument.h>
#include <kelwidgetsexport.h>

namespace Kv_Designer
{

/// What stands between the parentheses of a token.
struct TypePart {
    ArgumentType type = ArgumentType::UInt8;
    int size = 1;           ///< Bytes of a value of this type.
    bool swapBytes = false; ///< Marked by "~" before or after the word.
    bool isKnown = true;    ///< False for a word that says nothing and so means one unsigned byte.
};

/// Reads a type word with its "~" marks, in any case and with blanks around it.
KEL_WIDGETS_EXPORT TypePart readTypePart(const QString &text);

/// The first word for \a type, as a person would write it in a template.
KEL_WIDGETS_EXPORT QString typeWord(ArgumentType type);

} // namespace Kv_Designer
