/// \file
/// Reads a command template strictly, for tools that want a slip named instead of read as zero.
#pragma once

#include <QString>
#include <kelwidgetsexport.h>

#include <optional>

namespace Kv_Designer
{

/// What is wrong with one token of a command template.
struct TemplateFault {
    int position = 0; ///< Of the token's first character in the text, from 0.
    QString token;    ///< As it stands in the text.
    QString reason;   ///< Half a sentence, such as "the type \"wrod\" is unknown".
};

/// The first token of \a text that does not follow the grammar of templates, if there is one.
/// packetArgumentsFromText() reads such a token all the same, mostly as zero.
KEL_WIDGETS_EXPORT std::optional<TemplateFault> findTemplateFault(const QString &text);

} // namespace Kv_Designer
