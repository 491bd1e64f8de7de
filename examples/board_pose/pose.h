#pragma once

/// @file
/// Poses of cameras in the world, two ways to estimate them, and cameras made of them.

#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "zorv_tools/core/matrix.h"
#include "zorv_tools/geometry/Camera.h"

/// A world point X has the position R^T (X - t) in the camera's frame.
struct pose {
    zorv::matrix<double> rotation;
    std::vector<double> translation;
};

/// The best solution of `zorv::upnp`, and how many there were; none leaves the pose empty.
struct upnp_result {
    pose best;
    std::size_t solutions = 0;
};
upnp_result pose_by_upnp(const std::vector<cv::Point2d>& image, const std::vector<cv::Point3d>& world,
                         const cv::Mat& camera_matrix);

/// The same by OpenCV's iterative solver.
pose pose_by_solve_pnp(const std::vector<cv::Point2d>& image, const std::vector<cv::Point3d>& world,
                       const cv::Mat& camera_matrix);

/// The angle between two poses, in degrees, and the distance between their cameras.
double angle_between(const pose& a, const pose& b);
double distance_between(const pose& a, const pose& b);

/// Homogeneous 4 by 4 transform from the frame of one camera to that of another.
zorv::matrix<double> frame_to_frame(const pose& from, const pose& to);

/// Writes a configuration file with a pinhole camera for each pose, reads it back and makes the cameras.
std::vector<zorv::Camera> cameras_through_file(const std::string& path, const std::vector<pose>& poses,
                                               const cv::Mat& camera_matrix, const cv::Size& size);
