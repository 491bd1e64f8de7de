#pragma once

#include <gmock/gmock.h>

#include <array>

#include "zorv_tools/geometry/Camera.h"

/// A point, or an image position with its disparity.
using triple = std::array<double, 3>;

constexpr triple zeros{0, 0, 0};

inline triple project(const zorv::Camera& camera, const triple& p) {
    triple image{-7, -7, -7};
    camera.project(p[0], p[1], p[2], image[0], image[1], image[2]);
    return image;
}

inline triple unproject(const zorv::Camera& camera, const triple& p) {
    triple point{-7, -7, -7};
    camera.unproject(p[0], p[1], p[2], point[0], point[1], point[2]);
    return point;
}

inline triple to_camera(const zorv::Camera& camera, triple p) {
    camera.apply_extrinsic(p[0], p[1], p[2]);
    return p;
}

inline triple to_world(const zorv::Camera& camera, triple p) {
    camera.undo_extrinsic(p[0], p[1], p[2]);
    return p;
}

/// Each of the three numbers within `tolerance`.
inline auto is_near_to(const triple& expected, double tolerance) {
    return testing::Pointwise(testing::DoubleNear(tolerance), expected);
}
