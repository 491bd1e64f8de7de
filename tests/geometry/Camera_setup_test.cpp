#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "tests/support/allocations.h"
#include "tests/support/report.h"
#include "tests/support/stream_capture.h"
#include "zorv_tools/config/configuration.h"
#include "zorv_tools/geometry/Camera.h"

namespace {

using zorv::Camera;
using zorv::configuration;
using zorv::create_camera_vector;

const std::string pinhole = "0.5|0.5|1|1|100|100|0.5";
const std::string identity_projection = "1|0|0|0|0|1|0|0|0|0|1|0";
const std::string identity_transform = "1|0|0|0|0|1|0|0|0|0|1|0|0|0|0|1";

using lines = std::vector<std::pair<std::string, std::string>>;

/// A store that holds these lines; what they write to the standard error stream is dropped.
class store : public configuration {
public:
    explicit store(const lines& settings) {
        const stream_capture ignored(std::cerr);
        for (const auto& [key, value] : settings) {
            set_param(key, value);
        }
    }
};

/// The position of the camera: what its frame has in its origin.
std::vector<double> position(const Camera& camera) {
    std::vector<double> p(3, 0.0);
    camera.undo_extrinsic(p[0], p[1], p[2]);
    return p;
}

std::vector<double> image(const Camera& camera, double x, double y, double z) {
    std::vector<double> result(3);
    camera.project(x, y, z, result[0], result[1], result[2]);
    return result;
}

const std::vector<double> zeros(3, 0.0);

int count(const std::string& text, const std::string& piece) {
    int found = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
        ++found;
    }
    return found;
}

}  // namespace

TEST(CameraVector, HasOneCameraForEachEntry) {
    std::vector<Camera> cameras(5);
    stream_capture errors(std::cerr);
    store none(lines{});
    create_camera_vector(cameras, none);
    EXPECT_TRUE(cameras.empty());

    store two(lines{{"bumblebee_params", pinhole}, {"bumblebee_params", "0.25|0.5|2|3|640.9|480|0.125"}});
    create_camera_vector(cameras, two);
    ASSERT_EQ(cameras.size(), 2u);
    EXPECT_EQ(cameras[1].get_x_centre(), 0.25);
    EXPECT_EQ(cameras[1].get_x_focus_pixels(), 2);
    EXPECT_EQ(cameras[1].get_y_focus_pixels(), 3);
    EXPECT_EQ(cameras[1].get_image_width(), 640);
    EXPECT_EQ(cameras[1].get_image_height(), 480);
    EXPECT_EQ(cameras[1].get_baseline(), 0.125);
    EXPECT_EQ(errors.text(), "");
}

TEST(CameraVector, FillsTheCamerasThatAreThereOverTheirOldContents) {
    store s(lines{{"camera_proj_mats", identity_projection},
                  {"camera_proj_mats", identity_projection},
                  {"camera_space_transform", identity_transform},
                  {"projection_offsets", "0|0"}});
    std::vector<Camera> cameras(1);
    cameras[0].set_resolution(100, 100);
    // The second camera has no transform; the first is complete by then, and has kept its resolution.
    EXPECT_REPORT(create_camera_vector(cameras, s), "Camera", "Camera::init(",
                  "Camera::init() : No camera_space_transform specified in config file for camera 1");
    ASSERT_EQ(cameras.size(), 2u);
    EXPECT_EQ(image(cameras[0], 8, 12, 2), (std::vector<double>{4, 6, 1}));
}

TEST(CameraVector, RefusesBothKinds) {
    // A refused matrix leaves a list too, an empty one.
    for (const std::string& projection : {identity_projection, std::string("1|2")}) {
        store both(lines{{"bumblebee_params", pinhole}, {"camera_proj_mats", projection}});
        std::vector<Camera> cameras(3);
        EXPECT_REPORT(
            create_camera_vector(cameras, both), "Camera", "create_camera_vector",
            "Config file contains both bumblebee_params and camera_proj_mats. Don't know how to order these "
            "so not handled (yet).");
        EXPECT_EQ(cameras.size(), 3u);
    }
}

