#include "zorv_tools/core/IO_helpers.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include "tests/support/report.h"
#include "zorv_tools/core/ipow.h"
#include "zorv_tools/core/truncate.h"

using zorv::i_helper;
using zorv::int_to_str;
using zorv::truncate_to;

TEST(IHelper, ReadsTheValueAtTheStart) {
    int i = 0;
    i_helper("3.5", i);
    EXPECT_EQ(i, 3);
    i_helper(std::string(" 12abc"), i);
    EXPECT_EQ(i, 12);
    double d = 0;
    i_helper("-2.5e1x", d);
    EXPECT_EQ(d, -25.0);
    std::string text;
    i_helper(-17, text);
    EXPECT_EQ(text, "-17");
}

TEST(IHelper, FailuresCarryTheTextAndTheForm) {
    int i = 5;
    double d = 5;
    const std::string end = " : reading in failed, when reading value of \"";
    EXPECT_REPORT(i_helper("", d), "IO_helpers", "i_helper", "i_helper(string)" + end + "\"");
    EXPECT_REPORT(i_helper("abc", i), "IO_helpers", "= int", "i_helper(string)" + end + "abc\"");
    EXPECT_EQ(i, 0);
    EXPECT_REPORT(i_helper('x', i), "IO_helpers", "i_helper", "i_helper(general)" + end + "x\"");
    std::istringstream in("word 4");
    EXPECT_REPORT(i_helper(in, i), "IO_helpers", "i_helper", "i_helper(stream)" + end + "word\"");
    i_helper(in, i);
    EXPECT_EQ(i, 4);
    EXPECT_REPORT(i_helper(in, i), "IO_helpers", "i_helper", "i_helper(stream)" + end + "\"");
}

TEST(DefaultVal, IsZero) {
    int i = 1;
    float f = 1;
    double d = std::nan("");
    zorv::default_val(i);
    zorv::default_val(f);
    zorv::default_val(d);
    EXPECT_EQ(i, 0);
    EXPECT_EQ(f, 0);
    EXPECT_EQ(1 / d, std::numeric_limits<double>::infinity()) << "all bits are zero";
}

TEST(Ipow, WrapsAndTruncates) {
    const struct {
        int base, exponent, result;
    } cases[] = {{2, 10, 1024},        {-3, 3, -27},    {0, 0, 1},    {0, 5, 0},
                 {2, -1, 0},           {1, -5, 1},      {-1, -3, -1}, {-1, -2, 1},
                 {10, 10, 1410065408}, {2, 31, INT_MIN}};
    for (const auto& c : cases) {
        EXPECT_EQ(zorv::ipow(c.base, c.exponent), c.result) << c.base << " to the " << c.exponent;
    }
}

TEST(IntToStr, PadsWithZerosAndRefusesWhatIsTooLong) {
    EXPECT_EQ(int_to_str(-45), "-45");
    const struct {
        int value, digits;
        const char* text;
    } cases[] = {{7, 3, "007"},   {999, 3, "999"},     {0, 1, "0"},
                 {-7, 3, "00-7"}, {-123, 3, "-1-2-3"}, {-4, 0, ""}};
    for (const auto& c : cases) {
        EXPECT_EQ(int_to_str(c.value, c.digits), c.text);
    }
    // Powers of ten from the 32nd on wrap to 0 and must not divide anything.
    EXPECT_EQ(int_to_str(-5, 40), std::string(39, '0') + "-5");
    for (const auto& [value, digits] : {std::pair{1000, 3}, {1, 0}, {2000000000, 10}}) {
        EXPECT_REPORT(int_to_str(value, digits), "IO_helpers", "int_to_str(int, int)",
                      "zorv_utils::int_to_str() : input number " + std::to_string(value) +
                          " is too large to be represented by " + std::to_string(digits) + " as requested.");
    }
}

TEST(TruncateTo, CutsTowardZeroAndMarksWhatDoesNotFit) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double bad : {2147483648.0, -2147483649.0, infinity, -infinity, std::nan("")}) {
        EXPECT_EQ(truncate_to<int>(bad), INT_MIN) << bad;
    }
    EXPECT_EQ(truncate_to<int>(2.9), 2);
    EXPECT_EQ(truncate_to<int>(-2.9), -2);
    EXPECT_EQ(truncate_to<int>(2147483647.9), INT_MAX);
    EXPECT_EQ(truncate_to<int>(-2147483648.9), INT_MIN);
    EXPECT_EQ(truncate_to<unsigned char>(255.5), 255);
    EXPECT_EQ(truncate_to<unsigned char>(-0.5), 0);
    EXPECT_EQ(truncate_to<long long>(-9223372036854775808.0), LLONG_MIN);
    EXPECT_EQ(truncate_to<long long>(9223372036854775808.0), LLONG_MIN);
    EXPECT_EQ(truncate_to<long long>(9007199254740993.0), 9007199254740992LL);
}
