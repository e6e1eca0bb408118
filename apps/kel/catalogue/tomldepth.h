/// \file
/// A look over a TOML file before it is read.
#pragma once

#include <QByteArray>

/// The first line, from 1, on which names are joined by more than \a most dots outside of texts and comments;
/// 0 when there is none. Each dot is a table inside a table, for which the TOML reader has no limit.
int firstDeepTomlLine(const QByteArray &text, int most);
