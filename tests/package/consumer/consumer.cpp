#include <cmath>
#include <iostream>

#include "zorv_tools/zorv_tools.h"

/// Projects one point with the camera of the file named on the command line; exit status 0 if it lands where
/// it must.
int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    zorv::configuration settings{std::string(argv[1])};
    std::vector<zorv::Camera> cameras;
    zorv::create_camera_vector(cameras, settings);
    if (cameras.size() != 1) {
        std::cerr << "expected one camera, found " << cameras.size() << std::endl;
        return 1;
    }
    double u = 0;
    double v = 0;
    double disparity = 0;
    cameras[0].project(0.5, -0.25, 4.0, u, v, disparity);
    std::cout << u << " " << v << " " << disparity << std::endl;
    const bool right =
        std::abs(u - 400) < 1e-9 && std::abs(v - 210) < 1e-9 && std::abs(disparity - 16) < 1e-9;
    return right ? 0 : 1;
}