TEST(CameraVector, ExtrinsicsAreOneSequenceOfTwoLists) {
    const std::pair<std::string, std::string> euler1{"extrinsic_camera_params", "0|0|0|1|0|0"};
    const std::pair<std::string, std::string> euler2{"extrinsic_camera_params", "0|0|0|2|0|0"};
    const std::pair<std::string, std::string> quaternion7{"extrinsic_camera_params_q", "0|0|0|1|7|0|0"};
    const std::pair<std::string, std::string> quaternion8{"extrinsic_camera_params_q", "0|0|0|1|8|0|0"};
    struct {
        lines extrinsics;
        std::vector<double> x;
        int notes;
    } const cases[] = {
        {{euler1}, {1, 0, 0}, 1},
        {{quaternion7, quaternion8}, {7, 8, 0}, 0},
        // The quaternion wins at an index that both lists have.
        {{euler1, quaternion7}, {7, 7, 0}, 1},
        {{euler1, euler2, quaternion7}, {7, 2, 7}, 2},
        {{euler1, euler2, quaternion7, quaternion8}, {7, 8, 7}, 2},
    };
    for (const auto& c : cases) {
        lines settings(3, {"bumblebee_params", pinhole});
        settings.insert(settings.end(), c.extrinsics.begin(), c.extrinsics.end());
        store s(settings);
        std::vector<Camera> cameras;
        stream_capture errors(std::cerr);
        create_camera_vector(cameras, s);
        ASSERT_EQ(cameras.size(), 3u);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(position(cameras[i])[0], c.x[i]) << "camera " << i;
        }
        EXPECT_EQ(count(errors.text(), "NOTE: "), c.notes);
        EXPECT_EQ(count(errors.text(), "\n"), c.notes);
    }
}

TEST(CameraInit, WarnsWithoutIntrinsicsAndGoesOn) {
    stream_capture errors(std::cerr);
    store s(lines{{"extrinsic_camera_params_q", "0|0|0|1|4|0|0"}});
    const Camera camera(s);
    EXPECT_EQ(
        errors.text(),
        "Camera::init() : camera initialised with index 0 but no cal file or set of params is specified at "
        "that index.\n");
    EXPECT_EQ(position(camera)[0], 4);
}

TEST(CameraInit, ShortIntrinsicsChangeNothing) {
    // A refused centre leaves an entry with that one number.
    store s(lines{{"bumblebee_params", "2|0.5|1|1|100|100|0.5"}});
    Camera camera;
    camera.set_camera_params(1, 2, 3, 4, 5);
    EXPECT_THROW(camera.init(s, 0), std::out_of_range);
    EXPECT_EQ(camera.get_x_centre() + camera.get_baseline(), 6);
}

TEST(CameraInit, ProjectionCamerasNeedAllTheirEntries) {
    const lines projection{{"camera_proj_mats", identity_projection}};
    lines with_transform = projection;
    with_transform.push_back({"camera_space_transform", identity_transform});
    const auto with_offsets = [&](const std::string& offsets) {
        lines all = with_transform;
        all.push_back({"projection_offsets", offsets});
        return all;
    };
    {
        store s(projection);
        EXPECT_REPORT(Camera{s}, "Camera", "init",
                      "Camera::init() : No camera_space_transform specified in config file for camera 0");
        // It is a projection camera by then, whose transform is all zero.
        Camera camera;
        camera.set_resolution(100, 100);
        EXPECT_THROW(camera.init(s, 0), zorv::exception_l);
        EXPECT_EQ(image(camera, 1, 1, 1), zeros);
        double x, y, z;
        EXPECT_REPORT(
            camera.unproject(1, 1, 1, x, y, z), "Camera", "unproject",
            "Camera::unproject() : camera uses proj mats, can't currently back project in this case.");
    }
    {
        store s(with_transform);
        EXPECT_REPORT(Camera{s}, "Camera", "init",
                      "Camera::init() : camera 0 was specified as using a projection matrix, but "
                      "projection_offsets was not specified");
    }
    {
        store s(with_offsets("2.9|-2.9"));
        std::vector<Camera> cameras;
        create_camera_vector(cameras, s);
        ASSERT_EQ(cameras.size(), 1u);
        EXPECT_EQ(image(cameras[0], 8, 12, 2), zeros) << "no resolution yet";
        cameras[0].set_resolution(100, 100);
        EXPECT_EQ(image(cameras[0], 8, 12, 2), (std::vector<double>{2, 8, 1}));
        EXPECT_EQ(image(cameras[0], 8, 12, 0), zeros);
        EXPECT_EQ(image(Camera(cameras[0]), 8, 12, 2)[2], 1);
        EXPECT_EQ(count_allocations([&] { image(cameras[0], 8, 12, 2); }), 1u) << "the result vector alone";
    }
}

TEST(CameraInit, OneCameraCanBeOfBothKinds) {
    store s(lines{{"bumblebee_params", pinhole},
                  {"camera_proj_mats", identity_projection},
                  {"camera_space_transform", identity_transform},
                  {"projection_offsets", "0|0"}});
    const stream_capture errors(std::cerr);
    const Camera camera(s);
    // It projects by the matrix, and the limits are those of the pinhole entry.
    EXPECT_EQ(image(camera, 8, 12, 2), (std::vector<double>{4, 6, 1}));
    EXPECT_EQ(image(camera, 199, 12, 2), zeros);
    EXPECT_EQ(camera.get_baseline(), 0.5);
    EXPECT_EQ(errors.text(), "");

    // Assignment leaves either kind what it is.
    Camera assigned;
    assigned = camera;
    double x, y, z;
    EXPECT_NO_THROW(assigned.unproject(1, 1, 1, x, y, z));
    Camera target(camera);
    target = assigned;
    EXPECT_EQ(image(target, 8, 12, 2), (std::vector<double>{4, 6, 1}));
}

