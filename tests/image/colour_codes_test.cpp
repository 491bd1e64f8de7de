#include "zorv_tools/image/colour_codes.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/report.h"

namespace {

using colour = cv::Scalar_<double>;

TEST(ColourCodes, UnpacksTheLowerThreeBytes) {
    EXPECT_EQ(zorv::UIntToColor(0xFF8000), colour(0, 128, 255, 0));
    EXPECT_EQ(zorv::UIntToColor(0xAB010203), colour(3, 2, 1, 0));
}

TEST(ColourCodes, SetsHaveTheirOrderAndSize) {
    EXPECT_EQ(zorv::colour_set_max_contrast(0), colour(0, 179, 255, 0));
    EXPECT_EQ(zorv::colour_set_max_contrast(10), colour(92, 122, 255, 0));
    EXPECT_EQ(zorv::colour_set(19), colour(22, 44, 35, 0));
    EXPECT_EQ(zorv::colour_set_optimised(0), colour(0, 0, 255, 0));
    EXPECT_EQ(zorv::colour_set_optimised(8), colour(255, 128, 0, 0));
    // The components of each set, added up: a slip in any row shows.
    const auto sum = [](const auto& set, int count) {
        colour total;
        for (int i = 0; i < count; ++i) {
            total += set(i) * (i + 1);
        }
        return total;
    };
    EXPECT_EQ(sum(zorv::colour_set, 20), colour(10627, 19601, 31952, 0));
    EXPECT_EQ(sum(zorv::colour_set_optimised, 9), colour(8550, 4601, 3194, 0));
}

TEST(ColourCodes, IndexOutsideTheSetIsReported) {
    const auto sentence = [](int index, int last) {
        return "Requested colour " + std::to_string(index) + " but this map only holds up to " +
               std::to_string(last) + "\n";
    };
    for (const int index : {-1, 20}) {
        EXPECT_REPORT(zorv::colour_set(index), "colour_codes", "colour_set_max_contrast",
                      sentence(index, 19));
    }
    for (const int index : {-1, 9}) {
        EXPECT_REPORT(zorv::colour_set_optimised(index), "colour_codes", "colour_set_optimised",
                      sentence(index, 8));
    }
}

}  // namespace
