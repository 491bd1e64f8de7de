#pragma once

/// @file
/// Bessel series, the discrete Gaussian kernel made of them, factorial and variance.

#include <vector>

#include "zorv_tools/core/export.h"

namespace zorv {

/// The first `terms` terms of the power series of the Bessel function of the first kind (M. Abramowitz, I. Stegun,
/// Handbook of Mathematical Functions, 9.1.10). So few terms are good for a small `x` only: there must be enough for
/// the last ones to be small.
///
/// The order must be above -1, else `std::invalid_argument` is thrown. A negative `x` needs a whole order, else the
/// sum is not a number. Thirteen terms are the most there can be: a fourteenth throws the `exception_l` of
/// `factorial`. No terms give 0, whatever the order. Powers and the sum are of single precision, each term of double.
ZORV_TOOLS_EXPORT float bessel(float order, float x, int terms);

/// The same for the modified Bessel function of the first kind, whose terms do not alternate (Abramowitz and Stegun,
/// 9.6.10).
ZORV_TOOLS_EXPORT float modified_bessel(float order, float x, int terms);

/// The discrete Gaussian kernel for the scale `t`, the variance, at `n` samples from its middle, on either side:
/// exp(-t) I_n(t), with a series of 12 terms (T. Lindeberg, Scale-space for discrete signals, 1990). The short series
/// loses weight for a large `t`. For building kernels, not for inner loops.
ZORV_TOOLS_EXPORT float discrete_gaussian_sample(int n, float t);

/// n! for n from 0 to 12, the largest that an `int` holds; any other n throws `exception_l`.
ZORV_TOOLS_EXPORT int factorial(int n);

/// The population variance about `mean`: the sum of squares is divided by the number of values, not by one less. A
/// mean of exactly 0.0 asks for the mean of the values instead. Not a number where there are no values.
ZORV_TOOLS_EXPORT double var(const std::vector<double>& values, double mean);

}  // namespace zorv
