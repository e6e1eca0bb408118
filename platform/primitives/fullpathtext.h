/// \file
/// Fields of full-path texts.
#pragma once

#include <pistring.h>

#include <vector>

/// Field number \a index without white space around it; empty when there is none.
PIString fullPathField(const std::vector<PIString> &fields, size_t index);

/// Whether \a text is a whole number as PIString::toNumberBase(-1) reads it, or empty.
bool isNumberOrEmpty(const PIString &text);
