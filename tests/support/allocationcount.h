/// \file
/// Counts allocations. A test that uses it names allocationcount.cpp among its SOURCES, as that file
/// puts itself before the memory functions of the whole program.
#pragma once

#include <functional>

/// Whether counting works: the sanitizers bring memory functions of their own.
bool canCountAllocations();

/// How often \a work calls malloc, calloc or realloc, directly or through `new`, on this thread.
int countAllocations(const std::function<void()> &work);
