#pragma once

/// @file
/// Random numbers from the standard runtime's generator, reduced to 15 bits. It is seeded with the time at the
/// first draw, and never again: a host's own `srand` counts when it comes after that. The generator and the flag
/// are the process's, so calls need to be serialised.

#include "zorv_tools/core/export.h"

namespace zorv {

/// Uniform, strictly between 0 and 1: a whole number of 32769ths, and never 0.5.
ZORV_TOOLS_EXPORT double rand_frac();

/// Standard normal, by the polar method (Marsaglia and Bray, 1964).
ZORV_TOOLS_EXPORT double rand_frac_gauss();

/// Normal in the interval from `minimum` to `maximum`, half of which is `half_range` standard deviations. Values
/// beyond a bound become the bound.
ZORV_TOOLS_EXPORT double rand_val_gauss(const double& minimum, const double& maximum, double half_range);

}  // namespace zorv
