#include "zorv_tools/core/matrix.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/matchers.h"
#include "tests/support/report.h"

namespace {

using zorv::matrix;
using rows = std::vector<std::vector<double>>;

matrix<double> filled(const rows& values) {
    matrix<double> m(static_cast<int>(values.size()), static_cast<int>(values[0].size()));
    for (unsigned int i = 0; i < values.size(); ++i) {
        m.set_row(i, values[i]);
    }
    return m;
}

}  // namespace

TEST(Matrix, SetSizeZeroesOrEmpties) {
    matrix<double> m = filled({{1, 2}, {3, 4}});
    m.set_size(2, 2);
    EXPECT_THAT(m, matrix_near(rows{{0, 0}, {0, 0}}, 0));
    for (const auto& [r, c] : {std::pair{3, 0}, std::pair{0, 5}, std::pair{0, 0}}) {
        m.set_size(1, 1);
        m.set_size(r, c);
        EXPECT_THAT(m, matrix_near(rows{}, 0));
    }
    m.set_size(4, 1);
    EXPECT_EQ(m.get_dim1(), 4u);
    EXPECT_EQ(m.get_dim2(), 1u);
    m.clear();
    m.clear();
    EXPECT_EQ(m.get_dim1() + m.get_dim2(), 0u);
}

TEST(Matrix, NegativeSizeThrowsAndEmpties) {
    matrix<double> m = filled({{1, 2}});
    EXPECT_REPORT(m.set_size(-1, 2), "matrix", "set_size", "matrix::set_size() : tried to set size to -1,2");
    EXPECT_THAT(m, matrix_near(rows{}, 0));
    EXPECT_REPORT(matrix<double>(0, -3), "matrix", "set_size",
                  "matrix::set_size() : tried to set size to 0,-3");
    matrix<int> whole(2, 3);
    whole[1][2] = 9;
    EXPECT_EQ(whole[1][2] + whole[0][0], 9);
    EXPECT_REPORT(whole.set_size(2, -2), "matrix", "set_size",
                  "matrix::set_size() : tried to set size to 2,-2");
    EXPECT_EQ(whole.get_dim1() + whole.get_dim2(), 0u);
}

TEST(Matrix, CopiesAreDeepAndSelfAssignmentZeroes) {
    matrix<double> m = filled({{1, 2, 3}, {4, 5, 6}});
    const matrix<double> copy(m);
    m = *&m;
    EXPECT_THAT(m, matrix_near(rows{{0, 0, 0}, {0, 0, 0}}, 0));
    EXPECT_THAT(copy, matrix_near(rows{{1, 2, 3}, {4, 5, 6}}, 0));
    m = matrix<double>();
    EXPECT_THAT(m, matrix_near(rows{}, 0));
}

TEST(Matrix, FillTakesWhatTheVectorHas) {
    matrix<double> m(2, 2);
    m = std::vector<double>{1, 2, 3, 4, 99};
    EXPECT_THAT(m, matrix_near(rows{{1, 2}, {3, 4}}, 0));
    EXPECT_THROW((m = std::vector<double>{7, 8, 9}), std::out_of_range);
    EXPECT_THAT(m, matrix_near(rows{{7, 8}, {9, 4}}, 0));
    matrix<double> empty;
    empty = std::vector<double>{1};
    EXPECT_THAT(empty, matrix_near(rows{}, 0));
}

TEST(Matrix, Products) {
    const matrix<double> a = filled({{1, 2, 3}, {4, 5, 6}});
    const matrix<double> b = filled({{7, 8}, {9, 10}, {11, 12}});
    EXPECT_THAT(a * b, matrix_near(rows{{58, 64}, {139, 154}}, 0));
    EXPECT_THAT(b * a, matrix_near(rows{{39, 54, 69}, {49, 68, 87}, {59, 82, 105}}, 0));
    matrix<double> square = filled({{1, 1}, {0, 1}});
    square *= square;
    EXPECT_THAT(square, matrix_near(rows{{1, 2}, {0, 1}}, 0));
    EXPECT_THAT(matrix<double>() * b, matrix_near(rows{}, 0));

    EXPECT_EQ(a * std::vector<double>({1, 0, -1, 50}), (std::vector<double>{-2, -2}));
    EXPECT_THROW(a * std::vector<double>({1, 0}), std::out_of_range);
    EXPECT_TRUE((matrix<double>() * std::vector<double>()).empty());
}

TEST(Matrix, SumsRunUpwardFromZero) {
    // Only this order gives 1: the big terms cancel before the small one comes.
    const matrix<double> row = filled({{1e20, -1e20, 1}});
    const matrix<double> column = filled({{1}, {1}, {1}});
    EXPECT_EQ((row * column)[0][0], 1.0);
    EXPECT_EQ((row * std::vector<double>{1, 1, 1})[0], 1.0);
    // A sum that starts at 0.0 cannot end at minus zero.
    EXPECT_FALSE(std::signbit((filled({{-1}}) * filled({{0}}))[0][0]));
}

TEST(Matrix, Determinants) {
    EXPECT_EQ(matrix<double>().det(), 1.0);
    EXPECT_EQ(filled({{-4}}).det(), -4.0);
    EXPECT_EQ(filled({{1, 2}, {3, 4}}).det(), -2.0);
    EXPECT_EQ(filled({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}).det(), 1.0);
    EXPECT_EQ(filled({{2, 0, 1}, {1, 3, 2}, {1, 1, 4}}).det(), 18.0);
    EXPECT_EQ(filled({{1, 2, 0, 1}, {0, 3, 1, 2}, {2, 0, 1, 1}, {1, 1, 0, 2}}).det(), 10.0);
}

TEST(Matrix, TransposeAndPseudoInverse) {
    const matrix<double> m = filled({{1, 2, 3}, {4, 5, 6}});
    EXPECT_THAT(m.transpose(), matrix_near(rows{{1, 4}, {2, 5}, {3, 6}}, 0));
    const matrix<double> inverse = m.invert();
    EXPECT_EQ(inverse.get_dim1(), 3u);
    EXPECT_THAT(m * inverse, matrix_near(rows{{1, 0}, {0, 1}}, 1e-12));
    EXPECT_THAT(filled({{0, 0}, {0, 0}}).invert(), matrix_near(rows{{0, 0}, {0, 0}}, 0));
    EXPECT_THAT(filled({{2, 0}, {0, 4}}).invert(), matrix_near(rows{{0.5, 0}, {0, 0.25}}, 1e-15));
}

TEST(Matrix, ElementAccess) {
    matrix<double> m(2, 2);
    m.set(0, 1, 5);
    m.get(1, 0) = 6;
    const matrix<double>& view = m;
    EXPECT_EQ(view.get(0, 1) + view[1][0], 11);
}
