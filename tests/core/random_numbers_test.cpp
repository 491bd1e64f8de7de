#include "zorv_tools/core/random_numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "zorv_tools/core/process.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace {

std::vector<double> draws(double (*draw)(), int count) {
    std::vector<double> values(static_cast<std::size_t>(count));
    std::generate(values.begin(), values.end(), draw);
    return values;
}

}  // namespace

TEST(RandomNumbers, AreSeededOnceByTheFirstDraw) {
    // A seed of the host's counts once the first draw is behind, and none before.
    std::srand(1);
    zorv::rand_frac();
    std::srand(1);
    const std::vector<double> first = draws(zorv::rand_frac, 20);
    std::srand(1);
    EXPECT_EQ(draws(zorv::rand_frac, 20), first);
}

TEST(RandomNumbers, AreUniformFifteenBits) {
    zorv::rand_frac();
    std::srand(5);
    const std::vector<double> values = draws(zorv::rand_frac, 200000);
    double sum = 0;
    for (const double value : values) {
        const double number = value * 32769.0;
        ASSERT_NEAR(number, std::round(number), 1e-9);
        ASSERT_GE(std::round(number), 1);
        ASSERT_LE(std::round(number), 32768);
        sum += value;
    }
    EXPECT_NEAR(sum / 200000, 0.5, 0.005);
    EXPECT_LT(*std::min_element(values.begin(), values.end()), 0.001);
    EXPECT_GT(*std::max_element(values.begin(), values.end()), 0.999);
}

TEST(RandomNumbers, GaussianMomentsAndSecondDrawOrder) {
    zorv::rand_frac();
    std::srand(7);
    const std::vector<double> values = draws(zorv::rand_frac_gauss, 100000);
    double sum = 0;
    double squares = 0;
    double fourths = 0;
    for (const double value : values) {
        sum += value;
        squares += value * value;
        fourths += value * value * value * value;
    }
    EXPECT_NEAR(sum / 100000, 0, 0.02);
    EXPECT_NEAR(squares / 100000, 1, 0.03);
    EXPECT_NEAR(fourths / 100000, 3, 0.2);

    // The value belongs to the first of the two draws.
    std::srand(11);
    double u;
    double v;
    do {
        u = 2 * zorv::rand_frac() - 1;
        v = 2 * zorv::rand_frac() - 1;
    } while (u * u + v * v >= 1);
    std::srand(11);
    EXPECT_GT(zorv::rand_frac_gauss() * u, 0);
}

TEST(RandomNumbers, BoundedGaussianIsClippedAndScaled) {
    zorv::rand_frac();
    std::srand(3);
    const std::vector<double> plain = draws(zorv::rand_frac_gauss, 1000);
    std::srand(3);
    int clipped = 0;
    for (const double g : plain) {
        const double value = zorv::rand_val_gauss(10, 30, 1.5);
        EXPECT_DOUBLE_EQ(value, std::min(std::max(20 + g * 10 / 1.5, 10.0), 30.0));
        clipped += value == 10 || value == 30;
    }
    EXPECT_GT(clipped, 50);
}

TEST(Process, HasTheSystemsNumber) {
#ifdef _WIN32
    EXPECT_EQ(zorv::pid(), static_cast<int>(GetCurrentProcessId()));
#else
    EXPECT_EQ(zorv::pid(), static_cast<int>(getpid()));
#endif
}
