#include "zorv_tools/core/rotation.h"

#include <gtest/gtest.h>

#include "tests/support/matchers.h"
#include "tests/support/report.h"
#include "zorv_tools/core/std_vector_overloads.h"

namespace {

using zorv::euler_angles_deg_to_rot_mat;
using zorv::euler_angles_rad_to_rot_mat;
using zorv::quaternion_to_rot_mat;
using zorv::operator+=;
using zorv::operator-=;

const row_list identity{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

}  // namespace

TEST(VectorOverloads, AddAndSubtractInPlace) {
    std::vector<double> v{1, 2, 3};
    v += std::vector<double>{10, 20, 30};
    EXPECT_EQ(v -= std::vector<double>({1, 1, 1}), (std::vector<double>{10, 21, 32}));
    std::vector<short> small{5};
    EXPECT_EQ(small -= std::vector<short>{7}, std::vector<short>{-2});

    const std::vector<double> two{1, 2};
    EXPECT_REPORT(v += two, "std_vector_overloads", "operator+=",
                  "std_vector_overloads::operator+=(std::vector) : vec1 had size 3 but vec2 had size 2");
    EXPECT_REPORT(v -= two, "std_vector_overloads", "operator-=", "vec1 had size 3 but vec2 had size 2");
    std::vector<double> none;
    EXPECT_THROW(none += two, zorv::exception_l);
    EXPECT_THROW(none -= two, zorv::exception_l);
    EXPECT_TRUE((none += none).empty());
    EXPECT_EQ(v, (std::vector<double>{10, 21, 32}));
}

TEST(Rotation, EachAngleTurnsAboutItsAxis) {
    const std::pair<std::vector<double>, row_list> cases[] = {
        {{0, 0, 0}, identity},
        {{90, 0, 0}, {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}},
        {{0, 90, 0}, {{1, 0, 0}, {0, 0, -1}, {0, 1, 0}}},
        {{0, 0, 90}, {{0, 0, 1}, {0, 1, 0}, {-1, 0, 0}}},
        // About z first, then x, then y.
        {{90, 90, 0}, {{0, -1, 0}, {0, 0, -1}, {1, 0, 0}}},
        {{90, 0, 90}, {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}},
        {{0, 90, 90}, {{0, 1, 0}, {0, 0, -1}, {-1, 0, 0}}},
    };
    for (const auto& [degrees, expected] : cases) {
        EXPECT_THAT(euler_angles_deg_to_rot_mat(degrees), matrix_near(expected, 1e-7));
    }
}

TEST(Rotation, DigitsDependOnTheConstantAndTheGrouping) {
    // The nearest double to pi / 180 gives another sine in the ninth digit.
    const double angle = 57.0 * 0.017453293005625408;
    EXPECT_EQ(euler_angles_deg_to_rot_mat({57, 0, 0})[1][0], std::sin(angle));
    EXPECT_NE(std::sin(angle), std::sin(57.0 * 3.14159265358979323846 / 180));
    EXPECT_EQ(euler_angles_deg_to_rot_mat(std::vector<int>{57, 0, 0})[1][0], std::sin(angle));
    // The rotations about y and x are multiplied first, which shows in the last digit here.
    const double s = std::sin(0.79);
    const double half = std::sin(0.395);
    const double first = std::cos(0.395) * std::cos(0.79);
    EXPECT_EQ(euler_angles_rad_to_rot_mat({0.79, 0.79, 0.395})[0][0], first + (half * s) * s);
}

TEST(Rotation, NeedsThreeAngles) {
    const std::string sentence =
        "create_rotation_matrix : Can't create a 3d rotation matrix from a set of angles with size not 3. Size "
        "was: ";
    EXPECT_REPORT(euler_angles_rad_to_rot_mat({1, 2}), "rotation", "euler_angles_rad_to_rot_mat",
                  sentence + "2");
    EXPECT_REPORT(euler_angles_deg_to_rot_mat({1, 2, 3, 4}), "rotation", "euler_angles_rad_to_rot_mat",
                  sentence + "4");
}

TEST(Rotation, QuaternionsOfAnyLength) {
    EXPECT_THAT(quaternion_to_rot_mat({0, 0, 0, 2}), matrix_near(identity, 0));
    // A third of a turn about the diagonal takes x to y, y to z and z to x.
    EXPECT_THAT(quaternion_to_rot_mat({3, 3, 3, 3}),
                matrix_near(row_list{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}, 1e-15));
    const double s = std::sin(0.7);
    const double c = std::cos(0.7);
    EXPECT_THAT(quaternion_to_rot_mat({0, std::sin(0.35), 0, std::cos(0.35)}),
                matrix_near(row_list{{c, 0, s}, {0, 1, 0}, {-s, 0, c}}, 1e-15));
    EXPECT_TRUE(std::isnan(quaternion_to_rot_mat({0, 0, 0, 0})[0][0]));
}
