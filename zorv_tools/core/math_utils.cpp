#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/internal/gamma.h"
#include "zorv_tools/core/math_functions.h"

namespace zorv {

namespace {

void require_positive(double x) {
    if (x <= 0) {
        std::ostringstream message;
        message << "Invalid input argument " << x << ". Argument must be positive.";
        throw std::invalid_argument(message.str());
    }
}

/// The gamma function from 1 to 2, a minimax approximation.
double gamma_from_1_to_2(double y) {
    constexpr double p[] = {-1.716185138865495, 24.76565080557592,   -379.80425647094563, 629.3311553128184,
                            866.9662027904133,  -31451.272968848367, -36144.413418691176, 66456.14382024054};
    constexpr double q[] = {-30.840230011973897, 315.35062697960416, -1015.1563674902192,
                            -3107.771671572311,  22538.11842098015,  4755.846277527881,
                            -134659.9598649693,  -115132.25967555349};
    const double z = y - 1.0;
    if (z == 0) {
        // What the sums below come to, and the case of every whole number.
        return 1.0;
    }
    double num = 0;
    double den = 1;
    for (int i = 0; i < 8; ++i) {
        num = (num + p[i]) * z;
        den = den * z + q[i];
    }
    return num / den + 1.0;
}

/// The gamma function at the whole numbers of its range, where a kernel needs it again and again.
class gamma_of_whole_numbers {
public:
    gamma_of_whole_numbers() {
        for (int n = 1; n < count; ++n) {
            values_[n] = gamma_function(n);
        }
    }

    static double look_up(float x) {
        static const gamma_of_whole_numbers table;
        // Written so that what is not a number is not looked up.
        const int n = x >= 1 && x < count ? static_cast<int>(x) : 0;
        return n != 0 && static_cast<float>(n) == x ? table.values_[n]
                                                    : gamma_function(static_cast<double>(x));
    }

private:
    static constexpr int count = 172;
    double values_[count] = {};
};

/// The precision of each step is part of the result: whole and half orders enter in single precision, a term is
/// computed in double, rounded to single and added to a single-precision sum.
float power_series(float order, float x, int terms, bool alternating) {
    const float half = x * 0.5f;
    float sum = 0;
    for (int m = 0; m < terms; ++m) {
        const double gamma = gamma_of_whole_numbers::look_up(static_cast<float>(m) + order + 1.0f);
        const double denominator = gamma * static_cast<double>(factorial(m));
        const float power = std::pow(half, static_cast<float>(m * 2) + order);
        const double sign = alternating && m % 2 != 0 ? -1.0 : 1.0;
        sum += static_cast<float>(sign / denominator * static_cast<double>(power));
    }
    return sum;
}

}  // namespace

double gamma_function(double x) {
    require_positive(x);
    if (x < 0.001) {
        constexpr double euler_constant = 0.5772156649015329;
        return 1.0 / (x * (1.0 + euler_constant * x));
    }
    if (x < 1.0) {
        const double y = x + 1.0;
        return gamma_from_1_to_2(y) / (y - 1.0);
    }
    if (x < 12.0) {
        const int n = static_cast<int>(std::floor(x)) - 1;
        double y = x - n;
        double result = gamma_from_1_to_2(y);
        for (int i = 0; i < n; ++i) {
            result *= y;
            y += 1.0;
        }
        return result;
    }
    if (x > 171.624) {
        return std::numeric_limits<double>::infinity();
    }
    return std::exp(log_gamma_function(x));
}

double log_gamma_function(double x) {
    require_positive(x);
    if (x < 12.0) {
        return std::log(std::abs(gamma_function(x)));
    }
    constexpr double coefficients[] = {0.00641025641025641,    -0.0019175269175269176, 0.0008417508417508417,
                                       -0.0005952380952380953, 0.0007936507936507937,  -0.002777777777777778,
                                       0.08333333333333333};
    constexpr double half_log_two_pi = 0.9189385332046728;
    const double z = 1 / (x * x);
    double s = -0.029550653594771242;
    for (const double c : coefficients) {
        s = s * z + c;
    }
    return (x - 0.5) * std::log(x) - x + half_log_two_pi + s / x;
}

float bessel(float order, float x, int terms) {
    return power_series(order, x, terms, true);
}

float modified_bessel(float order, float x, int terms) {
    return power_series(order, x, terms, false);
}

float discrete_gaussian_sample(int n, float t) {
    constexpr int terms = 12;
    return modified_bessel(std::abs(static_cast<float>(n)), t, terms) * std::exp(-t);
}

int factorial(int n) {
    constexpr int factorials[] = {1,    1,     2,      6,       24,       120,      720,
                                  5040, 40320, 362880, 3628800, 39916800, 479001600};
    if (n < 0 || n > 12) {
        ZORV_THROW("Cannot calculate factorial of " << n
                                                    << " either negative or too large for a int to store");
    }
    return factorials[n];
}

double var(const std::vector<double>& values, double mean) {
    const auto count = static_cast<double>(values.size());
    if (mean == 0.0) {
        double sum = 0;
        for (const double value : values) {
            sum += value;
        }
        mean = sum / count;
    }
    double squares = 0;
    for (const double value : values) {
        squares += (value - mean) * (value - mean);
    }
    return squares / count;
}

}  // namespace zorv
