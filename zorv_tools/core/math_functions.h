#pragma once

/// @file
/// Bessel series, the discrete Gaussian kernel made of them, factorial and variance.

#include <vector>

#include "zorv_tools/core/export.h"

namespace zorv {

/// The first `terms` terms of the power series of the Bessel function of the first kind, of any order that is not
/// a negative number too large for its terms: `std::invalid_argument` is thrown where `order` + 1 and what follows
/// is not positive. Thirteen terms are the most there can be; a fourteenth throws the `exception_l` of
/// `factorial`. No terms give 0. Sums and powers are of single precision, the terms of double.
/// (Abramowitz and Stegun, 9.1.10.)
ZORV_TOOLS_EXPORT float bessel(float order, float x, int terms);

/// The same for the modified Bessel function of the first kind (Abramowitz and Stegun, 9.6.10).
ZORV_TOOLS_EXPORT float modified_bessel(float order, float x, int terms);

/// The discrete Gaussian kernel at `n` for the scale `t`, exp(-t) I_n(t), with a series of 12 terms (T. Lindeberg,
/// Scale-space for discrete signals, 1990). For building kernels, not for inner loops.
ZORV_TOOLS_EXPORT float discrete_gaussian_sample(int n, float t);

/// n! for n from 0 to 12; any other n throws `exception_l`.
ZORV_TOOLS_EXPORT int factorial(int n);

/// The population variance about `mean`. A mean of exactly 0.0 asks for the mean of the values instead. NaN where
/// there are none.
ZORV_TOOLS_EXPORT double var(const std::vector<double>& values, double mean);

}  // namespace zorv
