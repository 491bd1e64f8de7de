#include "zorv_tools/core/tensor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <stdexcept>

using tensor = zorv::tensor<double>;

TEST(Tensor, ComparesShapeAndElements) {
    const tensor a({2, 2}, {1, 2, 3, 4});
    EXPECT_TRUE(a == tensor(a));
    EXPECT_FALSE(a == tensor({4}, {1, 2, 3, 4}));
    EXPECT_FALSE(a == tensor({1, 4}, {1, 2, 3, 4}));
    EXPECT_TRUE(tensor({1}, {0}) == tensor({1}, {0.0001}));
    EXPECT_FALSE(tensor({2}, {0, 0}) == tensor({2}, {0, 0.00010001}));
    EXPECT_FALSE(tensor({1}, {std::nan("")}) == tensor({1}, {std::nan("")}));
    EXPECT_TRUE(tensor({0, 3}, {}) == tensor({0, 3}, {}));
}

TEST(Tensor, CopiesShareTheValuesAndOutliveEachOther) {
    auto first = std::make_unique<tensor>(std::vector<int>{3}, std::vector<double>{5, 6, 7});
    tensor assigned({2, 1}, {8, 9});
    assigned = *first;
    const tensor copy(*first);
    first.reset();
    for (const tensor& t : {copy, assigned}) {
        EXPECT_EQ(t[2], 7);
        EXPECT_EQ(t.get_sizes(), std::vector<int>{3});
    }
}

TEST(Tensor, RefusesACountUnlikeTheSizes) {
    const std::vector<double> two{1, 2};
    for (const auto& sizes : {std::vector<int>{3}, {}, {2, 0}, {-1, -2}, {65536, 65536, 65536, 65536}}) {
        EXPECT_THROW(tensor(sizes, two), std::invalid_argument);
    }
    EXPECT_EQ(tensor({}, {4})[0], 4);
}
