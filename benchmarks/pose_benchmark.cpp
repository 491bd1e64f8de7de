#include <opencv2/core.hpp>
#include <opengv/absolute_pose/CentralAbsoluteAdapter.hpp>
#include <opengv/absolute_pose/methods.hpp>
#include <random>

#include "benchmarks/compare.h"
#include "zorv_tools/geometry/Transform_estimator.h"
#include "zorv_tools/geometry/opengv_wrapper.h"

namespace {

constexpr double focal_length = 800;

struct generator {
    std::mt19937 bits{1};
    std::uniform_real_distribution<double> uniform{-1.0, 1.0};
    double operator()() { return uniform(bits); }
};

void compare_upnp(int count) {
    generator random;
    zorv::matrix<double> image(count, 2);
    zorv::matrix<double> world(count, 3);
    zorv::matrix<double> camera(3, 3);
    camera = std::vector<double>{focal_length, 0, 0, 0, focal_length, 0, 0, 0, 1};
    opengv::bearingVectors_t bearings;
    opengv::points_t points;
    const Eigen::Matrix3d rotation = Eigen::Quaterniond(1, 0.3, -0.2, 0.4).normalized().toRotationMatrix();
    for (unsigned int i = 0; i < static_cast<unsigned int>(count); ++i) {
        const Eigen::Vector3d p(2 * random(), 2 * random(), 6 + 2 * random());
        image[i][0] = focal_length * p[0] / p[2] + 0.5 * random();
        image[i][1] = focal_length * p[1] / p[2] + 0.5 * random();
        const Eigen::Vector3d x = rotation * p + Eigen::Vector3d(1, 2, 3);
        std::copy_n(x.data(), 3, world[i]);
        points.push_back(x);
        bearings.push_back(
            Eigen::Vector3d(image[i][0] / focal_length, image[i][1] / focal_length, 1).normalized());
    }
    const auto ours = [=] {
        zorv::matrix<double> best;
        std::vector<double> translation;
        zorv::upnp(image, world, camera, best, translation);
        benchmark::DoNotOptimize(translation.data());
    };
    const auto peer = [=] {
        const opengv::absolute_pose::CentralAbsoluteAdapter adapter(bearings, points);
        const opengv::transformations_t solutions = opengv::absolute_pose::upnp(adapter);
        benchmark::DoNotOptimize(solutions.data());
    };
    ZORV_COMPARE("upnp, best solution, " + std::to_string(count) + " points (opengv on prepared bearings)",
                 1.15, ours, peer);
}

void compare_estimate_transform(int count) {
    generator random;
    std::vector<std::vector<double>> original;
    std::vector<std::vector<double>> target;
    cv::Mat left(3 * count, 15, CV_64F, cv::Scalar(0));
    cv::Mat right(3 * count, 1, CV_64F);
    for (int i = 0; i < count; ++i) {
        const std::vector<double> t = {random(), random(), random()};
        const std::vector<double> o = {t[0] + 0.1 * t[1] + 1, t[1] - 0.2 * t[2], t[2] + 0.01 * random()};
        for (int k = 0; k < 3; ++k) {
            const auto index = static_cast<std::size_t>(k);
            double* const row = left.ptr<double>(3 * i + k);
            for (std::size_t j = 0; j < 3; ++j) {
                row[4 * index + j] = t[j];
                row[12 + j] = -o[index] * t[j];
            }
            row[4 * k + 3] = 1;
            right.at<double>(3 * i + k) = o[index];
        }
        original.push_back(o);
        target.push_back(t);
    }
    const auto ours = [=] {
        const zorv::matrix<double> found = zorv::Transform_estimator().estimate_transform(original, target);
        benchmark::DoNotOptimize(found[0]);
    };
    const auto peer = [=] {
        cv::Mat solution;
        cv::solve(left, right, solution, cv::DECOMP_SVD);
        benchmark::DoNotOptimize(solution.data);
    };
    ZORV_COMPARE("estimate_transform, " + std::to_string(count) + " points (cv::solve on a filled matrix)",
                 1.1, ours, peer);
}

}  // namespace

void register_comparisons() {
    for (int count : {50, 1000}) {
        compare_upnp(count);
    }
    for (int count : {100, 1000}) {
        compare_estimate_transform(count);
    }
}
