#include "examples/board_pose/pose.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <iomanip>
#include <limits>
#include <opencv2/calib3d.hpp>
#include <stdexcept>

#include "zorv_tools/config/configuration.h"
#include "zorv_tools/geometry/opengv_wrapper.h"

namespace {

using zorv::matrix;

matrix<double> to_matrix(const cv::Mat& values) {
    matrix<double> result(values.rows, values.cols);
    for (int r = 0; r < values.rows; ++r) {
        std::copy_n(values.ptr<double>(r), values.cols, result[static_cast<unsigned int>(r)]);
    }
    return result;
}

/// Quaternion x, y, z, w of a rotation, by the largest of its four squares, which keeps all digits.
std::array<double, 4> to_quaternion(const matrix<double>& r) {
    const std::array<double, 4> squares = {1 + r[0][0] - r[1][1] - r[2][2], 1 - r[0][0] + r[1][1] - r[2][2],
                                           1 - r[0][0] - r[1][1] + r[2][2], 1 + r[0][0] + r[1][1] + r[2][2]};
    // Row k is four times the k-th component times each of the components.
    const std::array<std::array<double, 4>, 4> products = {{
        {squares[0], r[0][1] + r[1][0], r[0][2] + r[2][0], r[2][1] - r[1][2]},
        {r[0][1] + r[1][0], squares[1], r[1][2] + r[2][1], r[0][2] - r[2][0]},
        {r[0][2] + r[2][0], r[1][2] + r[2][1], squares[2], r[1][0] - r[0][1]},
        {r[2][1] - r[1][2], r[0][2] - r[2][0], r[1][0] - r[0][1], squares[3]},
    }};
    const auto largest = std::max_element(squares.begin(), squares.end());
    std::array<double, 4> quaternion = products[static_cast<std::size_t>(largest - squares.begin())];
    for (double& component : quaternion) {
        component /= 2 * std::sqrt(*largest);
    }
    return quaternion;
}

}  // namespace

upnp_result pose_by_upnp(const std::vector<cv::Point2d>& image, const std::vector<cv::Point3d>& world,
                         const cv::Mat& camera_matrix) {
    const matrix<double> pixels = to_matrix(cv::Mat(image).reshape(1));
    const matrix<double> points = to_matrix(cv::Mat(world).reshape(1));
    const matrix<double> camera = to_matrix(camera_matrix);
    std::vector<matrix<double>> rotations;
    std::vector<std::vector<double>> translations;
    zorv::upnp(pixels, points, camera, rotations, translations);
    upnp_result result;
    result.solutions = rotations.size();
    zorv::upnp(pixels, points, camera, result.best.rotation, result.best.translation);
    return result;
}

pose pose_by_solve_pnp(const std::vector<cv::Point2d>& image, const std::vector<cv::Point3d>& world,
                       const cv::Mat& camera_matrix) {
    cv::Mat turn;
    cv::Mat shift;
    cv::solvePnP(world, image, camera_matrix, cv::noArray(), turn, shift, false, cv::SOLVEPNP_ITERATIVE);
    // This is the world in the camera's frame; a pose is the camera in the world.
    cv::Mat world_to_camera;
    cv::Rodrigues(turn, world_to_camera);
    const cv::Mat position = -world_to_camera.t() * shift;
    return {to_matrix(world_to_camera.t()), {position.begin<double>(), position.end<double>()}};
}

double angle_between(const pose& a, const pose& b) {
    double squares = 0;
    for (unsigned int r = 0; r < 3; ++r) {
        for (unsigned int c = 0; c < 3; ++c) {
            squares += std::pow(a.rotation[r][c] - b.rotation[r][c], 2);
        }
    }
    return 2 * std::asin(std::min(1.0, std::sqrt(squares / 8))) * 180 / CV_PI;
}

double distance_between(const pose& a, const pose& b) {
    return std::hypot(a.translation[0] - b.translation[0], a.translation[1] - b.translation[1],
                      a.translation[2] - b.translation[2]);
}

matrix<double> frame_to_frame(const pose& from, const pose& to) {
    const matrix<double> world_to_target = to.rotation.transpose();
    const matrix<double> rotation = world_to_target * from.rotation;
    const std::vector<double> shift =
        world_to_target * std::vector<double>{from.translation[0] - to.translation[0],
                                              from.translation[1] - to.translation[1],
                                              from.translation[2] - to.translation[2]};
    matrix<double> transform(4, 4);
    for (unsigned int r = 0; r < 3; ++r) {
        std::copy_n(rotation[r], 3, transform[r]);
        transform[r][3] = shift[r];
    }
    transform[3][3] = 1;
    return transform;
}

std::vector<zorv::Camera> cameras_through_file(const std::string& path, const std::vector<pose>& poses,
                                               const cv::Mat& camera_matrix, const cv::Size& size) {
    std::ofstream out(path);
    out << std::setprecision(std::numeric_limits<double>::max_digits10);
    const auto write_entry = [&](const std::string& key, const std::vector<double>& values) {
        out << key;
        for (std::size_t i = 0; i < values.size(); ++i) {
            out << (i == 0 ? '=' : '|') << values[i];
        }
        out << '\n';
    };
    for (const pose& p : poses) {
        // Centre and focal lengths are told in image widths and heights. There is one camera, so the baseline
        // is any length; a disparity above 0 is the sign of a valid projection.
        write_entry(
            "bumblebee_params",
            {camera_matrix.at<double>(0, 2) / size.width, camera_matrix.at<double>(1, 2) / size.height,
             camera_matrix.at<double>(0, 0) / size.width, camera_matrix.at<double>(1, 1) / size.height,
             double(size.width), double(size.height), 1.0});
        const std::array<double, 4> q = to_quaternion(p.rotation.transpose());
        write_entry("extrinsic_camera_params_q",
                    {q[0], q[1], q[2], q[3], p.translation[0], p.translation[1], p.translation[2]});
    }
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write \"" + path + "\"");
    }
    zorv::configuration settings(path);
    std::vector<zorv::Camera> cameras;
    zorv::create_camera_vector(cameras, settings);
    return cameras;
}
