#include "zorv_tools/geometry/Camera.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <iostream>
#include <limits>
#include <sstream>

#include "tests/geometry/positions.h"
#include "tests/support/allocations.h"
#include "tests/support/stream_capture.h"

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::NanSensitiveDoubleEq;
using zorv::Camera;
using zorv::Three_d_point;

const double nan_value = std::nan("");

const std::string note =
    "NOTE: all previous calibation files are probably invalid, as they almost certainly include the inverse "
    "extrinsic rotations compared to the new convention\n";

std::string size_error(int size) {
    return "Error, extrinsic parameters at do not exist, or have an incorrect size " + std::to_string(size) +
           "\n";
}

/// 640 by 320, centre in the middle, focal length 640 pixels both ways, baseline 0.1.
Camera pinhole() {
    Camera camera;
    camera.set_camera_params(0.5, 0.5, 1, 2, 0.1);
    camera.set_resolution(640, 320);
    return camera;
}

Camera turned() {
    const stream_capture ignored(std::cerr);
    Camera camera = pinhole();
    camera.set_extrinsics({10, -20, 30, 0.5, -1, 2});
    return camera;
}

template <class T>
std::string text_of(const T& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

}  // namespace

TEST(CameraProject, PinholePositions) {
    // At depth 1, u = 320 + 640 x and v = 160 + 640 y.
    const double right = 319.0 / 640.0;
    const double bottom = 159.0 / 640.0;
    const struct {
        const char* what;
        triple point, image;
    } cases[] = {
        {"axis", {0, 0, 2}, {320, 160, 32}},
        {"right and up", {0.5, -0.25, 2}, {480, 80, 32}},
        {"first column and row", {-0.5, -0.25, 1}, {0, 0, 64}},
        {"last column and row", {right, bottom, 1}, {639, 319, 64}},
        {"left of the image", {-0.5 - 1e-9, 0, 1}, zeros},
        {"right of the image", {right + 1e-9, 0, 1}, zeros},
        {"above the image", {0, -0.25 - 1e-9, 1}, zeros},
        {"below the image", {0, bottom + 1e-9, 1}, zeros},
        {"at the tolerance", {0, 0, 0.0001}, zeros},
        {"in the camera", {0, 0, 0}, zeros},
        {"behind", {0, 0, -5}, zeros},
        {"no depth", {0, 0, nan_value}, zeros},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(project(pinhole(), c.point), c.image) << c.what;
    }
    EXPECT_NE(project(pinhole(), {0, 0, std::nextafter(0.0001, 1)})[2], 0);
    // A position that is not a number is not refused by any limit.
    EXPECT_TRUE(std::isnan(project(pinhole(), {nan_value, 0, 1})[0]));
}

TEST(CameraProject, WholePixelsRoundHalfDown) {
    const struct {
        double position;
        int pixel;
    } cases[] = {{10.5, 10}, {10.50000002, 11}, {10.49, 10},
                 {0, 0},     {318.9, 319},      {nan_value, std::numeric_limits<int>::min()}};
    for (const auto& c : cases) {
        int u = -1;
        int v = -1;
        double disparity = -1;
        pinhole().project((c.position - 320) / 640, (c.position - 160) / 640, 1, u, v, disparity);
        EXPECT_EQ(u, c.pixel) << c.position;
        EXPECT_EQ(v, c.pixel) << c.position;
        EXPECT_EQ(disparity, 64);
    }
}

TEST(Camera, PointFormsChangeThreeFields) {
    Three_d_point out(1, 1, 1, 4, 5, 6);
    pinhole().project(Three_d_point(0.5, -0.25, 2, 7, 8, 9), out);
    EXPECT_EQ(text_of(out), "480,80,32,6,5,4");
    pinhole().unproject(out, out);
    EXPECT_EQ(text_of(out), "0.5,-0.25,2,6,5,4");
}

TEST(CameraUnproject, RefusesWhatHasNoPoint) {
    const triple cases[] = {{1, 1, 0},    {1, 1, 0.0001}, {1, 1, -3},    {1, 1, nan_value},
                            {-0.1, 1, 5}, {1, -0.1, 5},   {639.1, 1, 5}, {1, 319.1, 5}};
    for (const triple& c : cases) {
        EXPECT_EQ(unproject(turned(), c), zeros) << testing::PrintToString(c);
    }
}

