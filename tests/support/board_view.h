#pragma once

/// @file
/// Rendered photographs of a chessboard, by a camera of known place.

#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

#include "zorv_tools/core/rotation.h"

inline const cv::Matx33d camera_matrix(600, 0, 330, 0, 610, 235, 0, 0, 1);
inline const std::string lens =
    "%YAML:1.0\n---\n"
    "camera_matrix: !!opencv-matrix\n   rows: 3\n   cols: 3\n   dt: d\n"
    "   data: [ 600., 0., 330., 0., 610., 235., 0., 0., 1. ]\n"
    "distortion_coefficients: !!opencv-matrix\n   rows: 5\n   cols: 1\n   dt: d\n"
    "   data: [ 0., 0., 0., 0., 0. ]\n";

/// A camera 13 squares in front of the middle of a board of 9 by 6 inner corners, turned a little.
struct board_view {
    std::vector<double> quaternion;
    zorv::matrix<double> world_to_camera;
    std::vector<double> centre = {4.2, 2.4, 0};

    explicit board_view(const std::vector<double>& q)
        : quaternion(q), world_to_camera(zorv::quaternion_to_rot_mat(q)) {}

    cv::Matx33d homography() const {
        cv::Matx33d frame;
        for (int r = 0; r < 3; ++r) {
            const double* const row = world_to_camera[static_cast<unsigned int>(r)];
            frame(r, 0) = row[0];
            frame(r, 1) = row[1];
            frame(r, 2) = (r == 2 ? 13.0 : 0.0) - row[0] * centre[0] - row[1] * centre[1];
        }
        return camera_matrix * frame;
    }

    cv::Point2d project(double x, double y) const {
        const cv::Vec3d p = homography() * cv::Vec3d(x, y, 1);
        return {p[0] / p[2], p[1] / p[2]};
    }

    cv::Mat photograph() const { return photograph(cv::Mat(480, 640, CV_8UC3, cv::Scalar::all(120))); }

    /// In front of a picture of 640 by 480.
    cv::Mat photograph(const cv::Mat& background) const {
        const int side = 48;
        cv::Mat board(9 * side, 12 * side, CV_8UC3, cv::Scalar::all(230));
        for (int row = 0; row < 7; ++row) {
            for (int column = row % 2; column < 10; column += 2) {
                board(cv::Rect((column + 1) * side, (row + 1) * side, side, side)).setTo(20);
            }
        }
        // The inner corner (0, 0) lies between pixels, two squares in.
        const double first = 2 * side - 0.5;
        const cv::Matx33d from_board(1.0 / side, 0, -first / side, 0, 1.0 / side, -first / side, 0, 0, 1);
        cv::Mat picture = background.clone();
        cv::Mat smooth;
        cv::GaussianBlur(board, smooth, cv::Size(), 0.7);
        cv::warpPerspective(smooth, picture, homography() * from_board, picture.size(), cv::INTER_LINEAR,
                            cv::BORDER_TRANSPARENT);
        return picture;
    }
};