TEST(CameraInit, EntriesOfAWrongSizeFailPartWay) {
    store s(lines{{"camera_proj_mats", identity_projection}, {"camera_space_transform", identity_transform}});
    const auto entry = [&](const std::string& key) -> std::vector<double>& {
        std::vector<std::vector<double>*>* list = nullptr;
        EXPECT_TRUE(s.get_param(key, list));
        return *list->at(0);
    };
    const std::string offsets_are = "Camera::init() : projection offset for camera 0 has ";
    // A line without a separator throws and leaves an empty entry behind.
    EXPECT_THROW(s.set_param("projection_offsets", "3"), zorv::exception_l);
    EXPECT_REPORT(Camera{s}, "Camera", "init", offsets_are + "0entries rather than 2");
    // Other sizes come only from a host that edits the lists that the store lends.
    entry("projection_offsets") = {1, 2, 3};
    EXPECT_REPORT(Camera{s}, "Camera", "init", offsets_are + "3entries rather than 2");

    Camera camera;
    camera.set_resolution(100, 100);
    entry("projection_offsets") = {0, 0};
    entry("camera_space_transform") = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    EXPECT_THROW(camera.init(s, 0), std::out_of_range);
    EXPECT_EQ(image(camera, 8, 12, 2), (std::vector<double>{4, 6, 1})) << "what is not given is zero";
    Camera pinhole_still;
    entry("camera_proj_mats").pop_back();
    EXPECT_THROW(pinhole_still.init(s, 0), std::out_of_range);
    double x, y, z;
    EXPECT_NO_THROW(pinhole_still.unproject(1, 1, 1, x, y, z));
}

TEST(CameraInit, OrderOfArithmeticOfAProjectionIsFixed) {
    // Digits computed outside this code; they change when the two matrices are multiplied beforehand or a sum
    // runs the other way.
    store s(
        lines{{"camera_proj_mats", "1538.25|0.5|641.75|3.5|0.25|1554.75|555.5|-2.25|0.001|-0.002|1.003|0.07"},
              {"camera_space_transform",
               "0.99|0.013|-0.021|0.1|-0.017|1.01|0.031|-0.1|0.023|-0.029|0.98|0.2|0.01|0.02|-0.03|0.97"},
              {"projection_offsets", "3|5"},
              {"extrinsic_camera_params_q", "0.1|-0.2|0.05|0.9|0.3|-0.7|1.1"}});
    Camera camera(s);
    camera.set_resolution(1282, 1110);
    EXPECT_EQ(image(camera, 0.33, -0.82, 3.88),
              (std::vector<double>{26.723217348352513, 84.56026173917834, 1}));
    EXPECT_EQ(image(camera, 0.58, 0.18, 5.85),
              (std::vector<double>{35.75731701131496, 486.8293965253234, 1}));
}

TEST(CameraRig, FromAFileToAPixel) {
    // Imports are looked up in the working folder.
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(ZORV_TEST_SOURCE_ROOT);
    std::vector<Camera> cameras;
    std::string note;
    {
        const stream_capture out(std::cout);
        const stream_capture errors(std::cerr);
        configuration settings(std::string("examples/data/projection_rig.txt"));
        create_camera_vector(cameras, settings);
        EXPECT_EQ(out.text(),
                  "Importing additional config file: \"examples/data/projection_rig_cameras.txt\"\n");
        EXPECT_EQ(errors.text(), "");
        EXPECT_TRUE(settings.get_param("__site", note));
    }
    std::filesystem::current_path(before);
    EXPECT_EQ(note, "corridor_2");
    ASSERT_EQ(cameras.size(), 2u);
    for (Camera& camera : cameras) {
        camera.set_resolution(752, 480);
    }
    // Camera 0 stands in the origin and looks along z: a = 500 x + 376 z, b = 500 y + 240 z, c = z, and the
    // image begins at pixel (8, 4) of the sensor.
    EXPECT_EQ(image(cameras[0], 1, 0.5, 4), (std::vector<double>{376 + 125 - 8, 240 + 62.5 - 4, 1}));
    EXPECT_EQ(image(cameras[0], 1, 0.5, -4)[2], 1) << "a matrix projects what is behind the camera too";
    EXPECT_EQ(image(cameras[0], 4, 0, 4), zeros);
    // Camera 1 stands at (2, 0, 0) and is turned by a quarter about y; its rig moves everything 0.5 along its z.
    // The world point (-2, 0.5, 1) is (-4, 0.5, 1) from there, (1, 0.5, 4) in its frame, and 4.5 deep.
    const std::vector<double> second = image(cameras[1], -2, 0.5, 1);
    EXPECT_NEAR(second[0], 376 + 500 * 1 / 4.5, 1e-9);
    EXPECT_NEAR(second[1], 240 + 500 * 0.5 / 4.5, 1e-9);
    EXPECT_EQ(second[2], 1);
}