TEST(Camera, OrderOfArithmeticIsFixed) {
    // Digits computed by hand-written steps outside this code. They change when products are regrouped, when a
    // division becomes a multiplication by the reciprocal, or when a sum runs the other way.
    Camera camera;
    camera.set_camera_params(0.47, 0.53, 1.2, 1.4, 0.16);
    camera.set_resolution(1282, 1110);
    camera.set_extrinsics_quaternion({0.1, -0.2, 0.05, 0.9, 0.3, -0.7, 1.1});
    EXPECT_EQ(project(camera, {1.57, -1.54, 8.63}),
              (triple{212.9799201925252, 39.53985437192772, 34.93415060575518}));
    EXPECT_EQ(unproject(camera, {1218.2, 458.2, 64.1}),
              (triple{3.313968793060268, -0.5314423730267996, 3.945721083609167}));
    EXPECT_EQ(camera.switch_disp_to_z(299.6), 0.8215754339118824);
}

TEST(CameraExtrinsics, OffsetsAreThePositionAndRotateAfterIt) {
    const stream_capture errors(std::cerr);
    Camera by_angles = pinhole();
    by_angles.set_extrinsics({90, 0, 0, 1, 2, 3});
    EXPECT_EQ(errors.text(), note);
    Camera by_quaternion = pinhole();
    by_quaternion.set_extrinsics_quaternion({0, 0, 3, 3, 1, 2, 3});
    EXPECT_EQ(errors.text(), note);
    for (const Camera& camera : {by_angles, by_quaternion}) {
        EXPECT_THAT(to_camera(camera, {2, 2, 8}), is_near_to({0, 1, 5}, 1e-7));
        EXPECT_THAT(to_world(camera, to_camera(camera, {2, 2, 8})), is_near_to({2, 2, 8}, 1e-12));
    }
}

TEST(CameraExtrinsics, ZerosSwitchOffAndSmallValuesDoNot) {
    stream_capture errors(std::cerr);
    const triple point{0.5, -0.25, 2};
    Camera camera = turned();
    const std::vector<double> off{0, 0.0001, 0, -0.0001, 0, 0};
    camera.set_extrinsics(off);
    EXPECT_EQ(camera.get_extrinsics(), off);
    EXPECT_EQ(to_camera(camera, point), point);
    EXPECT_EQ(to_world(camera, point), point);
    camera.set_extrinsics_quaternion({0, 0, 0, 1, 0, 0, 1});
    EXPECT_EQ(to_camera(camera, point), (triple{0.5, -0.25, 1}));
    camera.set_extrinsics_quaternion(std::vector<double>(7, 0.0));
    EXPECT_EQ(to_camera(camera, point), point);
    EXPECT_EQ(errors.text(), "");
    camera.set_extrinsics({0, 0, 0, 0, 0, 0.001});
    EXPECT_EQ(to_camera(camera, point), (triple{0.5, -0.25, 2 - 0.001}));
    EXPECT_EQ(errors.text(), note);
}

TEST(CameraExtrinsics, WrongSizesKeepTheOldPose) {
    const stream_capture errors(std::cerr);
    Camera camera = turned();
    const triple before = to_camera(camera, {1, 2, 3});
    camera.set_extrinsics({1, 2, 3, 4, 5});
    EXPECT_EQ(camera.get_extrinsics().size(), 5u);
    camera.set_extrinsics_quaternion({0, 0, 0, 1, 0, 0});
    EXPECT_EQ(errors.text(), size_error(5) + size_error(6));
    EXPECT_EQ(to_camera(camera, {1, 2, 3}), before);
}

TEST(CameraExtrinsics, AMatrixThatIsNoRotationThrows) {
    const stream_capture errors(std::cerr);
    Camera camera = turned();
    const auto by_angles = [&] { camera.set_extrinsics({nan_value, 0, 0, 1, 2, 3}); };
    const auto by_quaternion = [&] { camera.set_extrinsics_quaternion({0, 0, 0, 0, 1, 2, 3}); };
    const std::string sentence =
        "\nDetails: Rotation matrix (or it's inverse) didn't have determinant of 1. Determinants were ";
    // The sign of a NaN is the processor's choice.
    const auto report = AllOf(HasSubstr(sentence), ContainsRegex("were -?nan and -?nan\n$"));
    EXPECT_THAT(by_angles, testing::ThrowsMessage<zorv::exception_l>(
                               AllOf(HasSubstr("Camera::set_extrinsics("), report)));
    EXPECT_THAT(by_quaternion, testing::ThrowsMessage<zorv::exception_l>(
                                   AllOf(HasSubstr("Camera::set_extrinsics_quaternion("), report)));
    EXPECT_EQ(camera.get_extrinsics().back(), 3);
    // The new rotation is in force, with the old position, so no point has a position any more.
    EXPECT_TRUE(std::isnan(to_camera(camera, {1, 1, 1})[0]));

    // Where the extrinsics were off, there is no old position, and they stay off.
    camera.set_extrinsics(std::vector<double>(6, 0.0));
    EXPECT_THROW(by_quaternion(), zorv::exception_l);
    EXPECT_EQ(to_camera(camera, {1, 1, 1}), (triple{1, 1, 1}));
}

