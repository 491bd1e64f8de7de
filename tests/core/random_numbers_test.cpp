#include "zorv_tools/core/random_numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "zorv_tools/core/process.h"

#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

namespace {

/// What comes after a host has set this seed.
std::vector<double> draws(unsigned int seed, double (*draw)(), std::size_t count) {
    std::srand(seed);
    std::vector<double> values(count);
    std::generate(values.begin(), values.end(), draw);
    return values;
}

// Before any test, so that these are the first draws of the process.
const std::time_t load_time = std::time(nullptr);
const std::vector<double> first_draws = draws(1, zorv::rand_frac, 4);

double moment(const std::vector<double>& values, int order) {
    double sum = 0;
    for (const double value : values) {
        sum += std::pow(value, order);
    }
    return sum / static_cast<double>(values.size());
}

}  // namespace

TEST(RandomNumbers, AreSeededOnceByTheFirstDraw) {
    // With the time, in place of the seed that the host had set; one set later counts.
    const auto matches = [](std::time_t seed) {
        return draws(static_cast<unsigned int>(seed), zorv::rand_frac, 4) == first_draws;
    };
    EXPECT_TRUE(matches(load_time) || matches(load_time + 1));
    EXPECT_FALSE(matches(1));
    EXPECT_EQ(draws(1, zorv::rand_frac, 20), draws(1, zorv::rand_frac, 20));
}

TEST(RandomNumbers, AreUniformFifteenBits) {
    const std::vector<double> values = draws(5, zorv::rand_frac, 200000);
    for (const double value : values) {
        ASSERT_NEAR(value * 32769, std::round(value * 32769), 1e-9);
    }
    EXPECT_NEAR(moment(values, 1), 0.5, 0.005);
    const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
    EXPECT_GT(*least, 0.9 / 32769);
    EXPECT_LT(*least, 0.001);
    EXPECT_GT(*greatest, 0.999);
    EXPECT_LT(*greatest, 32768.1 / 32769);
}

TEST(RandomNumbers, GaussianMomentsAndSecondDrawOrder) {
    const std::vector<double> values = draws(7, zorv::rand_frac_gauss, 100000);
    EXPECT_NEAR(moment(values, 1), 0, 0.02);
    EXPECT_NEAR(moment(values, 2), 1, 0.03);
    EXPECT_NEAR(moment(values, 4), 3, 0.2);

    // The value belongs to the first of the two draws.
    std::srand(11);
    double u;
    double v;
    do {
        u = 2 * zorv::rand_frac() - 1;
        v = 2 * zorv::rand_frac() - 1;
    } while (u * u + v * v >= 1);
    EXPECT_GT(draws(11, zorv::rand_frac_gauss, 1)[0] * u, 0);
}

TEST(RandomNumbers, BoundedGaussianIsClippedAndScaled) {
    const std::vector<double> plain = draws(3, zorv::rand_frac_gauss, 1000);
    std::srand(3);
    for (const double g : plain) {
        EXPECT_DOUBLE_EQ(zorv::rand_val_gauss(10, 30, 1.5), std::clamp(20 + g * 10 / 1.5, 10.0, 30.0));
    }
    EXPECT_LT(*std::min_element(plain.begin(), plain.end()), -1.5);
    EXPECT_GT(*std::max_element(plain.begin(), plain.end()), 1.5);
}

TEST(Process, HasTheSystemsNumber) {
    EXPECT_EQ(zorv::pid(), getpid());
}
