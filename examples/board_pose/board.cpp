#include "examples/board_pose/board.h"

#include <filesystem>
#include <opencv2/calib3d.hpp>
#include <opencv2/imgproc.hpp>
#include <stdexcept>

lens read_lens(const std::string& path) {
    if (!std::filesystem::is_regular_file(path)) {
        throw std::runtime_error("cannot read the intrinsics file \"" + path + "\"");
    }
    lens result;
    try {
        const cv::FileStorage file(path, cv::FileStorage::READ);
        file["camera_matrix"] >> result.camera_matrix;
        file["distortion_coefficients"] >> result.distortion;
    } catch (const cv::Exception&) {
        // What OpenCV says of a damaged file has many lines; the test below says it in one.
        result.camera_matrix.release();
    }
    if (result.camera_matrix.size() != cv::Size(3, 3) || result.distortion.empty()) {
        throw std::runtime_error("the intrinsics file \"" + path +
                                 "\" needs a 3 by 3 \"camera_matrix\" and \"distortion_coefficients\"");
    }
    result.camera_matrix.convertTo(result.camera_matrix, CV_64F);
    return result;
}

std::vector<cv::Point3d> board_corners(const cv::Size& board) {
    std::vector<cv::Point3d> corners;
    for (int row = 0; row < board.height; ++row) {
        for (int column = 0; column < board.width; ++column) {
            corners.emplace_back(column, row, 0.0);
        }
    }
    return corners;
}

observation observe_board(const cv::Mat& photograph, const lens& optics, const cv::Size& board) {
    observation result;
    cv::undistort(photograph, result.picture, optics.camera_matrix, optics.distortion);
    cv::Mat grey;
    cv::cvtColor(photograph, grey, cv::COLOR_BGR2GRAY);
    std::vector<cv::Point2f> found;
    if (cv::findChessboardCorners(grey, board, found)) {
        // Half the window; larger ones reach the neighbouring corners of a board seen at a slant.
        const cv::Size window(5, 5);
        const cv::TermCriteria end(cv::TermCriteria::EPS | cv::TermCriteria::COUNT, 40, 0.001);
        cv::cornerSubPix(grey, found, window, cv::Size(-1, -1), end);
        // The corners are looked for in the photograph as it is, since undistorting it blurs it.
        cv::undistortPoints(std::vector<cv::Point2d>(found.begin(), found.end()), result.corners,
                            optics.camera_matrix, optics.distortion, cv::noArray(), optics.camera_matrix);
    }
    return result;
}
