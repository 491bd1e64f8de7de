#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include "zorv_tools/config/configuration.h"
#include "zorv_tools/geometry/Camera.h"

// One thread fills a store and a camera; then several read both at once. A race shows under ThreadSanitizer, a wrong
// value everywhere.
TEST(Threads, ReadOneStoreAndProjectWithOneCamera) {
    zorv::configuration settings;
    settings.set_param("trees", "20");
    settings.set_param("__name", "rig");
    settings.set_param("bumblebee_params", "0.5|0.5|1.2|1.6|640|480|0.12");
    settings.set_param("extrinsic_camera_params_q", "0|0|0|1|0.2|0|0");
    std::vector<zorv::Camera> cameras;
    zorv::create_camera_vector(cameras, settings);
    ASSERT_EQ(cameras.size(), 1U);
    const zorv::configuration& shared_settings = settings;
    const zorv::Camera& camera = cameras.front();

    constexpr int passes = 200;
    const auto read = [&](int thread, int& right) {
        for (int i = 0; i < passes; ++i) {
            int trees = 0;
            std::string name;
            std::vector<std::vector<double>*>* intrinsics = nullptr;
            const bool found = shared_settings.get_param("trees", trees) &&
                               shared_settings.get_param("__name", name) &&
                               shared_settings.get_param("bumblebee_params", intrinsics);
            const double x = 0.1 * thread;
            const double y = -0.001 * i;
            const double z = 2.0 + 0.01 * i;
            double u, v, disparity;
            camera.project(x, y, z, u, v, disparity);
            double back_x, back_y, back_z;
            camera.unproject(u, v, disparity, back_x, back_y, back_z);
            const bool back = std::hypot(back_x - x, back_y - y, back_z - z) < 1e-9;
            right += found && trees == 20 && name == "rig" && intrinsics->front()->at(6) == 0.12 && back;
        }
    };
    std::vector<int> right(4, 0);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back(read, thread, std::ref(right[static_cast<std::size_t>(thread)]));
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, std::vector<int>(4, passes));
}
