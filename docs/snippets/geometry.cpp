//! [program]
#include <iostream>
#include <vector>

#include "zorv_tools/config/configuration.h"
#include "zorv_tools/core/near.h"
#include "zorv_tools/geometry/Camera.h"
#include "zorv_tools/geometry/opengv_wrapper.h"

int main() {
    zorv::configuration settings;
    settings.set_param("bumblebee_params", "0.5|0.5|1.2|1.6|640|480|0.12");
    settings.set_param("extrinsic_camera_params_q", "0.1|0.05|0|1|0.2|-0.5|-3");
    std::vector<zorv::Camera> cameras;
    zorv::create_camera_vector(cameras, settings);
    const zorv::Camera& camera = cameras[0];

    // From the world into the image, and back by the disparity.
    double u, v, disparity, x, y, z;
    camera.project(0.3, 0.2, 1, u, v, disparity);
    if (disparity == 0) {
        return 1;  // behind the camera, or outside its image
    }
    camera.unproject(u, v, disparity, x, y, z);
    std::cout << "pixel " << u << ", " << v << " with disparity " << disparity << std::endl;
    std::cout << "seen again at " << x << ", " << y << ", " << z << std::endl;

    // The camera's place, from points of the world and where it sees them.
    const std::vector<std::vector<double>> corners = {{0, 0, 0},     {0.7, 0, 0.1},  {0, 0.6, 0.2},
                                                      {0.5, 0.5, 0}, {0, 0.1, 1},    {0.6, 0, 0.8},
                                                      {0, 0.4, 0.9}, {0.4, 0.6, 1.1}};
    const int count = static_cast<int>(corners.size());
    zorv::matrix<double> image_points(count, 2), world_points(count, 3), camera_matrix(3, 3);
    for (unsigned int i = 0; i < corners.size(); ++i) {
        camera.project(corners[i][0], corners[i][1], corners[i][2], u, v, disparity);
        image_points.set_row(i, {u, v});
        world_points.set_row(i, corners[i]);
    }
    // Focal lengths and centre in pixels here, unlike in a camera: 1.2 * 640, 1.6 * 480.
    camera_matrix = std::vector<double>{768, 0, 320, 0, 768, 240, 0, 0, 1};
    zorv::matrix<double> rotation;
    std::vector<double> position;
    zorv::upnp(image_points, world_points, camera_matrix, rotation, position);
    if (position.empty()) {
        return 1;  // no pose found
    }
    std::cout << "camera at " << position[0] << ", " << position[1] << ", " << position[2] << std::endl;

    const bool round_trip = zorv::is_near(x, 0.3) && zorv::is_near(y, 0.2) && zorv::is_near(z, 1);
    const bool pose =
        zorv::is_near(position[0], 0.2) && zorv::is_near(position[1], -0.5) && zorv::is_near(position[2], -3);
    return round_trip && pose ? 0 : 1;
}
//! [program]
