#include "zorv_tools/core/index_vectors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <stdexcept>

#include "tests/support/stream_capture.h"
#include "zorv_tools/core/pair_comparison.h"

TEST(ExtractValue, LastIndexIsTheOutermost) {
    std::vector<double> leaves[4] = {{1, 2}, {3, 4}, {5, 6}, {7, 8}};
    std::vector<void*> inner[2] = {{&leaves[0], &leaves[1]}, {&leaves[2], &leaves[3]}};
    std::vector<void*> outer{&inner[0], &inner[1]};
    std::vector<int> indices{1, 0, 1};
    EXPECT_EQ(zorv::extract_value(&outer, &indices, -1), 6);
    EXPECT_EQ(zorv::extract_value(&outer, &indices, 2), 6);
    EXPECT_EQ(zorv::extract_value(&inner[0], &indices, 1), 2);
    EXPECT_EQ(zorv::extract_value(&leaves[3], &indices, 0), 8);

    EXPECT_THROW(zorv::extract_value(&outer, &indices, 3), std::out_of_range);
    EXPECT_THROW(zorv::extract_value(&outer, &indices, -2), std::out_of_range);
    std::vector<int> none;
    EXPECT_THROW(zorv::extract_value(&outer, &none, -1), std::out_of_range);
    for (std::vector<int> bad : {std::vector<int>{2, 0, 1}, {1, 2, 1}, {1, 0, 2}, {-1, 0, 1}, {1, 0, -1}}) {
        EXPECT_THROW(zorv::extract_value(&outer, &bad, -1), std::out_of_range);
    }
}

TEST(IncrementIndexVector, CountsFromTheStart) {
    std::vector<int> limits{1, 2, 1};
    std::vector<int> index{1, 0, 0};
    std::vector<std::vector<int>> seen;
    while (zorv::increment_index_vector(index, limits, 1)) {
        seen.push_back(index);
    }
    EXPECT_EQ(seen, (std::vector<std::vector<int>>{{1, 1, 0}, {1, 2, 0}, {1, 0, 1}, {1, 1, 1}, {1, 2, 1}}));
    EXPECT_EQ(index, (std::vector<int>{1, 0, 0}));
    EXPECT_FALSE(zorv::increment_index_vector(index, limits, 3));
    EXPECT_THROW(zorv::increment_index_vector(index, limits, 4), std::out_of_range);
}

TEST(IncrementIndexVector, ReportsSizesAtEachDigit) {
    const auto line = [](int limits) {
        return "Error: size of index vector=2 and size of limit vectors=" + std::to_string(limits) +
               " in incremenet index vector.\n";
    };
    std::vector<int> index{1, 1};
    std::vector<int> longer{1, 1, 1};
    std::vector<int> shorter{1};
    const stream_capture errors(std::cerr);
    EXPECT_FALSE(zorv::increment_index_vector(index, longer, 0));
    EXPECT_THROW(zorv::increment_index_vector(index = {1, 1}, shorter, 0), std::out_of_range);
    EXPECT_EQ(index, (std::vector<int>{0, 1}));
    EXPECT_EQ(errors.text(), line(3) + line(3) + line(3) + line(1) + line(1));
}

TEST(LinearInterpolate, GoesPairByPair) {
    std::vector<double> values{0, 10, 20, 40};
    const std::unique_ptr<std::vector<double>> result(zorv::linear_interpolate(&values, 0.25));
    EXPECT_EQ(*result, (std::vector<double>{2.5, 25}));
    std::vector<double> none;
    EXPECT_TRUE(std::unique_ptr<std::vector<double>>(zorv::linear_interpolate(&none, 0.25))->empty());
    std::vector<double> odd{1, 2, 3};
    const stream_capture errors(std::cerr);
    EXPECT_THROW(zorv::linear_interpolate(&odd, 0.5), std::out_of_range);
    EXPECT_EQ(errors.text(), "vector passed for interpolation had a size of 3, it must be even.\n");
}

TEST(PairComparison, OrdersByScore) {
    std::pair<int, double> low(9, 1.0);
    std::pair<int, double> high(1, 2.0);
    EXPECT_TRUE(zorv::pair_comparison(&low, &high));
    EXPECT_FALSE(zorv::pair_comparison(&high, &low));
    EXPECT_FALSE(zorv::pair_comparison(&low, &low));
}
