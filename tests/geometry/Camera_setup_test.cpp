#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "tests/geometry/positions.h"
#include "tests/support/allocations.h"
#include "tests/support/report.h"
#include "tests/support/stream_capture.h"
#include "zorv_tools/config/configuration.h"

namespace {

using zorv::Camera;
using zorv::configuration;
using zorv::create_camera_vector;

using line = std::pair<std::string, std::string>;

const line pinhole{"bumblebee_params", "0.5|0.25|1|2|100|80|0.5"};
const line projection{"camera_proj_mats", "1|0|0|0|0|1|0|0|0|0|1|0"};
const line transform{"camera_space_transform", "1|0|0|0|0|1|0|0|0|0|1|0|0|0|0|1"};
const line offsets{"projection_offsets", "0|0"};

/// A store that holds these lines; what they write to the standard error stream is dropped.
class store : public configuration {
public:
    explicit store(const std::vector<line>& settings) {
        const stream_capture ignored(std::cerr);
        for (const auto& [key, value] : settings) {
            set_param(key, value);
        }
    }

    /// The first entry of a key, which a host can edit into what no configuration file can say.
    std::vector<double>& entry(const std::string& key) {
        std::vector<std::vector<double>*>* list = nullptr;
        EXPECT_TRUE(get_param(key, list));
        return *list->at(0);
    }
};

Camera of_100_by_100() {
    Camera camera;
    camera.set_resolution(100, 100);
    return camera;
}

}  // namespace

TEST(CameraVector, HasOneCameraForEachEntry) {
    std::vector<Camera> cameras(5);
    const stream_capture errors(std::cerr);
    store none({});
    create_camera_vector(cameras, none);
    EXPECT_TRUE(cameras.empty());

    store two({pinhole, {"bumblebee_params", "0.25|0.5|2|3|640.9|480.9|0.125"}});
    create_camera_vector(cameras, two);
    ASSERT_EQ(cameras.size(), 2u);
    std::ostringstream text;
    text << cameras[0] << cameras[1];
    const std::string head = "camera created from specific parameters.\n";
    EXPECT_EQ(text.str(), head +
                              "centre position=(0.5,0.25)\nfocal lengths in pixels=(1,2)\n"
                              "image size=(100,80)\ndisp_to_dist=0.5\n" +
                              head +
                              "centre position=(0.25,0.5)\nfocal lengths in pixels=(2,3)\n"
                              "image size=(640,480)\ndisp_to_dist=0.125\n");
    EXPECT_EQ(errors.text(), "");
}

TEST(CameraVector, FillsTheCamerasThatAreThereOverTheirOldContents) {
    store s({projection, projection, transform, offsets});
    std::vector<Camera> cameras(1, of_100_by_100());
    // The second camera has no transform; the first is complete by then, and has kept its resolution.
    EXPECT_REPORT(create_camera_vector(cameras, s), "Camera", "Camera::init(",
                  "Camera::init() : No camera_space_transform specified in config file for camera 1");
    ASSERT_EQ(cameras.size(), 2u);
    EXPECT_EQ(project(cameras[0], {8, 12, 2}), (triple{4, 6, 1}));
}

TEST(CameraVector, RefusesBothKinds) {
    // A refused matrix leaves a list too, an empty one.
    for (const line& second : {projection, line{"camera_proj_mats", "1|2"}}) {
        store both({pinhole, second});
        std::vector<Camera> cameras(3);
        EXPECT_REPORT(
            create_camera_vector(cameras, both), "Camera", "create_camera_vector",
            "Config file contains both bumblebee_params and camera_proj_mats. Don't know how to order these "
            "so not handled (yet).");
        EXPECT_EQ(cameras.size(), 3u);
    }
}

