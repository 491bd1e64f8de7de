#pragma once

/// @file
/// The records that the store keeps lists of: `get_param` of "scale", "stereo_setting", "haar_setting" and
/// "sample" lends a pointer to a `std::vector` of the record of that name.

#include <string>

#include "zorv_tools/core/sample.h"

namespace zorv {

/// One scale of a local binary pattern: `samples` points on a circle of `radius` pixels.
struct scale {
    int samples = 0;
    float radius = 0;
    float scale_factor = 0;
};

/// One set-up of a correlation stereo matcher; sizes and disparities in pixels.
struct stereo_setting {
    int width = 0;
    int height = 0;
    int stereo_mask_size = 0;
    int edge_mask_size = 0;
    int max_disp = 0;
    int min_disp = 0;
    bool edge_correlation_on = false;
    bool back_and_forth_on = false;
};

/// One cascade detector and the sizes it works at.
struct haar_setting {
    std::string cascade_loc;
    double scale_rate = 0;
    int detections = 0;
    int base_width = 0;
    int base_height = 0;
    int extra_settings = 0;
};

}  // namespace zorv
