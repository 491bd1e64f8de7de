#include "zorv_tools/geometry/Three_d_point.h"

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <sstream>

#include "tests/support/report.h"
#include "tests/support/stream_capture.h"

using zorv::Three_d_point;

namespace {

std::string text_of(const Three_d_point& point) {
    std::ostringstream out;
    out << point;
    return out.str();
}

testing::AssertionResult throws_index_error(int index, const std::function<void()>& action) {
    return throws_report(action, "Three_d_point", "operator[]",
                         "Three_d_point::operator[] : passed index of " + std::to_string(index) +
                             " but only values 0-5 are valid.");
}

}  // namespace

TEST(ThreeDPoint, FieldsByIndex) {
    Three_d_point p(1.5, 2.5, 3.5, 4, 5, 6);
    const Three_d_point& view = p;
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(view[i], i < 3 ? i + 1.5 : i + 1);
        p[i] = -i;
    }
    EXPECT_EQ(text_of(p), "0,-1,-2,-5,-4,-3");
    for (const int index : {-1, 6}) {
        EXPECT_TRUE(throws_index_error(index, [&] { p[index] = 0; }));
        EXPECT_TRUE(throws_index_error(index, [&] { static_cast<void>(view[index]); }));
    }
}

TEST(ThreeDPoint, AssignmentAndCopies) {
    Three_d_point p(1, 2, 3, 4, 5, 6);
    p = std::vector<double>{};
    p = std::vector<double>{9, 8};
    EXPECT_EQ(text_of(p), "9,8,3,6,5,4");
    EXPECT_TRUE(throws_index_error(6, [&] { p = std::vector<double>{1, 1, 1, 2, 3, 4, 5}; }));
    EXPECT_EQ(text_of(p), "1,1,1,4,3,2");

    EXPECT_EQ(p.reserved0 + p.reserved1 + p.reserved2, 0);
    p.reserved1 = 7;
    Three_d_point assigned;
    assigned = p;
    EXPECT_EQ(Three_d_point(p).reserved1 + assigned.reserved1, 14);
    EXPECT_EQ(text_of(assigned), text_of(p));
}

TEST(ThreeDPoint, SumAndDotProductNeedThreeEntries) {
    Three_d_point p(1, 2, 3, 0, 0, 0);
    p += std::vector<double>{10, 20, 30};
    EXPECT_EQ(p.dot_product({1, 10, 100}), 11 + 220 + 3300);
    EXPECT_EQ(Three_d_point(1e20, -1e20, 1, 0, 0, 0).dot_product({1, 1, 1}), 1) << "z comes last";

    const stream_capture errors(std::cerr);
    p += std::vector<double>{1, 2};
    EXPECT_EQ(text_of(p), "11,22,33");
    EXPECT_EQ(p.dot_product({}), -1.0);
    EXPECT_EQ(errors.text(),
              "Can't call += on a 3d point a Vector not of 3 dimensions, attempted Vector had size 2\n"
              "Can't do a dot product of a 3d point with a vector of size :0\n");
}

TEST(ThreeDPoint, PrintsTheExtrasUnlessAllAreZero) {
    EXPECT_EQ(text_of(Three_d_point(1, 2, 3, 0, 0, 0)), "1,2,3");
    EXPECT_EQ(text_of(Three_d_point(1, 2, 3, 4, 0, 0)), "1,2,3,0,0,4");
    EXPECT_EQ(text_of(Three_d_point(1, 2, 3, 0, 5, 0)), "1,2,3,0,5,0");
    EXPECT_EQ(text_of(Three_d_point(1, 2, 3, 0, 0, 6)), "1,2,3,6,0,0");
}
