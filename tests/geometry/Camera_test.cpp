#include "zorv_tools/geometry/Camera.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <iostream>
#include <limits>
#include <sstream>

#include "tests/support/allocations.h"
#include "tests/support/report.h"
#include "tests/support/stream_capture.h"

namespace {

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

struct triple {
    double a = -7, b = -7, c = -7;
    bool operator==(const triple& other) const { return a == other.a && b == other.b && c == other.c; }
    bool operator!=(const triple& other) const { return !(*this == other); }
    friend std::ostream& operator<<(std::ostream& out, const triple& t) {
        return out << t.a << " " << t.b << " " << t.c;
    }
};

const triple zeros{0, 0, 0};

triple project(const Camera& camera, double x, double y, double z) {
    triple t;
    camera.project(x, y, z, t.a, t.b, t.c);
    return t;
}

triple unproject(const Camera& camera, double u, double v, double d) {
    triple t;
    camera.unproject(u, v, d, t.a, t.b, t.c);
    return t;
}

}  // namespace

TEST(CameraProject, PinholeFormulae) {
    EXPECT_EQ(project(pinhole(), 0, 0, 2), (triple{320, 160, 32}));
    EXPECT_EQ(project(pinhole(), 0.5, -0.25, 2), (triple{480, 80, 32}));
    EXPECT_EQ(project(Camera(), 1, 2, 3), zeros);
}

TEST(CameraProject, DepthMustBeAboveTheTolerance) {
    for (const double z : {0.0001, 0.0, -0.0001, -5.0, nan_value}) {
        EXPECT_EQ(project(pinhole(), 0, 0, z), zeros) << z;
    }
    EXPECT_NE(project(pinhole(), 0, 0, std::nextafter(0.0001, 1)).c, 0);
}

TEST(CameraProject, TheLimitsAreInside) {
    // u = 320 + 640 x and v = 160 + 640 y at depth 1.
    const double edge = 319.0 / 640.0;
    EXPECT_EQ(project(pinhole(), edge, 0, 1), (triple{639, 160, 64}));
    EXPECT_EQ(project(pinhole(), -0.5, -0.25, 1), (triple{0, 0, 64}));
    EXPECT_EQ(project(pinhole(), edge + 1e-9, 0, 1), zeros);
    EXPECT_EQ(project(pinhole(), -0.5 - 1e-9, 0, 1), zeros);
    EXPECT_EQ(project(pinhole(), 0, 159.0 / 640.0 + 1e-9, 1), zeros);
    EXPECT_EQ(project(pinhole(), 0, -0.25 - 1e-9, 1), zeros);
    // A position that is not a number is not refused by any limit.
    EXPECT_TRUE(std::isnan(project(pinhole(), nan_value, 0, 1).a));
}

TEST(CameraProject, WholePixelsRoundHalfDown) {
    const Camera camera = pinhole();
    struct {
        double position;
        int pixel;
    } const cases[] = {{10.5, 10}, {10.50000002, 11}, {10.49, 10}, {0, 0}, {638.9, 639}};
    for (const auto& c : cases) {
        int u = -1;
        int v = -1;
        double disparity = -1;
        camera.project((c.position - 320) / 640, 0, 1, u, v, disparity);
        EXPECT_EQ(u, c.pixel) << c.position;
        EXPECT_EQ(v, 160);
        EXPECT_EQ(disparity, 64);
    }
    int u = 5;
    int v = 5;
    double disparity = 5;
    camera.project(nan_value, 0, 1, u, v, disparity);
    EXPECT_EQ(u, std::numeric_limits<int>::min());
}

TEST(CameraProject, PointFormChangesThreeFields) {
    Three_d_point out(1, 1, 1, 4, 5, 6);
    pinhole().project(Three_d_point(0.5, -0.25, 2, 7, 8, 9), out);
    std::ostringstream text;
    text << out;
    EXPECT_EQ(text.str(), "480,80,32,6,5,4");
}

