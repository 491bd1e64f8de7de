#include "zorv_tools/geometry/Transform_estimator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/core.hpp>
#include <random>

#include "tests/support/matchers.h"
#include "tests/support/report.h"

namespace {

using zorv::matrix;
using zorv::Transform_estimator;
using rows = std::vector<std::vector<double>>;

rows to_rows(const matrix<double>& m) {
    rows result;
    for (unsigned int i = 0; i < m.get_dim1(); ++i) {
        result.emplace_back(m[i], m[i] + m.get_dim2());
    }
    return result;
}

matrix<double> to_matrix(const rows& points) {
    matrix<double> m(static_cast<int>(points.size()), static_cast<int>(points[0].size()));
    for (unsigned int i = 0; i < points.size(); ++i) {
        m.set_row(i, points[i]);
    }
    return m;
}

std::vector<double> apply(const rows& h, const std::vector<double>& p) {
    std::vector<double> image(4);
    for (std::size_t r = 0; r < 4; ++r) {
        image[r] = h[r][0] * p[0] + h[r][1] * p[1] + h[r][2] * p[2] + h[r][3];
    }
    return {image[0] / image[3], image[1] / image[3], image[2] / image[3]};
}

struct scenes {
    std::mt19937 generator{5};
    std::uniform_real_distribution<double> uniform{-1.0, 1.0};

    rows points(int count) {
        rows result(static_cast<std::size_t>(count), std::vector<double>(3));
        for (auto& p : result) {
            p = {uniform(generator), uniform(generator), uniform(generator)};
        }
        return result;
    }

    /// Far enough from singular for points of the unit cube to stay in front of the plane that goes to infinity.
    rows transform() {
        rows h(4, std::vector<double>(4));
        for (std::size_t r = 0; r < 4; ++r) {
            for (std::size_t c = 0; c < 4; ++c) {
                h[r][c] = (r == c ? 1.0 : 0.0) + (r == 3 ? 0.15 : 0.4) * uniform(generator);
            }
        }
        h[3][3] = 1.0;
        return h;
    }

    rows images(const rows& h, const rows& points, double noise = 0.0) {
        std::normal_distribution<double> normal(0.0, 1.0);
        rows result;
        for (const auto& p : points) {
            result.push_back(apply(h, p));
            for (double& x : result.back()) {
                x += noise * normal(generator);
            }
        }
        return result;
    }
};

double distance(const rows& a, const rows& b) {
    double sum = 0.0;
    for (std::size_t r = 0; r < a.size(); ++r) {
        for (std::size_t c = 0; c < a[r].size(); ++c) {
            sum += (a[r][c] - b[r][c]) * (a[r][c] - b[r][c]);
        }
    }
    return std::sqrt(sum);
}

}  // namespace

TEST(TransformEstimator, FindsKnownTransforms) {
    scenes s;
    for (int count : {5, 6, 50}) {
        for (int scene = 0; scene < 20; ++scene) {
            const rows h = s.transform();
            const rows target = s.points(count);
            const matrix<double> found =
                Transform_estimator().estimate_transform(s.images(h, target), target);
            EXPECT_THAT(found, matrix_near(h, 1e-7)) << count << " points, scene " << scene;
            EXPECT_EQ(found[3][3], 1.0);
        }
    }
}

TEST(TransformEstimator, NoiseAveragesOut) {
    scenes s;
    const double noise = 1e-3;
    double few = 0.0;
    double many = 0.0;
    for (int scene = 0; scene < 20; ++scene) {
        const rows h = s.transform();
        for (int count : {20, 500}) {
            const rows target = s.points(count);
            const matrix<double> found =
                Transform_estimator().estimate_transform(s.images(h, target, noise), target);
            (count == 20 ? few : many) += distance(to_rows(found), h) / 20;
        }
    }
    // Fifteen unknowns, so the error is some times the noise over the root of the number of points.
    EXPECT_LT(few, 10 * noise);
    EXPECT_LT(many, few / 3);
}

