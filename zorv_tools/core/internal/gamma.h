#pragma once

namespace zorv {

/// The gamma function of a positive number; infinite above 171.624. Anything else throws `std::invalid_argument`.
/// (W. J. Cody, An overview of software development for special functions, 1976.)
double gamma_function(double x);

/// Its natural logarithm, by Stirling's series from 12 on.
double log_gamma_function(double x);

}  // namespace zorv
