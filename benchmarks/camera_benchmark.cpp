#include <Eigen/Core>
#include <iostream>
#include <opencv2/calib3d.hpp>
#include <random>
#include <vector>

#include "benchmarks/compare.h"
#include "zorv_tools/config/configuration.h"
#include "zorv_tools/geometry/Camera.h"

namespace {

constexpr int columns = 1282;
constexpr int rows = 1110;
constexpr int point_count = 1000000;

zorv::Camera pinhole() {
    zorv::Camera camera;
    camera.set_camera_params(0.5, 0.5, 1.2, 1.4, 0.16);
    camera.set_resolution(columns, rows);
    return camera;
}

/// Points that land all over the image and, a few of them, outside.
std::vector<cv::Point3d> random_points() {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> across(-0.42, 0.42);
    std::uniform_real_distribution<double> depth(2, 20);
    std::vector<cv::Point3d> points(point_count);
    for (cv::Point3d& p : points) {
        p.z = depth(random);
        p.x = across(random) * p.z;
        p.y = across(random) * p.z;
    }
    return points;
}

void project_all(const zorv::Camera& camera, const std::vector<cv::Point3d>& points,
                 std::vector<cv::Point3d>& image) {
    for (std::size_t i = 0; i < points.size(); ++i) {
        camera.project(points[i].x, points[i].y, points[i].z, image[i].x, image[i].y, image[i].z);
    }
}

void compare_projection(const std::vector<cv::Point3d>& points) {
    zorv::Camera camera = pinhole();
    camera.set_extrinsics({2, -3, 1, 0.2, -0.1, 0.3});
    const auto ours = [camera, points, image = std::vector<cv::Point3d>(points.size())]() mutable {
        project_all(camera, points, image);
        benchmark::ClobberMemory();
    };

    const cv::Matx33d intrinsics(1.2 * columns, 0, 0.5 * columns, 0, 1.4 * rows, 0.5 * rows, 0, 0, 1);
    const auto peer = [points, intrinsics, image = std::vector<cv::Point2d>(points.size())]() mutable {
        cv::projectPoints(points, cv::Vec3d(-0.05, 0.02, 0.03), cv::Vec3d(-0.2, 0.1, -0.3), intrinsics,
                          cv::noArray(), image);
        benchmark::ClobberMemory();
    };
    ZORV_COMPARE("Camera::project, 1,000,000 points, extrinsics (cv::projectPoints)", 0.5, ours, peer);
}

void compare_projection_by_matrix(const std::vector<cv::Point3d>& points) {
    zorv::configuration settings;
    settings.set_param("camera_proj_mats", "1538|0|641|0|0|1554|555|0|0|0|1|0");
    settings.set_param("camera_space_transform", "1|0|0|0.1|0|1|0|-0.1|0|0|1|0.2|0|0|0|1");
    settings.set_param("projection_offsets", "3|5");
    zorv::Camera camera(settings);
    camera.set_resolution(columns, rows);
    const auto ours = [camera, points, image = std::vector<cv::Point3d>(points.size())]() mutable {
        project_all(camera, points, image);
        benchmark::ClobberMemory();
    };

    Eigen::Matrix<double, 3, 4> projection;
    projection << 1538, 0, 641, 0, 0, 1554, 555, 0, 0, 0, 1, 0;
    Eigen::Matrix4d transform;
    transform << 1, 0, 0, 0.1, 0, 1, 0, -0.1, 0, 0, 1, 0.2, 0, 0, 0, 1;
    const auto peer = [points, projection, transform,
                       image = std::vector<cv::Point3d>(points.size())]() mutable {
        for (std::size_t i = 0; i < points.size(); ++i) {
            const Eigen::Vector4d world(points[i].x, points[i].y, points[i].z, 1);
            const Eigen::Vector4d moved = transform * world;
            const Eigen::Vector3d p = projection * moved;
            const double u = p[0] / p[2] - 3;
            const double v = p[1] / p[2] - 5;
            if (u < 0 || v < 0 || u > columns - 1 || v > rows - 1) {
                image[i] = cv::Point3d(0, 0, 0);
            } else {
                image[i] = cv::Point3d(u, v, 1);
            }
        }
        benchmark::ClobberMemory();
    };
    ZORV_COMPARE("Camera::project by matrix, 1,000,000 points (fixed-size Eigen loop)", 1.3, ours, peer);
}

void compare_unprojection() {
    std::mt19937 random(8);
    std::uniform_real_distribution<float> disparity(1, 200);
    cv::Mat1f disparities(rows, columns);
    for (float& d : disparities) {
        d = disparity(random);
    }
    const zorv::Camera camera = pinhole();
    const auto ours = [camera, disparities, world = cv::Mat3d(rows, columns)]() mutable {
        for (int y = 0; y < rows; ++y) {
            const float* const in = disparities[y];
            cv::Vec3d* const out = world[y];
            for (int x = 0; x < columns; ++x) {
                camera.unproject(x, y, in[x], out[x][0], out[x][1], out[x][2]);
            }
        }
        benchmark::ClobberMemory();
    };
    // The peer has no form with 64-bit results.
    const cv::Matx44d to_world(1, 0, 0, -0.5 * columns, 0, 1, 0, -0.5 * rows, 0, 0, 0, 1.2 * columns, 0, 0,
                               1 / 0.16, 0);
    const auto peer = [disparities, to_world, world = cv::Mat()]() mutable {
        cv::reprojectImageTo3D(disparities, world, to_world, false, CV_32F);
        benchmark::ClobberMemory();
    };
    ZORV_COMPARE("Camera::unproject, each pixel of 1282 by 1110 (cv::reprojectImageTo3D, 32-bit)", 1.5, ours,
                 peer);
}

}  // namespace

void register_comparisons() {
    std::cerr.rdbuf(nullptr);
    const std::vector<cv::Point3d> points = random_points();
    compare_projection(points);
    compare_projection_by_matrix(points);
    compare_unprojection();
}
