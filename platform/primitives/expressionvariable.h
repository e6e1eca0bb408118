/// \file
/// The value of a variable, where the expressions that use it read it.
#pragma once

#include <mpValue.h>

#include <complex>

/// Shared by an evaluator and the expressions that were parsed for it: a new value reaches them all
/// without being copied to each.
struct ExpressionVariable {
    explicit ExpressionVariable(std::complex<double> first)
        : value(first)
    {
    }

    mup::Value value; // always a number
};
