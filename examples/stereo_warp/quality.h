#pragma once

/// @file
/// How near one picture comes to another.

#include <opencv2/core.hpp>

/// Peak signal-to-noise ratio of two 8-bit pictures in decibels, over the pixels where `mask` is not 0 and all
/// channels. Infinite for equal pictures, NaN where the mask is empty.
double peak_signal_to_noise(const cv::Mat& picture, const cv::Mat& truth, const cv::Mat& mask);

/// |picture - truth| where `mask` is not 0, black elsewhere.
cv::Mat absolute_difference(const cv::Mat& picture, const cv::Mat& truth, const cv::Mat& mask);
