#pragma once

/// @file
/// The records that the store keeps lists of: `get_param` of "scale", "stereo_setting", "haar_setting" and
/// "sample" lends a pointer to a `std::vector` of the record of that name, with one entry for each line taken, in the
/// order of the lines.

#include <string>

#include "zorv_tools/core/sample.h"

namespace zorv {

/// One scale of a local binary pattern: `samples` points on a circle of `radius` pixels. The store refuses nothing:
/// of values outside the ranges told here, of another form and of a repetition it only warns.
struct scale {
    int samples = 0;         ///< points on the circle: 1 to 8 times the radius
    float radius = 0;        ///< of the circle, in pixels: above 0
    float scale_factor = 0;  ///< of the image: above 0
};

/// One set-up of a correlation stereo matcher; sizes and disparities in pixels. The store takes only lines within
/// the ranges told here, and no entry twice; what a field does is up to the host's matcher.
struct stereo_setting {
    int width = 0;                     ///< of the image: 1 to 1024
    int height = 0;                    ///< of the image: 1 to 768
    int stereo_mask_size = 0;          ///< 1 to 23
    int edge_mask_size = 0;            ///< 3 to 11
    int max_disp = 0;                  ///< 0 to the width, and at most 240 above `min_disp`
    int min_disp = 0;                  ///< 0 or more, at most the width less 11 and at most `max_disp`
    bool edge_correlation_on = false;  ///< whether edges are matched
    bool back_and_forth_on = false;    ///< whether matches are checked from the other image
};

/// One cascade detector and the sizes it works at. The store takes only lines within the ranges told here, and no
/// entry twice; what a field does is up to the host's detector.
struct haar_setting {
    std::string cascade_loc;  ///< where the cascade is; not looked at
    double scale_rate = 0;    ///< not below 0
    int detections = 0;       ///< 1 or more
    int base_width = 0;       ///< 1 or more
    int base_height = 0;      ///< 1 or more
    int extra_settings = 0;   ///< 0 to 15
};

}  // namespace zorv
