#pragma once

/// @file
/// Painting one camera's view out of another camera's picture.

#include <functional>
#include <opencv2/core.hpp>

#include "zorv_tools/geometry/Camera.h"

/// The value of a channel of a picture between its pixels, such as `zorv::interp_pix`.
using sampler = double (*)(const cv::Mat& picture, double x, double y, int channel);

struct painted_view {
    /// Like the source picture; black where nothing landed.
    cv::Mat picture;
    /// 8 bits: 255 where a point of the view landed in the source picture, else 0.
    cv::Mat landed;
};

/// Takes each pixel of the first camera's `disparities` (one channel, 0 where unknown; `disparity_offset` is
/// added to the others) to its world point, projects that with the second camera, and samples `source`, that
/// camera's 8-bit picture, there. `progress` is told the number of finished rows.
painted_view paint_view(const cv::Mat& source, const cv::Mat& disparities, double disparity_offset,
                        const zorv::Camera& first, const zorv::Camera& second, sampler sample,
                        const std::function<void(int)>& progress);
