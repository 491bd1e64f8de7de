#pragma once

/// @file
/// A cube that stands on a board, and drawing it where a camera sees it.

#include <opencv2/core.hpp>
#include <vector>

#include "zorv_tools/geometry/Camera.h"

inline const cv::Scalar corner_colour(80, 220, 80);
inline const cv::Scalar cube_colour(255, 120, 0);
/// The top has a colour of its own, to show which way the cube stands.
inline const cv::Scalar top_colour(0, 140, 255);

/// The eight corners of a cube of two squares a side in the middle of the board, first the four on the board,
/// then those above them. `above` is any point on the side of the board that the cube stands on.
std::vector<cv::Point3d> cube_corners(const cv::Size& board, const cv::Point3d& above);

/// Draws the points as rings and the cube's edges. What the camera does not see is left out.
void draw_scene(cv::Mat& picture, const zorv::Camera& camera, const std::vector<cv::Point3d>& points,
                const std::vector<cv::Point3d>& cube);
