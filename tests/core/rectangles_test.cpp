#include "zorv_tools/core/rectangles.h"

#include <gtest/gtest.h>

#include <climits>

TEST(CentredRect, TruncatesTowardZero) {
    EXPECT_EQ(zorv::centred_rect(10, 10, 5, 5), cv::Rect(8, 8, 5, 5));
    EXPECT_EQ(zorv::centred_rect(cv::Point(10, -3), cv::Size(4, 1)), cv::Rect(8, -3, 4, 1));
    EXPECT_EQ(zorv::centred_rect(0, 0, -5, -7), cv::Rect(2, 3, -5, -7));
}

TEST(CheckRectOverlap, IsTheCoveredFractionOfTheFirst) {
    CvRect small = cvRect(10, 10, 10, 10);
    CvRect large = cvRect(0, 0, 100, 100);
    CvRect beside = cvRect(20, 10, 10, 10);
    CvRect half = cvRect(15, 5, 10, 30);
    CvRect diagonal = cvRect(30, 30, 5, 5);
    CvRect none = cvRect(12, 12, 0, 5);
    const struct {
        CvRect *first, *second;
        double fraction;
        bool result;
    } cases[] = {
        {&small, &large, 0.999, true}, {&small, &large, 1, false},  {&large, &small, 0.009, true},
        {&large, &small, 0.01, false}, {&small, &beside, 0, false}, {&small, &beside, -0.1, true},
        {&small, &half, 0.499, true},  {&small, &half, 0.5, false}, {&none, &large, -1, false},
        {&small, &diagonal, 0, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(zorv::check_rect_overlap(c.first, c.second, c.fraction), c.result) << c.fraction;
    }
}

TEST(CheckRectOverlap, LargeNumbers) {
    // The edges lie beyond 32 bits.
    CvRect far = cvRect(INT_MAX - 5, 0, 10, 10);
    EXPECT_TRUE(zorv::check_rect_overlap(&far, &far, 0.99));
    // An area of 2^32 wraps to 0, and the quotient is infinite.
    CvRect wrapped = cvRect(0, 0, 65536, 65536);
    EXPECT_TRUE(zorv::check_rect_overlap(&wrapped, &wrapped, 1e300));
}
