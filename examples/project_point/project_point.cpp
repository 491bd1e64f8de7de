#include <iostream>
#include <string>
#include <vector>

#include "zorv_tools/config/configuration.h"
#include "zorv_tools/geometry/Camera.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: project_point RIG_FILE" << std::endl;
        return 1;
    }
    try {
        zorv::configuration settings{std::string(argv[1])};
        std::vector<zorv::Camera> cameras;
        zorv::create_camera_vector(cameras, settings);

        double u, v, disparity;
        for (const zorv::Camera& camera : cameras) {
            camera.project(0.2, 0.1, 2.5, u, v, disparity);
            std::cout << "pixel " << u << ", " << v << " with disparity " << disparity << std::endl;
        }
        return cameras.empty() ? 1 : 0;
    } catch (const std::exception& e) {
        std::cerr << e.what() << std::endl;
        return 1;
    }
}
