/// \file
/// How command and answer texts fall into tokens.
#pragma once

#include <QStringList>

/// The words of \a text between single spaces, without the empty ones. Only the space separates: a tab
/// or a line break stays inside its token.
inline QStringList spaceSeparatedTokens(const QString &text)
{
    return text.split(QLatin1Char(' '), Qt::SkipEmptyParts, Qt::CaseSensitive);
}
