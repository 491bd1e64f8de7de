#pragma once

/// @file
/// The camera model.
///
/// World to camera: p_camera = R (p_world - t), where t is the camera's position in the world. The camera frame
/// has z along the optical axis, positive in front of the camera. Image positions count from the middle of pixel
/// (0, 0), u to the right and v down; those from 0 to width - 1 and 0 to height - 1, these included, are inside.
/// Disparity is in pixels, larger for nearer points.
///
/// The principal point and the focal lengths are given in image widths and image heights, also where a name says
/// pixels. World lengths are in whatever unit the baseline and the offsets share.
///
/// An operation on a point that has no valid result gives zeros: failure shows in a disparity of 0.

#include <ostream>
#include <vector>

#include "zorv_tools/core/double_pair.h"
#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/export.h"
#include "zorv_tools/core/matrix.h"
#include "zorv_tools/core/near.h"
#include "zorv_tools/core/truncate.h"
#include "zorv_tools/geometry/Three_d_point.h"

namespace zorv {

class configuration;

/// A pinhole camera, or a camera given by a projection matrix, which can only project. Only `init` makes the
/// latter, and nothing turns it back.
///
/// With (x, y, z) in the camera's frame, W and H the image's size, (fx, fy) the focal lengths, (cx, cy) the
/// principal point and B the baseline, a pinhole camera projects to
///   u = (fx x / z + cx) W, v = (fy y / z + cy) H, disparity = B fx W / z.
/// A projection-matrix camera projects (x, y, z, 1) to (a, b, c) = P S (x, y, z, 1), P being its 3 by 4 projection
/// matrix and S its 4 by 4 camera-space transform, and then to
///   u = a / c - x offset, v = b / c - y offset.
/// Its matrices have intrinsics of their own: the principal point, the focal lengths and the baseline play no part.
///
/// The const operations change nothing and allocate nothing, so that they may run on one camera in several
/// threads. There are no move operations: a temporary is copied like any other camera.
class ZORV_TOOLS_EXPORT Camera {
public:
    /// All zero, no extrinsics, pinhole: it projects every point to three zeros.
    Camera();
    /// The camera that `settings` describes at index 0, with the errors of `init`.
    explicit Camera(configuration& settings);
    /// A copy of everything, unlike the assignment. Nothing is reported.
    Camera(const Camera& other);
    virtual ~Camera();

    /// Takes the intrinsics and passes the other's extrinsics to `set_extrinsics`, nothing else: what belongs to
    /// a projection-matrix camera stays as it was, which is meant. Extrinsics that are not six numbers (a new camera,
    /// or one set by a quaternion) are therefore reported on the standard error stream and leave the rotation.
    Camera& operator=(const Camera& other);

    /// Projects a world point. A pinhole camera gives the position and the disparity; a projection-matrix camera
    /// gives 1.0 in place of the disparity. A result outside the image gives three zeros, as does, for a pinhole
    /// camera, a depth in its frame of 0.0001 or less. A projection-matrix camera refuses a c of exactly 0 alone, so
    /// that points behind it are projected too. A position that comes out as not a number counts as inside.
    void project(double x, double y, double z, double& u, double& v, double& disparity) const;
    /// The same with the position rounded to whole pixels; exactly half way goes down.
    void project(double x, double y, double z, int& u, int& v, double& disparity) const;
    /// The same on a point, whose x, y and z become u, v and disparity; the other fields of `out` stay.
    void project(Three_d_point point, Three_d_point& out) const;

    /// The world point at an image position with a disparity; zeros where the disparity is not above 0.0001 or
    /// the position is outside the image. Throws `exception_l`, with the outputs untouched, for a projection-matrix
    /// camera.
    void unproject(double u, double v, double disparity, double& x, double& y, double& z) const;
    /// The same on a point, whose x, y and z are u, v and disparity; the other fields of `out` stay.
    void unproject(Three_d_point point, Three_d_point& out) const;

    /// World to camera, in place; nothing happens while no extrinsics are set.
    void apply_extrinsic(double& x, double& y, double& z) const;
    /// Camera to world, in place; nothing happens while no extrinsics are set.
    void undo_extrinsic(double& x, double& y, double& z) const;

