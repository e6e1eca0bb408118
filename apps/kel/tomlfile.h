/// \file
/// The one place that brings in the TOML reader, set up for files of strangers.
#pragma once

// No catalogue nests deeper than a table in a list; the reader and its tree call themselves once for each
// level, so that a hostile file must not have many.
#define TOML_HEADER_ONLY 1
#define TOML_EXCEPTIONS 0
#define TOML_MAX_NESTED_VALUES 16
#define TOML_ENABLE_FORMATTERS 0
#define TOML_ENABLE_UNRELEASED_FEATURES 0

#include <toml++/toml.h>
