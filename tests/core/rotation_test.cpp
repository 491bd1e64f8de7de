#include "zorv_tools/core/rotation.h"

#include <gtest/gtest.h>

#include "tests/support/matchers.h"
#include "tests/support/report.h"
#include "zorv_tools/core/std_vector_overloads.h"

namespace {

using rows = std::vector<std::vector<double>>;
using zorv::operator+=;
using zorv::operator-=;

const rows identity{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

}  // namespace

TEST(VectorOverloads, AddAndSubtractInPlace) {
    std::vector<double> v{1, 2, 3};
    v += std::vector<double>{10, 20, 30};
    EXPECT_EQ(v -= std::vector<double>({1, 1, 1}), (std::vector<double>{10, 21, 32}));
    std::vector<short> none;
    none += none;
    EXPECT_TRUE(none.empty());
    std::vector<short> small{5};
    EXPECT_EQ(small -= std::vector<short>{7}, std::vector<short>{-2});
}

TEST(VectorOverloads, SizesMustAgree) {
    std::vector<double> v{1, 2};
    const std::vector<double> three(3, 1.0);
    EXPECT_REPORT(v += three, "std_vector_overloads", "operator+=",
                  "std_vector_overloads::operator+=(std::vector) : vec1 had size 2 but vec2 had size 3");
    EXPECT_REPORT(v -= three, "std_vector_overloads", "operator-=", "vec1 had size 2 but vec2 had size 3");
    EXPECT_EQ(v, (std::vector<double>{1, 2}));
}

TEST(Rotation, EachAngleTurnsAboutItsAxis) {
    struct {
        std::vector<double> degrees;
        rows expected;
    } const cases[] = {{{0, 0, 0}, identity},
                       {{90, 0, 0}, {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}},
                       {{0, 90, 0}, {{1, 0, 0}, {0, 0, -1}, {0, 1, 0}}},
                       {{0, 0, 90}, {{0, 0, 1}, {0, 1, 0}, {-1, 0, 0}}},
                       // About z first, then x, then y.
                       {{90, 90, 0}, {{0, -1, 0}, {0, 0, -1}, {1, 0, 0}}},
                       {{90, 0, 90}, {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}},
                       {{0, 90, 90}, {{0, 1, 0}, {0, 0, -1}, {-1, 0, 0}}}};
    for (const auto& c : cases) {
        EXPECT_THAT(zorv::euler_angles_deg_to_rot_mat(c.degrees), matrix_near(c.expected, 1e-7));
    }
}

TEST(Rotation, DegreesUseThisVeryConstant) {
    // The nearest double to pi / 180 gives another sine in the ninth digit.
    const double angle = 57.0 * 0.017453293005625408;
    EXPECT_EQ(zorv::euler_angles_deg_to_rot_mat({57, 0, 0})[1][0], std::sin(angle));
    EXPECT_NE(std::sin(angle), std::sin(57.0 * 3.14159265358979323846 / 180));
    EXPECT_EQ(zorv::euler_angles_deg_to_rot_mat(std::vector<int>{57, 0, 0})[1][0], std::sin(angle));
}

TEST(Rotation, NeedsThreeAngles) {
    const std::string sentence =
        "create_rotation_matrix : Can't create a 3d rotation matrix from a set of angles with size not 3. Size "
        "was: ";
    EXPECT_REPORT(zorv::euler_angles_rad_to_rot_mat({1, 2}), "rotation", "euler_angles_rad_to_rot_mat",
                  sentence + "2");
    EXPECT_REPORT(zorv::euler_angles_deg_to_rot_mat({1, 2, 3, 4}), "rotation", "euler_angles_rad_to_rot_mat",
                  sentence + "4");
}

TEST(Rotation, QuaternionsOfAnyLength) {
    EXPECT_THAT(zorv::quaternion_to_rot_mat({0, 0, 0, 2}), matrix_near(identity, 0));
    // A third of a turn about the diagonal takes x to y, y to z and z to x.
    EXPECT_THAT(zorv::quaternion_to_rot_mat({3, 3, 3, 3}),
                matrix_near(rows{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}, 1e-15));
    const double half = 0.35;
    EXPECT_THAT(
        zorv::quaternion_to_rot_mat({0, std::sin(half), 0, std::cos(half)}),
        matrix_near(rows{{std::cos(0.7), 0, std::sin(0.7)}, {0, 1, 0}, {-std::sin(0.7), 0, std::cos(0.7)}},
                    1e-15));
    EXPECT_TRUE(std::isnan(zorv::quaternion_to_rot_mat({0, 0, 0, 0})[0][0]));
}