    /// Depth along the optical axis from disparity and, by the same formula, disparity from depth: W fx B over the
    /// value. No test is made: 0 divides by zero, and the camera's kind is not looked at.
    double switch_disp_to_z(const double& value) const;

    /// Projects the world point, projects the six neighbours of the result (in u, v and disparity) in turn as if
    /// they were world points, and averages of each pair the coordinate of its own axis over the valid ones, which
    /// stand in x, y and z of the result. NaN where no neighbour of an axis is valid. Projecting a second time, rather
    /// than back, is meant.
    const Three_d_point voxel_widths(double x, double y, double z) const;

    /// Stores the principal point and the focal lengths, in image widths and heights, and the baseline, in world
    /// units, as they come.
    void set_camera_params(double x_centre, double y_centre, double x_focus_pixels, double y_focus_pixels,
                           double disp_to_dist);
    /// Width and height in pixels, truncated toward zero. A projection-matrix camera gets no size from its own keys:
    /// until it is given one here, every point lies outside its image.
    void set_resolution(double width, double height);
    /// Angles about z (roll), x (pitch) and y (yaw) in degrees, clockwise camera rotations positive, then the
    /// camera's position x, y, z. Six numbers within 0.0001 of 0 switch the extrinsics off; another count than six is
    /// reported on the standard error stream and changes nothing but what `get_extrinsics` returns. Each use otherwise
    /// writes a note about old calibrations to that stream. Throws `exception_l` where the rotation is none (angles
    /// that are not finite); the rotation is then the new one and the position still the old one.
    void set_extrinsics(std::vector<double> values);
    /// The same from a quaternion x, y, z, w (of any length but 0) and a position: seven numbers, and no note.
    void set_extrinsics_quaternion(const std::vector<double>& values);

    /// Fills the camera from the entries at `index` of the camera keys in the store, which it copies:
    /// - "bumblebee_params": principal point, focal lengths, image size and baseline;
    /// - "camera_proj_mats", which makes it a projection-matrix camera, with "camera_space_transform" and
    ///   "projection_offsets" (in pixels, truncated toward zero), both of which must then have an entry too;
    /// - the extrinsics, as told at `create_camera_vector`.
    ///
    /// Fields that nothing in the store names stay as they were. An index at which the store has neither of the first
    /// two is a line on the standard error stream, and the extrinsics are set all the same.
    ///
    /// Throws `std::out_of_range` for an entry that is too short: of "bumblebee_params" before any field has changed,
    /// of a matrix with the rest of it zero. Throws `exception_l` where a projection-matrix camera has no transform or
    /// no two offsets, with the matrices as far as they have been filled, and as `set_extrinsics` does.
    void init(configuration& settings, unsigned int index);

    /// @{
    /// The principal point, in image widths across and image heights down.
    double get_x_centre() const { return x_centre; }
    double get_y_centre() const { return y_centre; }
    /// @}
    /// @{
    /// The focal lengths, in image widths across and image heights down whatever the names say.
    double get_x_focus_pixels() const { return x_focus_pixels; }
    double get_y_focus_pixels() const { return y_focus_pixels; }
    /// @}
    /// @{
    /// The image's size in pixels; 0 until it is set.
    int get_image_width() const { return image_width; }
    int get_image_height() const { return image_height; }
    /// @}
    /// The stereo baseline, in world units.
    double get_baseline() const { return disp_to_dist; }
    /// The vector last passed to a setter of the extrinsics, whatever its size and form.
    const std::vector<double> get_extrinsics() const { return extrinsics; }

    friend ZORV_TOOLS_EXPORT std::ostream& operator<<(std::ostream& out, const Camera& camera);

private:
    bool inside_image(double u, double v) const;
    void project_pinhole(double x, double y, double z, double& u, double& v, double& disparity) const;
    void project_by_matrix(double x, double y, double z, double& u, double& v, double& valid) const;
    [[noreturn]] static void throw_cannot_unproject(const code_location& caller);

