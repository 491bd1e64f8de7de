#include <algorithm>
#include <cmath>
#include <iostream>

#include "zorv_tools/zorv_tools.h"

/// Projects some points with the camera of the file named on the command line, and finds its place again by them;
/// exit status 0 if both are right.
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
    const double points[][3] = {{0.5, -0.25, 4}, {-0.6, 0.3, 3},  {0.7, 0.4, 3.5},
                                {-0.2, -0.5, 5}, {0.1, 0.6, 4.5}, {0.9, 0, 6}};
    zorv::matrix<double> world(6, 3);
    zorv::matrix<double> image(6, 2);
    double disparity = 0;
    for (unsigned int i = 0; i < 6; ++i) {
        std::copy_n(points[i], 3, world[i]);
        cameras[0].project(points[i][0], points[i][1], points[i][2], image[i][0], image[i][1], disparity);
    }
    std::cout << image[0][0] << " " << image[0][1] << " " << disparity << std::endl;

    const double intrinsics[][3] = {{640, 0, 320}, {0, 480, 240}, {0, 0, 1}};
    zorv::matrix<double> camera_matrix(3, 3);
    for (unsigned int i = 0; i < 3; ++i) {
        std::copy_n(intrinsics[i], 3, camera_matrix[i]);
    }
    zorv::matrix<double> rotation;
    std::vector<double> position;
    zorv::upnp(image, world, camera_matrix, rotation, position);

    const auto near = [](double a, double b) { return std::abs(a - b) < 1e-6; };
    const bool right = near(image[0][0], 400) && near(image[0][1], 210) && position.size() == 3 &&
                       near(position[0], 0) && near(position[1], 0) && near(position[2], 0);
    return right ? 0 : 1;
}
