#include "zorv_tools/image/colour_codes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/report.h"

namespace zorv {
namespace {

TEST(ColourCodes, UnpacksTheLowerThreeBytes) {
    EXPECT_EQ(UIntToColor(0xAB010203), cv::Scalar_<double>(3, 2, 1, 0));
    EXPECT_EQ(UIntToColor(0xFF8000), cv::Scalar_<double>(0, 128, 255, 0));
}

/// `colours` as 0xRRGGBB. `function` is the one that reports an index outside the set.
void expect_set(cv::Scalar_<double> (*set)(int), const std::string& function,
                const std::vector<unsigned int>& colours) {
    const int size = static_cast<int>(colours.size());
    for (int i = 0; i < size; ++i) {
        EXPECT_EQ(set(i), UIntToColor(colours[static_cast<std::size_t>(i)])) << i;
    }
    for (const int index : {-1, size}) {
        EXPECT_REPORT(set(index), "colour_codes", function,
                      "Requested colour " + std::to_string(index) + " but this map only holds up to " +
                          std::to_string(size - 1) + "\n");
    }
}

TEST(ColourCodes, SetsHoldTheirColoursAndReportOtherIndices) {
    for (const auto set : {colour_set, colour_set_max_contrast}) {
        expect_set(set, "colour_set_max_contrast",
                   {0xFFB300, 0x803E75, 0xFF6800, 0xA6BDD7, 0xC10020, 0xCEA262, 0x817066,
                    0x007D34, 0xF6768E, 0x00538A, 0xFF7A5C, 0x53377A, 0xFF8E00, 0xB32851,
                    0xF4C800, 0x7F180D, 0x93AA00, 0x593315, 0xF13A13, 0x232C16});
    }
    expect_set(colour_set_optimised, "colour_set_optimised",
               {0xFF0000, 0x0000FF, 0x00FF00, 0x00FFFF, 0xFF00FF, 0x8080FF, 0x808080, 0x000080, 0x0080FF});
}

}  // namespace
}  // namespace zorv
