#pragma once

/// @file
/// Random numbers from the standard runtime's generator, reduced to 15 bits. It is seeded with the time at the
/// first draw, and never again: a host's own `srand` counts when it comes after that. The generator and the flag
/// are the process's, so calls need to be serialised.

#include "zorv_tools/core/export.h"

namespace zorv {

/// Uniform, strictly between 0 and 1: a whole number of 32769ths, and never 0.5, so that the polar method below
/// needs no guard.
ZORV_TOOLS_EXPORT double rand_frac();

/// Standard normal, by the polar method (G. Marsaglia, T. Bray, A convenient method for generating normal variables,
/// 1964). Of the two numbers that the method gives, the second is dropped.
ZORV_TOOLS_EXPORT double rand_frac_gauss();

/// Normal about the middle of the interval from `minimum` to `maximum`, half of which is `half_range` standard
/// deviations. Values beyond a bound become the bound and are not drawn again, so that the bounds are more frequent
/// than their neighbours.
ZORV_TOOLS_EXPORT double rand_val_gauss(const double& minimum, const double& maximum, double half_range);

}  // namespace zorv
