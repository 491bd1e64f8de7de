#include "zorv_tools/core/math_utils.h"

#include <gmock/gmock.h>

#include <boost/math/special_functions/bessel.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "tests/support/report.h"
#include "zorv_tools/core/internal/gamma.h"

namespace {

std::string factorial_sentence(int n) {
    return "Cannot calculate factorial of " + std::to_string(n) +
           " either negative or too large for a int to store";
}

}  // namespace

TEST(Gamma, AgreesWithAnIndependentOne) {
    for (double x = 0.001; x < 171.6; x *= 1.013) {
        // Below 1 the last digits of x are lost, far above it those of the exponent.
        const double tolerance = 2e-15 + 3e-16 / x + 2e-15 * x;
        EXPECT_NEAR(zorv::gamma_function(x) / boost::math::tgamma(x), 1, tolerance) << x;
        EXPECT_NEAR(zorv::log_gamma_function(x), boost::math::lgamma(x), tolerance) << x;
    }
    // The shortcut below 0.001 drops the terms behind x; the next one is known.
    for (double x = 0.0005; x < 0.001; x *= 1.013) {
        EXPECT_NEAR(zorv::gamma_function(x) / boost::math::tgamma(x), 1 - 0.655878 * x * x, 1e-9) << x;
        EXPECT_EQ(zorv::log_gamma_function(x), std::log(zorv::gamma_function(x)));
    }
    for (int n = 1; n <= 11; ++n) {
        EXPECT_EQ(zorv::gamma_function(n), zorv::factorial(n - 1));
    }
    EXPECT_TRUE(std::isfinite(zorv::gamma_function(171.624)));
    EXPECT_EQ(zorv::gamma_function(171.625), std::numeric_limits<double>::infinity());
}

TEST(Gamma, RefusesWhatIsNotPositive) {
    for (double (*function)(double) : {zorv::gamma_function, zorv::log_gamma_function}) {
        EXPECT_THAT([&] { function(-2.5); }, testing::ThrowsMessage<std::invalid_argument>(testing::StrEq(
                                                 "Invalid input argument -2.5. Argument must be positive.")));
        EXPECT_THROW(function(0), std::invalid_argument);
    }
}

TEST(Bessel, AgreesWithAnIndependentOne) {
    for (const float order : {0.0f, 0.5f, 1.0f, 2.75f, 7.0f}) {
        for (float x = 0.25f; x < 6; x += 0.25f) {
            EXPECT_NEAR(zorv::bessel(order, x, 13), boost::math::cyl_bessel_j(order, double(x)), 3e-6);
            const double modified = boost::math::cyl_bessel_i(order, double(x));
            EXPECT_NEAR(zorv::modified_bessel(order, x, 13), modified, 2e-6 * (1 + modified));
        }
    }
}

TEST(Bessel, LengthOfTheSeries) {
    EXPECT_EQ(zorv::bessel(0, 1, 0), 0);
    EXPECT_EQ(zorv::bessel(0, 1, -3), 0);
    EXPECT_EQ(zorv::bessel(0, 2, 2), 0) << "1 and -1";
    EXPECT_EQ(zorv::modified_bessel(0, 2, 3), 2.25f) << "1, 1 and a quarter";
    EXPECT_EQ(zorv::modified_bessel(0, 0, 12), 1);
    EXPECT_EQ(zorv::modified_bessel(1, 0, 12), 0);
    EXPECT_NO_THROW(zorv::bessel(0, 1, 13));
    EXPECT_REPORT(zorv::bessel(0, 1, 14), "math_utils", "factorial", factorial_sentence(13));
    EXPECT_THROW(zorv::modified_bessel(-1, 1, 3), std::invalid_argument);
}

TEST(Bessel, StepsHaveTheirPrecision) {
    // 1 + 2^-24 is a tie, which goes down in single precision; in a sum of double, 2^-50 behind it would tip it up.
    EXPECT_EQ(zorv::modified_bessel(0, std::ldexp(1.0f, -11), 12), 1.0f);
    // From the series written out step by step. Each of these changes in its last digits if any one step is taken
    // in the other precision: the argument of gamma, the denominator, the power, its exponent, a term or the sum.
    EXPECT_EQ(zorv::modified_bessel(6.6f, 5.7f, 12), 1.21310794f);
    EXPECT_EQ(zorv::modified_bessel(7.1f, 5.4f, 12), 0.442542464f);
    EXPECT_EQ(zorv::modified_bessel(7.4f, 6.6f, 12), 2.03893185f);
}

TEST(DiscreteGaussian, IsTheKernel) {
    EXPECT_EQ(zorv::discrete_gaussian_sample(0, 0), 1);
    // Wide enough for the series to show where it ends.
    EXPECT_EQ(zorv::discrete_gaussian_sample(-3, 16), zorv::modified_bessel(3, 16, 12) * std::exp(-16.0f));
    float sum = 0;
    for (int n = -12; n <= 12; ++n) {
        const float value = zorv::discrete_gaussian_sample(n, 2);
        EXPECT_EQ(value, zorv::discrete_gaussian_sample(-n, 2));
        EXPECT_NEAR(value, boost::math::cyl_bessel_i(n, 2.0) * std::exp(-2.0), 1e-6);
        sum += value;
    }
    EXPECT_NEAR(sum, 1, 1e-5);
}

TEST(Factorial, FitsAnInt) {
    EXPECT_EQ(zorv::factorial(0), 1);
    for (int n = 1; n <= 12; ++n) {
        EXPECT_EQ(zorv::factorial(n), n * zorv::factorial(n - 1));
    }
    for (const int n : {-1, 13}) {
        EXPECT_REPORT(zorv::factorial(n), "math_utils", "factorial", factorial_sentence(n));
    }
}

TEST(Variance, AboutAGivenMeanOrItsOwn) {
    EXPECT_DOUBLE_EQ(zorv::var({1, 2, 3}, 0.0), 2.0 / 3.0);
    EXPECT_DOUBLE_EQ(zorv::var({1, 2, 3}, 1.0), 5.0 / 3.0);
    EXPECT_TRUE(std::isnan(zorv::var({}, 0.0)));
    EXPECT_TRUE(std::isnan(zorv::var({}, 4.0)));
}

TEST(Sample, PrintsItsFields) {
    const zorv::sample record{"a.avi", -1, 1, 20, 3, 4};
    std::ostringstream out;
    out << std::hex << record;
    EXPECT_EQ(out.str(), "sample=a.avi|-1|1|20|3|4");
}
