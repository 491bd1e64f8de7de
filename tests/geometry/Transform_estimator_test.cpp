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

class scenes {
public:
    row_list points(int count) {
        row_list result(static_cast<std::size_t>(count));
        for (auto& p : result) {
            p = {uniform(), uniform(), uniform()};
        }
        return result;
    }

    /// Far enough from singular for points of the unit cube to stay in front of the plane that goes to infinity.
    row_list transform() {
        row_list h(4, std::vector<double>(4));
        for (std::size_t r = 0; r < 4; ++r) {
            for (std::size_t c = 0; c < 4; ++c) {
                h[r][c] = (r == c ? 1.0 : 0.0) + (r == 3 ? 0.15 : 0.4) * uniform();
            }
        }
        h[3][3] = 1.0;
        return h;
    }

    row_list images(const row_list& h, const row_list& points, double noise = 0.0) {
        row_list result;
        for (const auto& p : points) {
            const std::vector<double> q = to_matrix(h) * std::vector<double>{p[0], p[1], p[2], 1.0};
            result.push_back({q[0] / q[3], q[1] / q[3], q[2] / q[3]});
            for (double& x : result.back()) {
                x += noise * uniform();
            }
        }
        return result;
    }

private:
    double uniform() { return uniform_(generator_); }

    std::mt19937 generator_{5};
    std::uniform_real_distribution<double> uniform_{-1.0, 1.0};
};

std::vector<std::vector<double>*> pointers_to(row_list& points) {
    std::vector<std::vector<double>*> pointers;
    for (auto& p : points) {
        pointers.push_back(&p);
    }
    return pointers;
}

}  // namespace

TEST(TransformEstimator, FindsKnownTransforms) {
    const struct {
        int points;
        double noise, tolerance;
    } cases[] = {
        {5, 0, 1e-7},
        {6, 0, 1e-7},
        {50, 0, 1e-7},
        // Noise averages out over many points: any five of these would be off by more.
        {2000, 1e-2, 5e-3},
    };
    scenes s;
    for (const auto& c : cases) {
        for (int scene = 0; scene < 20; ++scene) {
            const row_list h = s.transform();
            const row_list target = s.points(c.points);
            const matrix<double> found =
                Transform_estimator().estimate_transform(s.images(h, target, c.noise), target);
            EXPECT_THAT(found, matrix_near(h, c.tolerance)) << c.points << " points, scene " << scene;
            EXPECT_EQ(found[3][3], 1.0);
        }
    }
}

TEST(TransformEstimator, FormsAgreeAndIgnoreFurtherEntries) {
    scenes s;
    Transform_estimator estimator;
    row_list target = s.points(9);
    row_list original = s.images(s.transform(), target, 0.01);
    const auto same = matrix_near(to_rows(estimator.estimate_transform(original, target)), 0);
    for (std::size_t i = 0; i < target.size(); ++i) {
        target[i].push_back(1e3 * std::pow(-2, i));
        original[i].push_back(NAN);
    }
    const auto original_pointers = pointers_to(original);
    const auto target_pointers = pointers_to(target);
    EXPECT_THAT(estimator.estimate_transform(original, target), same);
    EXPECT_THAT(estimator.estimate_transform(&original_pointers, &target_pointers), same);
    EXPECT_THAT(estimator.estimate_transform(to_matrix(original), to_matrix(target)), same);
}

TEST(TransformEstimator, DegenerateAndFewPoints) {
    scenes s;
    const row_list h = s.transform();
    row_list plane = s.points(30);
    for (auto& p : plane) {
        p[2] = 0.0;
    }
    // The third column is open, and least norm makes it zero; the points are carried over all the same.
    const row_list image = s.images(h, plane);
    const row_list found = to_rows(Transform_estimator().estimate_transform(image, plane));
    for (const auto& row : found) {
        EXPECT_NEAR(row[2], 0.0, 1e-9);
    }
    EXPECT_THAT(to_matrix(s.images(found, plane)), matrix_near(image, 1e-8));

    for (const int count : {0, 4}) {
        EXPECT_THROW(Transform_estimator().estimate_transform(s.points(count), s.points(count)),
                     cv::Exception);
    }
}

TEST(TransformEstimator, Reports) {
    const auto expect = [](const auto& original, const auto& target, const std::string& function,
                           const std::string& sentence) {
        EXPECT_REPORT(Transform_estimator().estimate_transform(original, target), "Transform_estimator",
                      function, "Transform_estimator::estimate_transform() : mismatch on " + sentence);
    };
    row_list five(5, {1, 2, 3});
    row_list longer = five;
    longer[2].push_back(1.0);
    const auto five_pointers = pointers_to(five);
    const auto longer_pointers = pointers_to(longer);
    const row_list four(4, {1, 2, 3});
    const std::vector<std::vector<double>*> four_pointers(4, &five[0]);

    const std::string fewer = "number of points. original size=4 while target size=5";
    expect(four, five, "estimate_transform(", fewer);
    expect(&four_pointers, &five_pointers, "*>*", fewer);
    expect(to_matrix(four), to_matrix(five), "matrix<double>, ", fewer);
    expect(five, four, "estimate_transform(", "number of points. original size=5 while target size=4");
    const std::string dimensions = "dimensionality of point 2. original dims=3 while target dims=4";
    expect(five, longer, "estimate_transform(", dimensions);
    expect(&five_pointers, &longer_pointers, "estimate_transform(", dimensions);
    expect(to_matrix(five), matrix<double>(5, 7), "matrix<double>, ",
           "dimension of point 0. original size=3 while target size=7");
}
