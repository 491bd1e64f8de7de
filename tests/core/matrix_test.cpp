#include "zorv_tools/core/matrix.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/matchers.h"
#include "tests/support/report.h"

using zorv::matrix;

TEST(Matrix, SetSizeZeroesOrEmpties) {
    matrix<double> m = to_matrix({{1, 2}, {3, 4}});
    m.set_size(2, 2);
    EXPECT_THAT(m, matrix_near(row_list{{0, 0}, {0, 0}}, 0));
    for (const auto& [rows, cols] : {std::pair{3, 0}, {0, 5}, {0, 0}}) {
        m.set_size(1, 1);
        m.set_size(rows, cols);
        EXPECT_THAT(m, matrix_near(row_list{}, 0));
    }
    m.set_size(4, 1);
    EXPECT_THAT(m, matrix_near(row_list(4, {0}), 0));
    m.clear();
    m.clear();
    EXPECT_THAT(m, matrix_near(row_list{}, 0));
}

TEST(Matrix, NegativeSizeThrowsAndEmpties) {
    const std::string sentence = "matrix::set_size() : tried to set size to ";
    matrix<double> m = to_matrix({{1, 2}});
    EXPECT_REPORT(m.set_size(-1, 2), "matrix", "set_size", sentence + "-1,2");
    EXPECT_THAT(m, matrix_near(row_list{}, 0));
    EXPECT_REPORT(matrix<double>(0, -3), "matrix", "set_size", sentence + "0,-3");
}

TEST(Matrix, OfIntsIsStorageAlone) {
    matrix<int> m(2, 3);
    m[1][2] = 9;
    const matrix<int>& view = m;
    EXPECT_EQ(view[1][2] + view[0][0], 9);
    EXPECT_EQ(m.get_dim1() * 10 + m.get_dim2(), 23u);
    EXPECT_REPORT(m.set_size(2, -2), "matrix", "set_size", "matrix::set_size() : tried to set size to 2,-2");
    EXPECT_EQ(m.get_dim1() + m.get_dim2(), 0u);
    m.set_size(1, 1);
    m.clear();
    EXPECT_EQ(m.get_dim1() + m.get_dim2(), 0u);
}

TEST(Matrix, CopiesAreDeepAndSelfAssignmentZeroes) {
    matrix<double> m = to_matrix({{1, 2, 3}, {4, 5, 6}});
    const matrix<double> copy(m);
    m = *&m;
    EXPECT_THAT(m, matrix_near(row_list{{0, 0, 0}, {0, 0, 0}}, 0));
    EXPECT_THAT(copy, matrix_near(row_list{{1, 2, 3}, {4, 5, 6}}, 0));
    m = matrix<double>();
    EXPECT_THAT(m, matrix_near(row_list{}, 0));
}

TEST(Matrix, FillTakesWhatTheVectorHas) {
    matrix<double> m(2, 2);
    m = std::vector<double>{1, 2, 3, 4, 99};
    EXPECT_THAT(m, matrix_near(row_list{{1, 2}, {3, 4}}, 0));
    EXPECT_THROW((m = std::vector<double>{7, 8, 9}), std::out_of_range);
    EXPECT_THAT(m, matrix_near(row_list{{7, 8}, {9, 4}}, 0));
    matrix<double> empty;
    empty = std::vector<double>{1};
    EXPECT_THAT(empty, matrix_near(row_list{}, 0));
}

TEST(Matrix, Products) {
    matrix<double> a = to_matrix({{1, 2, 3}, {4, 5, 6}});
    const matrix<double> b = to_matrix({{7, 8}, {9, 10}, {11, 12}});
    EXPECT_EQ(a * std::vector<double>({1, 0, -1, 50}), (std::vector<double>{-2, -2}));
    EXPECT_THROW(a * std::vector<double>({1, 0}), std::out_of_range);
    EXPECT_TRUE((matrix<double>() * std::vector<double>()).empty());
    EXPECT_THAT(b * a, matrix_near(row_list{{39, 54, 69}, {49, 68, 87}, {59, 82, 105}}, 0));
    EXPECT_THAT(matrix<double>() * b, matrix_near(row_list{}, 0));
    a *= b;
    EXPECT_THAT(a, matrix_near(row_list{{58, 64}, {139, 154}}, 0));
    a *= a;
    EXPECT_THAT(a, matrix_near(row_list{{12260, 13568}, {29468, 32612}}, 0));
}

TEST(Matrix, SumsRunUpwardFromZero) {
    // Only this order gives 1: the big terms cancel before the small one comes.
    const matrix<double> row = to_matrix({{1e20, -1e20, 1}});
    EXPECT_EQ((row * to_matrix({{1}, {1}, {1}}))[0][0], 1.0);
    EXPECT_EQ((row * std::vector<double>{1, 1, 1})[0], 1.0);
    // A sum that starts at 0.0 cannot end at minus zero.
    EXPECT_FALSE(std::signbit((to_matrix({{-1}}) * to_matrix({{0}}))[0][0]));
}

TEST(Matrix, Determinants) {
    EXPECT_EQ(matrix<double>().det(), 1.0);
    const std::pair<row_list, double> cases[] = {
        {{{-4}}, -4},
        {{{1, 2}, {3, 4}}, -2},
        {{{2, 0, 1}, {1, 3, 2}, {1, 1, 4}}, 18},
        {{{1, 2, 0, 1}, {0, 3, 1, 2}, {2, 0, 1, 1}, {1, 1, 0, 2}}, 10},
    };
    for (const auto& [rows, determinant] : cases) {
        EXPECT_EQ(to_matrix(rows).det(), determinant);
    }
}

TEST(Matrix, TransposeAndPseudoInverse) {
    const matrix<double> m = to_matrix({{1, 2, 3}, {4, 5, 6}});
    EXPECT_THAT(m.transpose(), matrix_near(row_list{{1, 4}, {2, 5}, {3, 6}}, 0));
    EXPECT_THAT(m * m.invert(), matrix_near(row_list{{1, 0}, {0, 1}}, 1e-12));
    EXPECT_THAT(matrix<double>(2, 2).invert(), matrix_near(row_list{{0, 0}, {0, 0}}, 0));
    EXPECT_THAT(to_matrix({{2, 0}, {0, 4}}).invert(), matrix_near(row_list{{0.5, 0}, {0, 0.25}}, 1e-15));
}

TEST(Matrix, ElementAccess) {
    matrix<double> m(2, 2);
    m.set(0, 1, 5);
    m.get(1, 0) = 6;
    const matrix<double>& view = m;
    EXPECT_EQ(view.get(0, 1), 5);
    EXPECT_EQ(view[1][0], 6);
}
