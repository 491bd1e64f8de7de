#include <iostream>
#include <vector>

#include "zorv_tools/config/configuration.h"
#include "zorv_tools/geometry/Camera.h"

int main() {
    //! [camera]
    zorv::configuration settings;
    settings.set_param("bumblebee_params", "0.5|0.5|1.2|1.6|640|480|0.12");
    settings.set_param("extrinsic_camera_params_q", "0|0|0|1|0|0|0");
    std::vector<zorv::Camera> cameras;
    zorv::create_camera_vector(cameras, settings);
    double u, v, disparity;
    cameras[0].project(0, 0, 2, u, v, disparity);
    std::cout << "pixel " << u << ", " << v << " with disparity " << disparity << std::endl;
    //! [camera]
    return disparity > 0 ? 0 : 1;
}