TEST(TransformEstimator, FirstArgumentIsTheImage) {
    const rows target = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 2, 3}, {-2, 1, 1}};
    rows original = target;
    for (auto& p : original) {
        p = {p[0] + 2, p[1] - 3, p[2] + 5};
    }
    EXPECT_THAT(Transform_estimator().estimate_transform(original, target),
                matrix_near(rows{{1, 0, 0, 2}, {0, 1, 0, -3}, {0, 0, 1, 5}, {0, 0, 0, 1}}, 1e-10));
}

TEST(TransformEstimator, FormsAgreeAndIgnoreFurtherEntries) {
    scenes s;
    rows target = s.points(9);
    rows original = s.images(s.transform(), target, 0.01);
    const rows expected = to_rows(Transform_estimator().estimate_transform(original, target));
    for (std::size_t i = 0; i < target.size(); ++i) {
        target[i].push_back(s.uniform(s.generator));
        original[i].push_back(NAN);
    }
    std::vector<std::vector<double>*> original_pointers;
    std::vector<std::vector<double>*> target_pointers;
    for (std::size_t i = 0; i < target.size(); ++i) {
        original_pointers.push_back(&original[i]);
        target_pointers.push_back(&target[i]);
    }
    Transform_estimator estimator;
    EXPECT_THAT(estimator.estimate_transform(original, target), matrix_near(expected, 0));
    EXPECT_THAT(estimator.estimate_transform(&original_pointers, &target_pointers), matrix_near(expected, 0));
    EXPECT_THAT(estimator.estimate_transform(to_matrix(original), to_matrix(target)),
                matrix_near(expected, 0));
}

TEST(TransformEstimator, DegenerateAndFewPoints) {
    scenes s;
    const rows h = s.transform();
    rows plane = s.points(30);
    for (auto& p : plane) {
        p[2] = 0.0;
    }
    // The third column is open, and least norm makes it zero; the points are carried over all the same.
    const rows found = to_rows(Transform_estimator().estimate_transform(s.images(h, plane), plane));
    for (std::size_t r = 0; r < 4; ++r) {
        EXPECT_NEAR(found[r][2], 0.0, 1e-9);
    }
    EXPECT_LT(distance(s.images(found, plane), s.images(h, plane)), 1e-8);

    EXPECT_THROW(Transform_estimator().estimate_transform(s.points(4), s.points(4)), cv::Exception);
    EXPECT_THROW(Transform_estimator().estimate_transform(rows(), rows()), cv::Exception);
}

TEST(TransformEstimator, Reports) {
    scenes s;
    Transform_estimator estimator;
    rows five = s.points(5);
    rows four = s.points(4);
    std::vector<std::vector<double>*> five_pointers;
    for (auto& p : five) {
        five_pointers.push_back(&p);
    }
    const std::vector<std::vector<double>*> four_pointers(five_pointers.begin(), five_pointers.end() - 1);
    const std::string counts =
        "Transform_estimator::estimate_transform() : mismatch on number of points. original size=4 "
        "while target size=5";
    EXPECT_REPORT(estimator.estimate_transform(four, five), "Transform_estimator", "estimate_transform",
                  counts);
    EXPECT_REPORT(estimator.estimate_transform(&four_pointers, &five_pointers), "Transform_estimator", "*>*",
                  counts);
    EXPECT_REPORT(estimator.estimate_transform(to_matrix(four), to_matrix(five)), "Transform_estimator",
                  "matrix<double>, ", counts);

    rows longer = five;
    longer[2].push_back(1.0);
    std::vector<std::vector<double>*> longer_pointers = five_pointers;
    longer_pointers[2] = &longer[2];
    const std::string dimensions =
        "Transform_estimator::estimate_transform() : mismatch on dimensionality of point 2. original "
        "dims=3 while target dims=4";
    EXPECT_REPORT(estimator.estimate_transform(five, longer), "Transform_estimator", "estimate_transform",
                  dimensions);
    EXPECT_REPORT(estimator.estimate_transform(&five_pointers, &longer_pointers), "Transform_estimator",
                  "estimate_transform", dimensions);
    EXPECT_REPORT(
        estimator.estimate_transform(to_matrix(five), matrix<double>(5, 7)), "Transform_estimator",
        "matrix<double>, ",
        "Transform_estimator::estimate_transform() : mismatch on dimension of point 0. original size=3 "
        "while target size=7");
}
