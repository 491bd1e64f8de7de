#pragma once

/// @file
/// Reading and writing of picture files. What goes wrong is thrown as `std::runtime_error` with one line of text.

#include <opencv2/core.hpp>
#include <string>

/// Blue, green, red, 8 bits each.
cv::Mat read_colour_picture(const std::string& path);

/// One channel, with the depth that the file has.
cv::Mat read_map(const std::string& path);

/// Writes `picture` as PNG into `folder`, which is made if it is not there.
void write_picture(const std::string& folder, const std::string& name, const cv::Mat& picture);