TEST(CameraUnproject, UndoesProject) {
    for (const Camera& camera : {pinhole(), turned()}) {
        // Points in front of the camera, found through it.
        for (const double u : {0.5, 100.25, 638.5}) {
            for (const double d : {0.5, 17.0, 300.0}) {
                const triple world = unproject(camera, u, 33.5, d);
                const triple image = project(camera, world.a, world.b, world.c);
                EXPECT_NEAR(image.a, u, 1e-9);
                EXPECT_NEAR(image.b, 33.5, 1e-9);
                EXPECT_NEAR(image.c, d, 1e-9);
            }
        }
    }
    EXPECT_EQ(unproject(pinhole(), 480, 80, 32), (triple{0.5, -0.25, 2}));
    Three_d_point out(1, 1, 1, 4, 0, 0);
    pinhole().unproject(Three_d_point(480, 80, 32, 0, 0, 0), out);
    EXPECT_EQ(out.z + out.extra0, 6);
}

TEST(CameraUnproject, RefusesWhatHasNoPoint) {
    const Camera camera = turned();
    const triple cases[] = {{1, 1, 0},    {1, 1, 0.0001}, {1, 1, -3},    {1, 1, nan_value},
                            {-0.1, 1, 5}, {1, -0.1, 5},   {639.1, 1, 5}, {1, 319.1, 5}};
    for (const triple& c : cases) {
        EXPECT_EQ(unproject(camera, c.a, c.b, c.c), zeros) << c;
    }
}

TEST(Camera, OrderOfArithmeticIsFixed) {
    // Digits computed by hand-written steps outside this code. They change when products are regrouped, when a
    // division becomes a multiplication by the reciprocal, or when a sum runs the other way.
    Camera camera;
    camera.set_camera_params(0.47, 0.53, 1.2, 1.4, 0.16);
    camera.set_resolution(1282, 1110);
    camera.set_extrinsics_quaternion({0.1, -0.2, 0.05, 0.9, 0.3, -0.7, 1.1});
    EXPECT_EQ(project(camera, 0.95, -0.89, 5.68),
              (triple{156.71834078355636, 150.67545072724093, 57.34174240684969}));
    EXPECT_EQ(project(camera, 0.81, -0.69, 5.58),
              (triple{102.24965809832796, 216.79950087347146, 58.86897928624905}));
    EXPECT_EQ(unproject(camera, 327.6, 442.6, 16.8),
              (triple{4.145192891915875, 1.0787428443527827, 15.433818908526984}));
    EXPECT_EQ(unproject(camera, 581.9, 43.1, 67.2),
              (triple{1.752516363035618, -1.2609223477248326, 4.656105976428959}));
    EXPECT_EQ(camera.switch_disp_to_z(17.3), 14.227976878612715);
}

TEST(CameraExtrinsics, OffsetsAreThePositionAndRotateAfterIt) {
    const stream_capture errors(std::cerr);
    Camera camera = pinhole();
    camera.set_extrinsics({90, 0, 0, 1, 2, 3});
    double x = 2;
    double y = 2;
    double z = 8;
    camera.apply_extrinsic(x, y, z);
    EXPECT_NEAR(x, 0, 1e-7);
    EXPECT_NEAR(y, 1, 1e-7);
    EXPECT_NEAR(z, 5, 1e-7);
    camera.undo_extrinsic(x, y, z);
    EXPECT_NEAR(x, 2, 1e-12);
    EXPECT_NEAR(y, 2, 1e-12);
    EXPECT_NEAR(z, 8, 1e-12);
    EXPECT_EQ(errors.text(), note);
}