TEST(CameraVector, ExtrinsicsAreOneSequenceOfTwoLists) {
    const line euler1{"extrinsic_camera_params", "0|0|0|1|0|0"};
    const line euler2{"extrinsic_camera_params", "0|0|0|2|0|0"};
    const line quaternion7{"extrinsic_camera_params_q", "0|0|0|1|7|0|0"};
    const line quaternion8{"extrinsic_camera_params_q", "0|0|0|1|8|0|0"};
    const struct {
        std::vector<line> extrinsics;
        triple x;
        int notes;
    } cases[] = {
        {{euler1}, {1, 0, 0}, 1},
        {{quaternion7, quaternion8}, {7, 8, 0}, 0},
        // The quaternion wins at an index that both lists have.
        {{euler1, quaternion7}, {7, 7, 0}, 1},
        {{euler1, euler2, quaternion7}, {7, 2, 7}, 2},
        {{euler1, euler2, quaternion7, quaternion8}, {7, 8, 7}, 2},
    };
    for (const auto& c : cases) {
        std::vector<line> settings(3, pinhole);
        settings.insert(settings.end(), c.extrinsics.begin(), c.extrinsics.end());
        store s(settings);
        std::vector<Camera> cameras;
        const stream_capture errors(std::cerr);
        create_camera_vector(cameras, s);
        ASSERT_EQ(cameras.size(), 3u);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(to_world(cameras[i], zeros)[0], c.x[i]) << "camera " << i;
        }
        const std::string text = errors.text();
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), c.notes) << text;
    }
}

TEST(CameraInit, WarnsWithoutIntrinsicsAndGoesOn) {
    const stream_capture errors(std::cerr);
    store s(std::vector<line>{{"extrinsic_camera_params_q", "0|0|0|1|4|0|0"}});
    const Camera camera(s);
    EXPECT_EQ(
        errors.text(),
        "Camera::init() : camera initialised with index 0 but no cal file or set of params is specified at "
        "that index.\n");
    EXPECT_EQ(to_world(camera, zeros), (triple{4, 0, 0}));
}

TEST(CameraInit, ShortIntrinsicsChangeNothing) {
    // A refused centre leaves an entry with that one number.
    store s(std::vector<line>{{"bumblebee_params", "2|0.5|1|1|100|100|0.5"}});
    Camera camera;
    camera.set_camera_params(1, 2, 3, 4, 5);
    EXPECT_THROW(camera.init(s, 0), std::out_of_range);
    EXPECT_EQ(camera.get_x_centre() + camera.get_baseline(), 6);
}

TEST(CameraInit, ProjectionCamerasNeedAllTheirEntries) {
    store whole({projection, transform, {"projection_offsets", "2.9|-2.9"}});
    Camera camera = of_100_by_100();
    camera.init(whole, 0);
    EXPECT_EQ(project(camera, {8, 12, 2}), (triple{2, 8, 1}));
    EXPECT_EQ(project(camera, {8, 12, 0}), zeros);
    EXPECT_EQ(project(camera, {-8, -12, -2}), (triple{2, 8, 1})) << "also what is behind the camera";
    EXPECT_EQ(project(camera, {8e-5, 12e-5, 1e-5}), (triple{6, 14, 1})) << "any depth but 0 will do";
    EXPECT_EQ(project(Camera(camera), {8, 12, 2})[2], 1);
    EXPECT_EQ(project(Camera(whole), {8, 12, 2}), zeros) << "no resolution";
    EXPECT_EQ(count_allocations([&] { project(camera, {8, 12, 2}); }), 0u);
    EXPECT_REPORT(unproject(camera, {1, 1, 1}), "Camera", "unproject",
                  "Camera::unproject() : camera uses proj mats, can't currently back project in this case.");

    store without_transform({projection});
    EXPECT_REPORT(camera.init(without_transform, 0), "Camera", "init",
                  "Camera::init() : No camera_space_transform specified in config file for camera 0");
    EXPECT_EQ(project(camera, {8, 12, 2}), zeros) << "the old transform is gone";
    store without_offsets({projection, transform});
    EXPECT_REPORT(Camera{without_offsets}, "Camera", "init",
                  "Camera::init() : camera 0 was specified as using a projection matrix, but "
                  "projection_offsets was not specified");
    for (const std::size_t count : {0u, 1u, 3u}) {
        whole.entry("projection_offsets").resize(count);
        EXPECT_REPORT(Camera{whole}, "Camera", "init",
                      "Camera::init() : projection offset for camera 0 has " + std::to_string(count) +
                          "entries rather than 2");
    }
}