TEST(Camera, CopyIsFullAndAssignmentIsPartial) {
    const Camera camera = turned();
    const triple point = unproject(camera, {300, 200, 40});
    const triple image = project(camera, point);
    ASSERT_NE(image, zeros);
    stream_capture errors(std::cerr);
    EXPECT_EQ(project(Camera(camera), point), image);
    EXPECT_EQ(errors.text(), "");

    Camera assigned;
    assigned = camera;
    EXPECT_EQ(project(assigned, point), image);
    EXPECT_EQ(errors.text(), note);
    errors.clear();
    assigned = pinhole();
    EXPECT_EQ(errors.text(), size_error(0));
    EXPECT_EQ(project(assigned, point), image);
    EXPECT_TRUE(assigned.get_extrinsics().empty());
}

TEST(Camera, ValuesAndText) {
    Camera camera;
    EXPECT_EQ(text_of(camera),
              "camera created from specific parameters.\ncentre position=(0,0)\n"
              "focal lengths in pixels=(0,0)\nimage size=(0,0)\ndisp_to_dist=0\n");
    EXPECT_EQ(project(camera, {1, 2, 3}), zeros);
    camera.set_camera_params(0.25, 0.75, 1.5, 2.5, 0.125);
    camera.set_resolution(640.9, -3.1);
    const std::vector<double> values{camera.get_x_centre(), camera.get_y_centre(),
                                     camera.get_x_focus_pixels(), camera.get_y_focus_pixels(),
                                     camera.get_baseline()};
    EXPECT_EQ(values, (std::vector<double>{0.25, 0.75, 1.5, 2.5, 0.125}));
    EXPECT_EQ(camera.switch_disp_to_z(2), 60);
    EXPECT_EQ(text_of(camera),
              "camera created from specific parameters.\ncentre position=(0.25,0.75)\n"
              "focal lengths in pixels=(1.5,2.5)\nimage size=(640,-3)\ndisp_to_dist=0.125\n");
    camera.set_resolution(nan_value, 100.9);
    EXPECT_EQ(camera.get_image_width(), std::numeric_limits<int>::min());
    EXPECT_EQ(camera.get_image_height(), 100);
    // The limit of this width wraps to the largest integer.
    EXPECT_EQ(project(camera, {-0.5, 0, 1})[0], std::ldexp(0.5, 31));
}

TEST(Camera, VoxelWidthsProjectTwice) {
    // Of low resolution, so that image positions are points in front of the camera.
    Camera small;
    small.set_camera_params(0.5, 0.5, 1, 1, 4);
    small.set_resolution(8, 8);
    const struct {
        Camera camera;
        triple point, expected;
    } cases[] = {
        // The neighbours of (320, 160, 32) all lie far outside as world points.
        {pinhole(), {0, 0, 2}, {nan_value, nan_value, nan_value}},
        // Those of (4, 4, 16) are all inside.
        {small, {0, 0, 2}, {6, 6, (32.0 / 17 + 32.0 / 15) / 2}},
        // Of (6, 4, 16), only the left and the nearer one; of (4, 7, 16), only the upper one.
        {small, {0.5, 0, 2}, {6.5, 6, 32.0 / 17}},
        {small, {0, 0.75, 2}, {nan_value, 7, nan_value}},
    };
    for (const auto& c : cases) {
        const Three_d_point widths = c.camera.voxel_widths(c.point[0], c.point[1], c.point[2]);
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_THAT(widths[axis], NanSensitiveDoubleEq(c.expected[static_cast<std::size_t>(axis)]))
                << "axis " << axis << " at " << testing::PrintToString(c.point);
        }
    }
}

TEST(Camera, InnerLoopsAllocateNothing) {
    const Camera camera = turned();
    EXPECT_EQ(count_allocations([&] {
                  triple point = unproject(camera, {50, 60, 10});
                  EXPECT_NE(project(camera, to_world(camera, to_camera(camera, point))), zeros);
                  int u;
                  int v;
                  camera.project(point[0], point[1], point[2], u, v, point[2]);
              }),
              0u);
    EXPECT_GT(count_allocations([&] { Camera copy(camera); }), 0u);
}
