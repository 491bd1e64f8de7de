#include "zorv_tools/geometry/opengv_wrapper.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <opengv/absolute_pose/CentralAbsoluteAdapter.hpp>
#include <opengv/absolute_pose/methods.hpp>
#include <utility>

#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/pair_comparison.h"

namespace zorv {

namespace {

using Eigen::Matrix3d;
using Eigen::Vector3d;
using opengv::bearingVectors_t;
using opengv::points_t;
using opengv::transformations_t;

bool is_prior(const matrix<double>& rotation, const std::vector<double>& translation) {
    return rotation.get_dim1() == 3 && rotation.get_dim2() == 3 && translation.size() == 3;
}

points_t to_points(const matrix<double>& world_points) {
    points_t points;
    points.reserve(world_points.get_dim1());
    for (unsigned int i = 0; i < world_points.get_dim1(); ++i) {
        points.emplace_back(world_points[i][0], world_points[i][1], world_points[i][2]);
    }
    return points;
}

bearingVectors_t to_bearings(const matrix<double>& image_points, const matrix<double>& inverse_camera) {
    const unsigned int count = image_points.get_dim1();
    matrix<double> rays(3, static_cast<int>(count));
    for (unsigned int i = 0; i < count; ++i) {
        rays[0][i] = image_points[i][0];
        rays[1][i] = image_points[i][1];
        rays[2][i] = 1.0;
    }
    rays = inverse_camera * rays;
    bearingVectors_t bearings;
    bearings.reserve(count);
    for (unsigned int i = 0; i < count; ++i) {
        const double a = rays[0][i];
        const double b = rays[1][i];
        const double c = rays[2][i];
        const double norm = std::sqrt(b * b + a * a + c * c);
        bearings.emplace_back(a / norm, b / norm, c / norm);
    }
    return bearings;
}

// The solver multiplies coordinates with one another, and loses its pivots where they are out of all proportion
// to the unit quaternions that it solves for.
constexpr double largest_coordinate = 1e12;

/// Whether all vectors lie on one line through `origin`, up to rounding.
template <class Vectors>
bool on_one_line(const Vectors& vectors, const Vector3d& origin) {
    Vector3d farthest = Vector3d::Zero();
    for (const Vector3d& v : vectors) {
        if ((v - origin).squaredNorm() > farthest.squaredNorm()) {
            farthest = v - origin;
        }
    }
    const double length = farthest.norm();
    if (!(length > 1.0 / largest_coordinate)) {
        return true;
    }
    const Vector3d direction = farthest / length;
    return std::all_of(vectors.begin(), vectors.end(), [&](const Vector3d& v) {
        return (v - origin).cross(direction).norm() <= 1e-12 * length;
    });
}

/// Whether the points determine a pose. The solver must not see others: elimination runs into pivots that are
/// zero or not a number, and it then reads and writes in front of its matrix.
bool determine_pose(const bearingVectors_t& bearings, const points_t& points) {
    // The comparisons are false of what is not a number. A bearing whose norm overflowed is zero,
    // one whose norm vanished infinite.
    return points.size() >= 3 &&
           std::all_of(bearings.begin(), bearings.end(),
                       [](const Vector3d& f) { return std::abs(f.squaredNorm() - 1.0) < 0.5; }) &&
           std::all_of(points.begin(), points.end(),
                       [](const Vector3d& p) {
                           return p.squaredNorm() <= largest_coordinate * largest_coordinate;
                       }) &&
           !on_one_line(bearings, Vector3d::Zero()) && !on_one_line(points, points.front());
}

/// Whether a mixed second moment vanishes, as it does where the axes are those of a symmetry (a camera looking
/// straight at a square or a cube) or the vectors lie in a plane between them (a board with z = 0).
template <class Vectors>
bool is_aligned_with_axes(const Vectors& vectors) {
    Vector3d mixed = Vector3d::Zero();
    double sum = 0.0;
    for (const Vector3d& v : vectors) {
        mixed += Vector3d(v[0] * v[1], v[1] * v[2], v[2] * v[0]);
        sum += v.squaredNorm();
    }
    return mixed.cwiseAbs().minCoeff() <= 1e-12 * sum;
}

/// Any rotation that no scene is likely to share.
Matrix3d arbitrary_rotation() {
    return Eigen::Quaterniond(0.8, 0.3, -0.41, 0.17).normalized().toRotationMatrix();
}

transformations_t solve(const bearingVectors_t& bearings, points_t points,
                        const std::vector<matrix<double>>& rotations,
                        const std::vector<std::vector<double>>& translations) {
    // On such axes pivots of the solver's elimination can cancel to exactly zero, with the same end as above,
    // although the pose is as well determined as any. So the world is turned, and the solutions turned back.
    const bool turned = is_aligned_with_axes(bearings) || is_aligned_with_axes(points);
    const Matrix3d turn = turned ? arbitrary_rotation() : Matrix3d::Identity();
    if (turned) {
        for (Vector3d& p : points) {
            p = turn * p;
        }
    }
    opengv::absolute_pose::CentralAbsoluteAdapter adapter(bearings, points);
    if (!rotations.empty() && !translations.empty() && is_prior(rotations[0], translations[0])) {
        Matrix3d rotation;
        Vector3d translation;
        for (unsigned int r = 0; r < 3; ++r) {
            for (unsigned int c = 0; c < 3; ++c) {
                rotation(r, c) = rotations[0][r][c];
            }
            translation[r] = translations[0][r];
        }
        adapter.setR(turn * rotation);
        adapter.sett(turn * translation);
    }
    transformations_t solutions = opengv::absolute_pose::upnp(adapter);
    if (turned) {
        for (opengv::transformation_t& solution : solutions) {
            solution = turn.transpose() * solution;
        }
    }
    return solutions;
}

std::array<double, 3> multiply(const matrix<double>& m, const std::array<double, 3>& v) {
    std::array<double, 3> product{};
    for (unsigned int i = 0; i < 3; ++i) {
        for (unsigned int j = 0; j < 3; ++j) {
            product[i] += m[i][j] * v[j];
        }
    }
    return product;
}

/// Sum of the squared differences in pixels, neither rooted nor averaged.
double reprojection_error(const matrix<double>& image_points, const matrix<double>& world_points,
                          const matrix<double>& camera_matrix, const matrix<double>& rotation,
                          const std::vector<double>& translation) {
    const matrix<double> world_to_camera = rotation.transpose();
    double error = 0.0;
    for (unsigned int i = 0; i < world_points.get_dim1(); ++i) {
        const double* const x = world_points[i];
        const std::array<double, 3> offset{x[0] - translation[0], x[1] - translation[1],
                                           x[2] - translation[2]};
        const std::array<double, 3> p = multiply(camera_matrix, multiply(world_to_camera, offset));
        const double du = p[0] / p[2] - image_points[i][0];
        const double dv = p[1] / p[2] - image_points[i][1];
        error += du * du;
        error += dv * dv;
    }
    return error;
}

}  // namespace

void upnp(const matrix<double>& image_points, const matrix<double>& world_points,
          const matrix<double>& camera_matrix, std::vector<matrix<double>>& rotations,
          std::vector<std::vector<double>>& translations) {
    if (world_points.get_dim2() != 3) {
        ZORV_THROW("3d points vector had size " << world_points.get_dim1() << " by "
                                                << world_points.get_dim2() << " (should be Npoints by 3)");
    }
    if (image_points.get_dim2() != 2) {
        ZORV_THROW("2d points vector had size " << image_points.get_dim1() << " by "
                                                << image_points.get_dim2() << " (should be Npoints by 2)");
    }
    try {
        transformations_t solutions;
        if (image_points.get_dim1() == world_points.get_dim1()) {
            const matrix<double> inverse_camera = camera_matrix.invert();
            if (inverse_camera.get_dim1() == 3 && inverse_camera.get_dim2() == 3) {
                const points_t points = to_points(world_points);
                const bearingVectors_t bearings = to_bearings(image_points, inverse_camera);
                if (determine_pose(bearings, points)) {
                    solutions = solve(bearings, points, rotations, translations);
                }
            }
        }
        rotations.resize(solutions.size());
        translations.resize(solutions.size());
        for (std::size_t s = 0; s < solutions.size(); ++s) {
            rotations[s].set_size(3, 3);
            translations[s].resize(3);
            for (unsigned int r = 0; r < 3; ++r) {
                for (unsigned int c = 0; c < 3; ++c) {
                    rotations[s][r][c] = solutions[s](r, c);
                }
                translations[s][r] = solutions[s](r, 3);
            }
        }
    }
    ZORV_ADD_FRAME("")
}

void upnp(const matrix<double>& image_points, const matrix<double>& world_points,
          const matrix<double>& camera_matrix, matrix<double>& rotation, std::vector<double>& translation) {
    try {
        std::vector<matrix<double>> rotations;
        std::vector<std::vector<double>> translations;
        if (is_prior(rotation, translation)) {
            rotations.push_back(rotation);
            translations.push_back(translation);
        }
        upnp(image_points, world_points, camera_matrix, rotations, translations);
        if (rotations.empty()) {
            rotation.clear();
            translation.clear();
            return;
        }
        std::vector<std::pair<int, double>> errors;
        for (std::size_t s = 0; s < rotations.size(); ++s) {
            const double error =
                reprojection_error(image_points, world_points, camera_matrix, rotations[s], translations[s]);
            // The sort needs an order, which a number that is none would break; such a solution comes last.
            errors.emplace_back(static_cast<int>(s),
                                std::isnan(error) ? std::numeric_limits<double>::infinity() : error);
        }
        std::vector<std::pair<int, double>*> order;
        order.reserve(errors.size());
        for (std::pair<int, double>& entry : errors) {
            order.push_back(&entry);
        }
        std::sort(order.begin(), order.end(), pair_comparison);
        const auto best = static_cast<std::size_t>(order.front()->first);
        rotation = rotations[best];
        translation = translations[best];
    }
    ZORV_ADD_FRAME("")
}

}  // namespace zorv