TEST(CameraExtrinsics, ZerosSwitchOffAndSmallValuesDoNot) {
    stream_capture errors(std::cerr);
    Camera camera = turned();
    const std::vector<double> off{0, 0.0001, 0, -0.0001, 0, 0};
    camera.set_extrinsics(off);
    EXPECT_EQ(camera.get_extrinsics(), off);
    EXPECT_EQ(project(camera, 0.5, -0.25, 2), (triple{480, 80, 32}));
    EXPECT_EQ(errors.text(), "");
    camera.set_extrinsics({0, 0, 0, 0, 0, 0.001});
    EXPECT_EQ(project(camera, 0, 0, 2.001), project(pinhole(), 0, 0, 2.001 - 0.001));
    EXPECT_EQ(errors.text(), note);
}

TEST(CameraExtrinsics, WrongSizesKeepTheOldPose) {
    stream_capture errors(std::cerr);
    Camera camera = turned();
    const triple seen = unproject(camera, 300, 200, 40);
    const triple before = project(camera, seen.a, seen.b, seen.c);
    ASSERT_NE(before, zeros);
    camera.set_extrinsics({1, 2, 3, 4, 5});
    EXPECT_EQ(camera.get_extrinsics().size(), 5u);
    camera.set_extrinsics_quaternion({0, 0, 0, 1, 0, 0});
    EXPECT_EQ(errors.text(), size_error(5) + size_error(6));
    EXPECT_EQ(project(camera, seen.a, seen.b, seen.c), before);
}

TEST(CameraExtrinsics, Quaternions) {
    const stream_capture errors(std::cerr);
    Camera camera = pinhole();
    camera.set_extrinsics_quaternion({0, 0, 3, 3, 1, 2, 3});
    double x = 2;
    double y = 2;
    double z = 8;
    camera.apply_extrinsic(x, y, z);
    EXPECT_NEAR(x, 0, 1e-15);
    EXPECT_NEAR(y, 1, 1e-15);
    EXPECT_NEAR(z, 5, 1e-15);
    camera.set_extrinsics_quaternion({0, 0, 0, 1, 0, 0, 0});
    EXPECT_EQ(project(camera, 0.5, -0.25, 2), (triple{480, 80, 32}));
    camera.set_extrinsics_quaternion(std::vector<double>(7, 0.0));
    EXPECT_EQ(project(camera, 0.5, -0.25, 2), (triple{480, 80, 32}));
    EXPECT_EQ(errors.text(), "");
}

TEST(CameraExtrinsics, AMatrixThatIsNoRotationThrows) {
    const stream_capture errors(std::cerr);
    Camera camera = turned();
    // The sign of a NaN is the processor's choice.
    const auto expect_report = [&](const char* setter, const std::function<void()>& action) {
        const auto determinants = [](const char* value) {
            return std::string(
                       "Rotation matrix (or it's inverse) didn't have determinant of 1. Determinants were ") +
                   value + " and " + value;
        };
        EXPECT_TRUE(throws_report(action, "Camera", setter, determinants("nan")) ||
                    throws_report(action, "Camera", setter, determinants("-nan")));
    };
    expect_report("Camera::set_extrinsics(", [&] { camera.set_extrinsics({nan_value, 0, 0, 1, 2, 3}); });
    expect_report("set_extrinsics_quaternion(", [&] {
        camera.set_extrinsics_quaternion({0, 0, 0, 0, 1, 2, 3});
    });
    EXPECT_EQ(camera.get_extrinsics().back(), 3);
    // The new rotation is in force, so no point has a position any more.
    double x = 1;
    double y = 1;
    double z = 1;
    camera.apply_extrinsic(x, y, z);
    EXPECT_TRUE(std::isnan(x));

    // Without a position from before, a camera whose rotation failed has no extrinsics at all.
    Camera fresh = pinhole();
    EXPECT_THROW(fresh.set_extrinsics_quaternion({0, 0, 0, 0, 1, 2, 3}), zorv::exception_l);
    EXPECT_EQ(project(fresh, 0.5, -0.25, 2), (triple{480, 80, 32}));
}

