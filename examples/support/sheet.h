#pragma once

/// @file
/// Contact sheets: titled pictures in a grid, fitted to 4:3, white on black.

#include <opencv2/core.hpp>
#include <string>
#include <utility>
#include <vector>

/// Blue, green, red: of one channel the grey picture, of doubles those from 0 to 1 as 0 to 255.
cv::Mat as_colour(const cv::Mat& picture);

/// One channel in false colours, from black (0) over red to pale yellow (`largest`).
cv::Mat as_heat(const cv::Mat& map, double largest);

/// `picture` scaled to `width` columns, framed, with its title above and a margin around.
cv::Mat panel(const cv::Mat& picture, const std::string& title, int width);

/// The panels in their order, with a heading above and below a line of words that name what colours stand for.
cv::Mat contact_sheet(const std::string& heading, const std::vector<cv::Mat>& panels,
                      const std::vector<std::pair<std::string, cv::Scalar>>& legend = {});