TEST(CameraInit, ShortMatricesAreFilledAsFarAsTheyGo) {
    store s({projection, transform, offsets});
    Camera camera = of_100_by_100();
    s.entry("camera_space_transform").resize(11);
    EXPECT_THROW(camera.init(s, 0), std::out_of_range);
    EXPECT_EQ(project(camera, {8, 12, 2}), (triple{4, 6, 1})) << "what is not given is zero";
    Camera pinhole_still;
    s.entry("camera_proj_mats").pop_back();
    EXPECT_THROW(pinhole_still.init(s, 0), std::out_of_range);
    EXPECT_EQ(unproject(pinhole_still, {1, 1, 1}), zeros);
}

TEST(CameraInit, OneCameraCanBeOfBothKinds) {
    store s({pinhole, projection, transform, offsets});
    const stream_capture errors(std::cerr);
    const Camera camera(s);
    // It projects by the matrix, and the limits are those of the pinhole entry.
    EXPECT_EQ(project(camera, {8, 12, 2}), (triple{4, 6, 1}));
    EXPECT_EQ(project(camera, {199, 12, 2}), zeros);
    EXPECT_EQ(camera.get_baseline(), 0.5);
    EXPECT_EQ(errors.text(), "");

    // Assignment leaves either kind what it is.
    Camera assigned;
    assigned = camera;
    EXPECT_EQ(unproject(assigned, {50, 20, 50}), (triple{0, 0, 1}));
    Camera target(camera);
    target = assigned;
    EXPECT_EQ(project(target, {8, 12, 2}), (triple{4, 6, 1}));
}

TEST(CameraInit, OrderOfArithmeticOfAProjectionIsFixed) {
    // Digits computed outside this code; they change when the two matrices are multiplied beforehand or a sum
    // runs the other way.
    store s({{"camera_proj_mats", "1538.25|0.5|641.75|3.5|0.25|1554.75|555.5|-2.25|0.001|-0.002|1.003|0.07"},
             {"camera_space_transform",
              "0.99|0.013|-0.021|0.1|-0.017|1.01|0.031|-0.1|0.023|-0.029|0.98|0.2|0.01|0.02|-0.03|0.97"},
             {"projection_offsets", "3|5"},
             {"extrinsic_camera_params_q", "0.1|-0.2|0.05|0.9|0.3|-0.7|1.1"}});
    Camera camera(s);
    camera.set_resolution(1282, 1110);
    EXPECT_EQ(project(camera, {0.33, -0.82, 3.88}), (triple{26.723217348352513, 84.56026173917834, 1}));
    EXPECT_EQ(project(camera, {0.58, 0.18, 5.85}), (triple{35.75731701131496, 486.8293965253234, 1}));
}

TEST(CameraRig, FromAFileToAPixel) {
    // Imports are looked up in the working folder.
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(ZORV_TEST_SOURCE_ROOT);
    std::vector<Camera> cameras;
    {
        const stream_capture out(std::cout);
        const stream_capture errors(std::cerr);
        configuration settings(std::string("examples/data/projection_rig.txt"));
        create_camera_vector(cameras, settings);
        EXPECT_EQ(errors.text(), "");
    }
    std::filesystem::current_path(before);
    ASSERT_EQ(cameras.size(), 2u);
    cameras[1].set_resolution(752, 480);
    // Camera 1 stands at (2, 0, 0) and is turned by a quarter about y; its rig moves everything 0.5 along its z.
    // The world point (-2, 0.5, 1) is (-4, 0.5, 1) from there, (1, 0.5, 4) in its frame, and 4.5 deep.
    EXPECT_THAT(project(cameras[1], {-2, 0.5, 1}),
                is_near_to({376 + 500 * 1 / 4.5, 240 + 500 * 0.5 / 4.5, 1}, 1e-9));
}
