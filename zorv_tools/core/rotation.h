#pragma once

/// @file
/// Rotation matrices of three dimensions, for column vectors: p' = R p. Angles and quaternions may be of any
/// arithmetic type; the matrix is of doubles.
///
/// Three angles stand in the order about z (roll), about x (pitch), about y (yaw), and the matrix is Y X Z: on a
/// column vector the rotation about z acts first. Every stored calibration depends on this order and these signs.

#include <cmath>
#include <cstddef>
#include <vector>

#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/matrix.h"

namespace zorv {

/// The rotation by three angles in radians, 3 by 3. Throws `exception_l` unless there are exactly three; its sentence
/// names another function, which is meant. Angles that are not finite give elements that are not a number.
template <class T = double>
const matrix<double> euler_angles_rad_to_rot_mat(const std::vector<T>& angles) {
    if (angles.size() != 3) {
        // The sentence names another function than the one that raises it; that is meant.
        ZORV_THROW(
            "create_rotation_matrix : Can't create a 3d rotation matrix from a set of angles with size "
            "not 3. Size was: "
            << angles.size());
    }
    const auto a = static_cast<double>(angles[0]);
    const auto b = static_cast<double>(angles[1]);
    const auto c = static_cast<double>(angles[2]);
    matrix<double> z(3, 3);
    z = std::vector<double>{std::cos(a), -std::sin(a), 0, std::sin(a), std::cos(a), 0, 0, 0, 1};
    matrix<double> x(3, 3);
    x = std::vector<double>{1, 0, 0, 0, std::cos(b), -std::sin(b), 0, std::sin(b), std::cos(b)};
    matrix<double> y(3, 3);
    y = std::vector<double>{std::cos(c), 0, std::sin(c), 0, 1, 0, -std::sin(c), 0, std::cos(c)};
    return (y * x) * z;
}

/// The same by three angles in degrees, which become radians with the single-precision value of pi over 180.
template <class T = double>
matrix<double> euler_angles_deg_to_rot_mat(const std::vector<T>& angles) {
    // Single-precision pi over 180. Calibrations were made with this value, so it is not the nearest double to
    // pi / 180.
    constexpr double radians_per_degree = 0.017453293005625408;
    std::vector<double> radians(angles.begin(), angles.end());
    for (double& angle : radians) {
        angle *= radians_per_degree;
    }
    return euler_angles_rad_to_rot_mat(radians);
}

/// The rotation of a quaternion x, y, z, w (the first four entries; there must be that many, which is not tested),
/// 3 by 3. It need not be of unit length, the normalisation being part of every element; four zeros give elements
/// that are not a number.
template <class T = double>
matrix<double> quaternion_to_rot_mat(const std::vector<T>& quaternion) {
    const auto x = static_cast<double>(quaternion[0]);
    const auto y = static_cast<double>(quaternion[1]);
    const auto z = static_cast<double>(quaternion[2]);
    const auto w = static_cast<double>(quaternion[3]);
    const double n = 1 / (x * x + y * y + z * z + w * w);
    matrix<double> rotation(3, 3);
    rotation[0][0] = (x * x - y * y - z * z + w * w) * n;
    rotation[1][1] = (y * y - x * x - z * z + w * w) * n;
    rotation[2][2] = (z * z - (x * x + y * y) + w * w) * n;
    rotation[0][1] = 2 * (x * y - w * z) * n;
    rotation[1][0] = 2 * (x * y + w * z) * n;
    rotation[0][2] = 2 * (x * z + w * y) * n;
    rotation[2][0] = 2 * (x * z - w * y) * n;
    rotation[1][2] = 2 * (y * z - w * x) * n;
    rotation[2][1] = 2 * (y * z + w * x) * n;
    return rotation;
}

}  // namespace zorv