TEST(Camera, CopyIsFullAndAssignmentIsPartial) {
    const Camera camera = turned();
    const triple seen = unproject(camera, 300, 200, 40);
    const triple position = project(camera, seen.a, seen.b, seen.c);
    ASSERT_NE(position, zeros);
    stream_capture errors(std::cerr);
    const Camera copy(camera);
    EXPECT_EQ(project(copy, seen.a, seen.b, seen.c), position);
    EXPECT_EQ(errors.text(), "");

    Camera assigned;
    assigned = camera;
    EXPECT_EQ(project(assigned, seen.a, seen.b, seen.c), position);
    EXPECT_EQ(errors.text(), note);
    errors.clear();
    assigned = pinhole();
    EXPECT_EQ(errors.text(), size_error(0));
    EXPECT_EQ(project(assigned, seen.a, seen.b, seen.c), position);
    EXPECT_TRUE(assigned.get_extrinsics().empty());
}

TEST(Camera, ValuesAndText) {
    Camera camera;
    camera.set_camera_params(0.25, 0.75, 1.5, 2.5, 0.125);
    camera.set_resolution(640.9, -3.9);
    EXPECT_EQ(camera.get_x_centre() + camera.get_y_centre(), 1);
    EXPECT_EQ(camera.get_x_focus_pixels(), 1.5);
    EXPECT_EQ(camera.get_y_focus_pixels(), 2.5);
    EXPECT_EQ(camera.get_image_width(), 640);
    EXPECT_EQ(camera.get_image_height(), -3);
    EXPECT_EQ(camera.get_baseline(), 0.125);
    EXPECT_EQ(camera.switch_disp_to_z(2), 60);
    std::ostringstream out;
    out << camera;
    EXPECT_EQ(out.str(),
              "camera created from specific parameters.\ncentre position=(0.25,0.75)\n"
              "focal lengths in pixels=(1.5,2.5)\nimage size=(640,-3)\ndisp_to_dist=0.125\n");
    camera.set_resolution(nan_value, 1e300);
    EXPECT_EQ(camera.get_image_width(), std::numeric_limits<int>::min());
    // Its limits wrap; nothing about that is undefined.
    project(camera, 1, 1, 1);
}

TEST(Camera, VoxelWidthsProjectTwice) {
    // Of low resolution, so that image positions are points in front of the camera.
    Camera small;
    small.set_camera_params(0.5, 0.5, 1, 1, 4);
    small.set_resolution(8, 8);
    struct {
        Camera camera;
        triple point;
        triple expected;
    } const cases[] = {
        // The neighbours of (320, 160, 32) all lie far outside as world points.
        {pinhole(), {0, 0, 2}, {nan_value, nan_value, nan_value}},
        // Those of (4, 4, 16) are all inside.
        {small, {0, 0, 2}, {6, 6, (32.0 / 17 + 32.0 / 15) / 2}},
        // Of (6, 4, 16), only the left and the nearer one; of (4, 7, 16), only the upper one.
        {small, {0.5, 0, 2}, {6.5, 6, 32.0 / 17}},
        {small, {0, 0.75, 2}, {nan_value, 7, nan_value}},
    };
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    for (const auto& c : cases) {
        const Three_d_point widths = c.camera.voxel_widths(c.point.a, c.point.b, c.point.c);
        EXPECT_TRUE(same(widths.x, c.expected.a) && same(widths.y, c.expected.b) &&
                    same(widths.z, c.expected.c))
            << widths << " at " << c.point;
    }
}

TEST(Camera, InnerLoopsAllocateNothing) {
    const Camera camera = turned();
    EXPECT_EQ(count_allocations([&] {
                  for (int i = 0; i < 100; ++i) {
                      triple t = unproject(camera, i, i, 10);
                      project(camera, t.a, t.b, t.c);
                      int u;
                      int v;
                      camera.project(t.a, t.b, t.c, u, v, t.c);
                      camera.apply_extrinsic(t.a, t.b, t.c);
                      camera.undo_extrinsic(t.a, t.b, t.c);
                  }
              }),
              0u);
    EXPECT_GT(count_allocations([&] { Camera copy(camera); }), 0u);
}
