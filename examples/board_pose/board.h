#pragma once

/// @file
/// A flat chessboard and what a lens makes of it. The board's squares are the unit of length; its inner corners
/// lie at whole numbers in the plane z = 0.

#include <opencv2/core.hpp>
#include <string>
#include <vector>

/// A lens as OpenCV's calibration writes it.
struct lens {
    /// 3 by 3.
    cv::Mat camera_matrix;
    cv::Mat distortion;
};

/// Reads "camera_matrix" and "distortion_coefficients" from a file of OpenCV's. Throws `std::runtime_error`.
lens read_lens(const std::string& path);

/// Inner corners in a row and in a column of the board, row by row.
std::vector<cv::Point3d> board_corners(const cv::Size& board);

/// What one photograph shows of the board, as a lens without distortion would see it.
struct observation {
    cv::Mat picture;
    /// In the order of `board_corners`; empty where no board was found.
    std::vector<cv::Point2d> corners;
};

observation observe_board(const cv::Mat& photograph, const lens& optics, const cv::Size& board);