    /// The step that the two setters of the extrinsics share before the rotation: false where it ends there.
    bool take_extrinsics(const std::vector<double>& values, std::size_t count);
    void set_pose(const matrix<double>& new_rotation, const double* position, const code_location& caller);

    /// Brings the two copies by columns in step with their matrices.
    void copy_columns();
    void init_projection(configuration& settings, unsigned int index, const std::vector<double>& entry,
                         const code_location& caller);

    double x_centre = 0;
    double y_centre = 0;
    double x_focus_pixels = 0;
    double y_focus_pixels = 0;
    int image_width = 0;
    int image_height = 0;
    double disp_to_dist = 0;
    /// Empty, or the camera's position in the world.
    std::vector<double> translation;
    /// Both empty, or 3 by 3 and each the transpose of the other.
    matrix<double> inverse_rotation;
    matrix<double> rotation;
    std::vector<double> extrinsics;
    /// 3 by 4 once set.
    matrix<double> proj_mat;
    /// 4 by 4 once set; applied before `proj_mat`.
    matrix<double> camera_space_transform;
    /// Pixels subtracted from a projection by matrix.
    int x_offset = 0;
    int y_offset = 0;
    bool uses_proj_mats = false;
    /// `proj_mat` and `camera_space_transform` again by columns, the former with a fourth row of zeros, so that
    /// a projection can work on two sums at once.
    double proj_mat_columns[4][4] = {};
    double camera_space_transform_columns[4][4] = {};
};

/// Writes five lines, a fixed first one and the intrinsics, and flushes the stream. Nothing of the extrinsics or the
/// projection matrices. The numbers have the stream's format.
ZORV_TOOLS_EXPORT std::ostream& operator<<(std::ostream& out, const Camera& camera);

/// Makes one camera for each entry of "bumblebee_params" (pinhole) or "camera_proj_mats" (projection matrix) in
/// the store, by `Camera::init`; none where the store has neither. Throws `exception_l`, with `cameras` untouched,
/// where both are set. Elements that are already in `cameras` are filled over their old contents, and surplus ones go.
/// What `Camera::init` throws leaves the cameras before the one at fault filled.
///
/// The extrinsics of camera i are entry i of "extrinsic_camera_params", then, beyond the end of that list, the
/// entries of "extrinsic_camera_params_q" in order. Where both lists have an entry i, both are applied and the
/// quaternion wins. A camera beyond the end of both has none, without a report.
ZORV_TOOLS_EXPORT void create_camera_vector(std::vector<Camera>& cameras, configuration& settings);

namespace internal {

/// Matrix times column vector for a shape known at compile time; each sum starts at 0.0 and runs upward. The
/// elements of a matrix are one block, so that the rows need not be looked up one by one.
template <int Rows, int Cols>
inline void multiply(const matrix<double>& m, const double (&in)[Cols], double (&out)[Rows]) {
    const double* const elements = m[0];
    for (int i = 0; i < Rows; ++i) {
        double sum = 0.0;
        for (int j = 0; j < Cols; ++j) {
            sum += elements[i * Cols + j] * in[j];
        }
        out[i] = sum;
    }
}

/// The same for a matrix given by columns, two rows at a time. Compilers do not find that out by themselves.
inline void multiply(const double (&columns)[4][4], const double (&in)[4], double (&out)[4]) {
    for (int i = 0; i < 4; i += 2) {
        double_pair sums = {};
        for (int j = 0; j < 4; ++j) {
            sums = sums + pair_at(&columns[j][i]) * in[j];
        }
        out[i] = sums[0];
        out[i + 1] = sums[1];
    }
}

inline bool is_3_by_3(const matrix<double>& m) {
    return m.get_dim1() == 3 && m.get_dim2() == 3;
}

}  // namespace internal

inline void Camera::apply_extrinsic(double& x, double& y, double& z) const {
    if (!internal::is_3_by_3(rotation) || translation.size() != 3) {
        return;
    }
    const double moved[3] = {x - translation[0], y - translation[1], z - translation[2]};
    double turned[3];
    internal::multiply(rotation, moved, turned);
    x = turned[0];
    y = turned[1];
    z = turned[2];
}

inline void Camera::undo_extrinsic(double& x, double& y, double& z) const {
    if (!internal::is_3_by_3(inverse_rotation) || translation.size() != 3) {
        return;
    }
    const double point[3] = {x, y, z};
    double turned[3];
    internal::multiply(inverse_rotation, point, turned);
    x = turned[0] + translation[0];
    y = turned[1] + translation[1];
    z = turned[2] + translation[2];
}

inline bool Camera::inside_image(double u, double v) const {
    // The limits are integers that may wrap. Written as a refusal: a position that is not a number passes.
    const auto last_column = static_cast<int>(static_cast<unsigned int>(image_width) - 1u);
    const auto last_row = static_cast<int>(static_cast<unsigned int>(image_height) - 1u);
    return !(u < 0 || v < 0 || u > last_column || v > last_row);
}

inline void Camera::project_pinhole(double x, double y, double z, double& u, double& v,
                                    double& disparity) const {
    apply_extrinsic(x, y, z);
    if (!is_near(z, 0) && z > 0) {
        const double width = image_width;
        const double height = image_height;
        const double column = (x * x_focus_pixels / z + x_centre) * width;
        const double row = (y * y_focus_pixels / z + y_centre) * height;
        if (inside_image(column, row)) {
            disparity = disp_to_dist * x_focus_pixels * width / z;
            u = column;
            v = row;
            return;
        }
    }
    u = 0;
    v = 0;
    disparity = 0;
}

inline void Camera::project_by_matrix(double x, double y, double z, double& u, double& v,
                                      double& valid) const {
    apply_extrinsic(x, y, z);
    const double point[4] = {x, y, z, 1};
    double transformed[4];
    internal::multiply(camera_space_transform_columns, point, transformed);
    double image[4];
    internal::multiply(proj_mat_columns, transformed, image);
    if (image[2] != 0.0) {
        const double column = image[0] / image[2] - x_offset;
        const double row = image[1] / image[2] - y_offset;
        if (inside_image(column, row)) {
            u = column;
            v = row;
            valid = 1.0;
            return;
        }
    }
    u = 0;
    v = 0;
    valid = 0;
}

inline void Camera::project(double x, double y, double z, double& u, double& v, double& disparity) const {
    if (uses_proj_mats) {
        project_by_matrix(x, y, z, u, v, disparity);
    } else {
        project_pinhole(x, y, z, u, v, disparity);
    }
}

inline void Camera::project(double x, double y, double z, int& u, int& v, double& disparity) const {
    // Just under one half, so that a position half way between two pixels goes down.
    constexpr double half = 0.49999999;
    double column;
    double row;
    project(x, y, z, column, row, disparity);
    u = truncate_to<int>(column + half);
    v = truncate_to<int>(row + half);
}

inline void Camera::project(Three_d_point point, Three_d_point& out) const {
    project(point.x, point.y, point.z, out.x, out.y, out.z);
}

inline void Camera::unproject(double u, double v, double disparity, double& x, double& y, double& z) const {
    if (uses_proj_mats) {
        throw_cannot_unproject(ZORV_HERE);
    }
    if (is_near(disparity, 0) || !(disparity > 0) || !inside_image(u, v)) {
        x = 0;
        y = 0;
        z = 0;
        return;
    }
    const double width = image_width;
    const double height = image_height;
    const double depth = disp_to_dist * x_focus_pixels * width / disparity;
    double point[3] = {(u / width - x_centre) / x_focus_pixels * depth,
                       (v / height - y_centre) / y_focus_pixels * depth, depth};
    undo_extrinsic(point[0], point[1], point[2]);
    x = point[0];
    y = point[1];
    z = point[2];
}

inline void Camera::unproject(Three_d_point point, Three_d_point& out) const {
    unproject(point.x, point.y, point.z, out.x, out.y, out.z);
}

inline double Camera::switch_disp_to_z(const double& value) const {
    return image_width * x_focus_pixels * disp_to_dist / value;
}

}  // namespace zorv
