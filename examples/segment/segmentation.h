#pragma once

/// @file
/// The steps of a segmentation, with the pictures that each of them leaves.

#include <memory>
#include <opencv2/core.hpp>

#include "zorv_tools/core/opencv_c.h"

struct settings {
    /// Where the object is, roughly.
    cv::Rect region;
    /// Code of the object's depth; 0 for the median of the region.
    int object_depth = 0;
    double depth_tolerance = 0.0;
    /// How much wider and higher than the region the object's centre is looked for.
    double width_factor = 1.0;
    double height_factor = 1.0;
    /// Null for none; stays the caller's.
    IplConvKernel* kernel = nullptr;
    int iterations = 0;
    /// Of the boxes that are searched: the smallest width, and the factor from one width to the next.
    int minimum_width = 0;
    double width_step = 0.0;
};

struct segmentation {
    int object_depth = 0;
    cv::Mat thresholded_appearance, thresholded_depth;
    cv::Mat recentred_appearance, recentred_depth;
    /// All of these in the recentred images.
    cv::Rect region;
    cv::Point centre;
    cv::Rect box;
};

/// Cuts an object out of an appearance image (`CV_8UC3`) and its depth codes (`CV_8UC1`) and moves it to the
/// middle.
segmentation segment_object(const cv::Mat& appearance, const cv::Mat& depth, const settings& given);
