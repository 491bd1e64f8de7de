#include "zorv_tools/geometry/Camera.h"

#include <algorithm>
#include <cstddef>
#include <iostream>

#include "zorv_tools/core/rotation.h"

namespace zorv {

Camera::Camera() = default;

Camera::Camera(configuration& settings) {
    init(settings, 0);
}

Camera::Camera(const Camera& other) = default;

Camera::~Camera() = default;

// The extrinsics go by value, so a camera may be assigned to itself.
Camera& Camera::operator=(const Camera& other) {  // NOLINT(bugprone-unhandled-self-assignment)
    x_centre = other.x_centre;
    y_centre = other.y_centre;
    x_focus_pixels = other.x_focus_pixels;
    y_focus_pixels = other.y_focus_pixels;
    image_width = other.image_width;
    image_height = other.image_height;
    disp_to_dist = other.disp_to_dist;
    set_extrinsics(other.extrinsics);
    return *this;
}

void Camera::throw_cannot_unproject(const code_location& caller) {
    throw_exception_l(
        caller, "Camera::unproject() : camera uses proj mats, can't currently back project in this case.");
}

const Three_d_point Camera::voxel_widths(double x, double y, double z) const {
    double u;
    double v;
    double d;
    project(x, y, z, u, v, d);
    // For each axis the two neighbours, the one that the sum begins with first.
    const Three_d_point neighbours[3][2] = {
        {Three_d_point(u - 1, v, d, 0, 0, 0), Three_d_point(u + 1, v, d, 0, 0, 0)},
        {Three_d_point(u, v - 1, d, 0, 0, 0), Three_d_point(u, v + 1, d, 0, 0, 0)},
        {Three_d_point(u, v, d + 1, 0, 0, 0), Three_d_point(u, v, d - 1, 0, 0, 0)}};
    Three_d_point widths;
    for (int axis = 0; axis < 3; ++axis) {
        double sum = 0;
        int count = 0;
        for (const Three_d_point& neighbour : neighbours[axis]) {
            Three_d_point projected;
            project(neighbour, projected);
            if (projected.z > 0) {
                sum += projected[axis];
                ++count;
            }
        }
        // No valid neighbour makes this 0 / 0, which tells the caller that there is no width.
        widths[axis] = sum / static_cast<double>(count);
    }
    return widths;
}

void Camera::set_camera_params(double new_x_centre, double new_y_centre, double new_x_focus,
                               double new_y_focus, double new_disp_to_dist) {
    x_centre = new_x_centre;
    y_centre = new_y_centre;
    x_focus_pixels = new_x_focus;
    y_focus_pixels = new_y_focus;
    disp_to_dist = new_disp_to_dist;
}

void Camera::set_resolution(double width, double height) {
    image_width = truncate_to<int>(width);
    image_height = truncate_to<int>(height);
}

bool Camera::take_extrinsics(const std::vector<double>& values, std::size_t count) {
    extrinsics = values;
    if (values.size() != count) {
        std::cerr << "Error, extrinsic parameters at do not exist, or have an incorrect size "
                  << values.size() << std::endl;
        return false;
    }
    if (std::all_of(values.begin(), values.end(), [](double value) { return is_near(value, 0); })) {
        inverse_rotation.clear();
        rotation.clear();
        translation.clear();
        return false;
    }
    return true;
}

void Camera::set_pose(const matrix<double>& new_rotation, const double* position,
                      const code_location& caller) {
    rotation = new_rotation;
    inverse_rotation = rotation.transpose();
    const double inverse_det = inverse_rotation.det();
    const double det = rotation.det();
    if (!is_near(inverse_det, 1) || !is_near(det, 1)) {
        std::ostringstream sentence;
        sentence << "Rotation matrix (or it's inverse) didn't have determinant of 1. Determinants were "
                 << inverse_det << " and " << det;
        throw_exception_l(caller, sentence.str());
    }
    translation.assign(position, position + 3);
}

void Camera::set_extrinsics(std::vector<double> values) {
    if (!take_extrinsics(values, 6)) {
        return;
    }
    std::cerr
        << "NOTE: all previous calibation files are probably invalid, as they almost certainly include the "
           "inverse extrinsic rotations compared to the new convention"
        << std::endl;
    const std::vector<double> angles(values.begin(), values.begin() + 3);
    set_pose(euler_angles_deg_to_rot_mat(angles), values.data() + 3, ZORV_HERE);
}

void Camera::set_extrinsics_quaternion(const std::vector<double>& values) {
    if (take_extrinsics(values, 7)) {
        set_pose(quaternion_to_rot_mat(values), values.data() + 4, ZORV_HERE);
    }
}

std::ostream& operator<<(std::ostream& out, const Camera& camera) {
    return out << "camera created from specific parameters.\n"
               << "centre position=(" << camera.x_centre << "," << camera.y_centre << ")\n"
               << "focal lengths in pixels=(" << camera.x_focus_pixels << "," << camera.y_focus_pixels
               << ")\n"
               << "image size=(" << camera.image_width << "," << camera.image_height << ")\n"
               << "disp_to_dist=" << camera.disp_to_dist << std::endl;
}

}  // namespace zorv
