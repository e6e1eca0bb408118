/// \file
/// The quoted strings of a command template, turned into tokens.
#pragma once

#include <QString>
#include <QVector>

namespace Kv_Designer
{

/// A template without its quoted strings: each became hexadecimal tokens.
struct ExpandedText {
    QString text;
    QVector<int> origins;    ///< For each character of text, where it comes from in the template.
    int unterminatedAt = -1; ///< Where a string begins that never ends, or -1.
};

/// Expands the quoted strings of \a text; see replaceStringToHex().
ExpandedText expandQuotedText(const QString &text);

} // namespace Kv_Designer
